#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tabrixdb::ado::sqlite {

// SQLite has no type for dates; they are kept as text (`2024-05-31`, `2024-05-31 18:30:00`, with "T" in the
// middle, with fractions of a second, `18:30` alone), as Julian day numbers or as seconds (milliseconds,
// when too large for seconds) since 1970. These read all three and write the first.

std::optional<double> date_of_text(std::string_view text) noexcept;
std::optional<double> date_of_number(double number) noexcept;

// For a column of that ADO type: the date, the time or both.
std::string text_of_date(double days, std::int32_t type);

} // namespace tabrixdb::ado::sqlite
