#include "server/host_names.h"

#include "automation/text.h"

#include <algorithm>

namespace tabrixdb::server {

namespace {

bool is_digit(char c) {
    return c >= '0' && c <= '9';
}

bool is_name_character(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || is_digit(c) ||
           std::string_view("-._%").find(c) != std::string_view::npos;
}

} // namespace

bool is_host(std::string_view text) noexcept {
    constexpr std::size_t kPortDigits = 5;
    const auto [name, port] = asp::split_host(text);
    if (port.size() > kPortDigits || !std::ranges::all_of(port, is_digit))
        return false;
    if (!name.starts_with('['))
        return !name.empty() && std::ranges::all_of(name, is_name_character);
    return name.size() > 2 && name.ends_with(']') &&
           std::ranges::all_of(name.substr(1, name.size() - 2),
                               [](char c) { return c == ':' || is_name_character(c); });
}

bool has_bad_host(const asp::Headers& headers) noexcept {
    int hosts = 0;
    for (const asp::Header& header : headers)
        if (equal_ignore_case(header.name, "Host") &&
            (++hosts > 1 || (!header.value.empty() && !is_host(header.value))))
            return true;
    return false;
}

std::optional<std::string_view> authority_of_target(std::string_view target) noexcept {
    for (const std::string_view scheme : {"http://", "https://"})
        if (equal_ignore_case(target.substr(0, scheme.size()), scheme)) {
            target.remove_prefix(scheme.size());
            return target.substr(0, target.find_first_of("/?#"));
        }
    return std::nullopt;
}

void set_host(asp::Headers& headers, std::string host) {
    const auto found =
        std::ranges::find_if(headers, [](const asp::Header& h) { return equal_ignore_case(h.name, "Host"); });
    if (found == headers.end())
        headers.push_back({"Host", std::move(host)});
    else
        found->value = std::move(host);
}

bool is_served(const asp::Headers& headers, const std::vector<std::string>& names) noexcept {
    if (names.empty())
        return true;
    const std::string* host = asp::find_header(headers, "Host");
    const std::string_view asked = host ? asp::split_host(*host).name : std::string_view();
    return std::ranges::any_of(names,
                               [&](const std::string& name) { return equal_ignore_case(name, asked); });
}

} // namespace tabrixdb::server
