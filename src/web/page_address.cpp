#include "web/page_address.h"

#include "automation/text.h"

#include <algorithm>

namespace tabrixdb {

namespace {

// What a client sent becomes a part of an address that can stand in a page's HTML or script: what would end
// an attribute, a tag or a text there is %XX. Browsers send it so.
std::string harmless(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte <= ' ' || byte == 0x7F || std::string_view("\"'<>\\`").find(c) != std::string_view::npos) {
            constexpr std::string_view kDigits = "0123456789ABCDEF";
            out += '%';
            out += kDigits[byte >> 4];
            out += kDigits[byte & 15];
        } else {
            out += c;
        }
    }
    return out;
}

bool is_plain_name(std::string_view name) {
    return std::ranges::all_of(name, [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
               c == '-' || c == '.';
    });
}

} // namespace

// A query, form field or cookie of these names is none of the server's.
std::string site_address(platform::Request& request) {
    const bool secure = upper(request.server_variable("HTTPS")) == "ON";
    return (secure ? "https://" : "http://") + harmless(request.server_variable("HTTP_HOST"));
}

std::string page_address(platform::Request& request, bool with_query) {
    std::string address = site_address(request) + request.server_variable("URL");
    if (with_query) {
        if (const std::string query = request.query_string(); !query.empty())
            address += "?" + harmless(query);
    }
    return address;
}

std::string query_include(platform::Request& request, platform::Server& server, std::string_view pairs,
                          bool encode) {
    if (pairs.empty())
        return encode ? harmless(request.query_string()) : request.query_string();
    platform::Request::Pairs parameters = request.query_parameters();
    for (const std::string_view pair : split(pairs, '&')) {
        const std::size_t equals = pair.find('=');
        const std::string_view name = pair.substr(0, equals);
        if (name.empty())
            continue;
        // A pair without "=" is a name with an empty value; a second "=" ends the value.
        std::string_view value =
            equals == std::string_view::npos ? std::string_view() : pair.substr(equals + 1);
        value = value.substr(0, value.find('='));
        const auto known = std::ranges::find_if(
            parameters, [&](const auto& parameter) { return equal_ignore_case(parameter.first, name); });
        if (known != parameters.end())
            known->second = value;
        else
            parameters.emplace_back(name, value);
    }
    std::string query;
    for (const auto& [name, value] : parameters) {
        if (!query.empty())
            query += '&';
        query += (is_plain_name(name) ? name : server.url_encode(name)) + "=" +
                 (encode ? server.url_encode(value) : value);
    }
    return query;
}

} // namespace tabrixdb
