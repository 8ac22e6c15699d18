#include "ado/connection_string.h"

#include "ado/errors.h"
#include "automation/text.h"

#include <algorithm>

namespace tabrixdb::ado {

namespace {

constexpr std::string_view kBlanks = " \t\r\n";

// The sign that ends a value which begins with `open`; 0 for a plain value.
char closing_sign(char open) {
    return open == '"' || open == '\'' ? open : open == '{' ? '}' : '\0';
}

// The quoted value that starts at `at`, which is moved behind it.
std::string quoted_value(std::string_view text, std::size_t& at) {
    const char close = closing_sign(text[at++]);
    std::string value;
    for (; at < text.size(); ++at) {
        if (text[at] == close) {
            if (at + 1 == text.size() || text[at + 1] != close) {
                ++at;
                return value;
            }
            ++at;
        }
        value.push_back(text[at]);
    }
    throw error(Code::InvalidArgument, kConnectionSource,
                "A quoted value of the connection string has no end.");
}

} // namespace

ConnectionString::ConnectionString(std::string_view text) {
    if (text.size() > kMaxBytes)
        throw error(Code::InvalidArgument, kConnectionSource, "The connection string is too long.");
    std::size_t at = 0;
    while (at < text.size()) {
        const std::size_t sign = text.find_first_of("=;", at);
        if (sign == std::string_view::npos || text[sign] == ';') {
            if (!trimmed(text.substr(at, sign - at), kBlanks).empty())
                throw error(Code::InvalidArgument, kConnectionSource,
                            "The connection string has a setting without \"=\".");
            if (sign == std::string_view::npos)
                return;
            at = sign + 1;
            continue;
        }
        std::string key(trimmed(text.substr(at, sign - at), kBlanks));
        at = std::min(text.find_first_not_of(kBlanks, sign + 1), text.size());
        std::string value;
        if (at < text.size() && closing_sign(text[at]))
            value = quoted_value(text, at);
        const std::size_t end = std::min(text.find(';', at), text.size());
        value.append(trimmed(text.substr(at, end - at), kBlanks));
        settings_.emplace_back(std::move(key), std::move(value));
        at = end + 1;
    }
}

std::string_view ConnectionString::value(std::string_view key) const noexcept {
    for (auto setting = settings_.rbegin(); setting != settings_.rend(); ++setting)
        if (equal_ignore_case(setting->first, key))
            return setting->second;
    return {};
}

std::string_view ConnectionString::value(std::string_view key, std::string_view other_key) const noexcept {
    const std::string_view first = value(key);
    return first.empty() ? value(other_key) : first;
}

} // namespace tabrixdb::ado
