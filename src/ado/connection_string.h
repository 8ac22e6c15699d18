#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tabrixdb::ado {

// The settings of a connection string: `Key=Value;Key="a;b"`. Keys ignore case and blanks around them;
// a value in quotes or braces may hold ";" and doubles its closing sign to hold that. Of a repeated key the
// last one counts.
class ConnectionString {
public:
    // Longer ones are refused (Error 3001): no real one comes near, and keys of the handle pool are made of
    // it.
    static constexpr std::size_t kMaxBytes = 4096;

    ConnectionString() = default;
    explicit ConnectionString(std::string_view text);

    // The value of the first of these keys that is set; "" when none is.
    std::string_view value(std::string_view key) const noexcept;
    std::string_view value(std::string_view key, std::string_view other_key) const noexcept;

private:
    std::vector<std::pair<std::string, std::string>> settings_;
};

} // namespace tabrixdb::ado
