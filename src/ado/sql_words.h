#pragma once

#include <cstddef>
#include <string_view>

namespace tabrixdb::ado {

// Walks over the words and signs of SQL. Comments are passed over; texts and quoted names count as one sign.
class SqlWords {
public:
    explicit SqlWords(std::string_view sql) noexcept : sql_(sql) {}

    // The next word or sign; empty at the end.
    std::string_view next() noexcept;

    // Where the last one begins and ends, in bytes.
    std::size_t start() const noexcept { return start_; }

    std::size_t end() const noexcept { return at_; }

private:
    void skip_blanks() noexcept;
    void skip_to(char sign) noexcept;

    std::string_view sql_;
    std::size_t at_ = 0;
    std::size_t start_ = 0;
};

// Whether the sign is, or begins, a statement's parameter: `?`, `?1`, `:name`, `@name`, `$name`.
bool is_parameter(std::string_view sign) noexcept;

} // namespace tabrixdb::ado
