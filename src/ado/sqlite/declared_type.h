#pragma once

#include <cstdint>
#include <string_view>

namespace tabrixdb::ado::sqlite {

// What a column's declared type says. `VARCHAR(40)` is type 202 with size 40, `DECIMAL(10,2)` 131 with 10
// and 2.
struct DeclaredType {
    std::int32_t type = 0; // ADO type number; 0: none that says anything, the first row's value decides
    std::int32_t size = 0; // characters or bytes; 0: no bound
    std::uint8_t precision = 0;
    std::uint8_t scale = 0;
};

DeclaredType read_declared_type(std::string_view declaration) noexcept;

// Size, digits and decimals of a type that has always the same.
DeclaredType plain_type(std::int32_t type) noexcept;

} // namespace tabrixdb::ado::sqlite
