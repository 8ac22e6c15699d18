#include "web/page_address.h"

#include "automation/text.h"

#include <algorithm>

namespace tabrixdb {

std::string site_address(platform::Request& request) {
    const bool secure = upper(request.server_variable("HTTPS")) == "ON";
    return (secure ? "https://" : "http://") + request.value("HTTP_HOST");
}

std::string page_address(platform::Request& request, bool with_query) {
    std::string address = site_address(request) + request.value("URL");
    if (with_query) {
        if (const std::string query = request.query_string(); !query.empty())
            address += "?" + query;
    }
    return address;
}

std::string query_include(platform::Request& request, platform::Server& server, std::string_view pairs,
                          bool encode) {
    if (pairs.empty())
        return request.query_string();
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
        query += name + "=" + (encode ? server.url_encode(value) : value);
    }
    return query;
}

} // namespace tabrixdb
