#include "server/origin.h"

#include "automation/text.h"

#include <algorithm>

namespace tabrixdb::server {

namespace {

// "http://host:81" of "http://host:81/page?x"; "" for an address without a host.
std::string_view origin_of(std::string_view address) {
    const std::size_t host = address.find("://");
    if (host == std::string_view::npos)
        return {};
    return address.substr(0, address.find_first_of("/?#", host + 3));
}

// The authority as Host would give it: without the port that the scheme has anyway.
std::string_view authority_of(std::string_view origin) {
    const std::size_t end = origin.find("://");
    if (end == std::string_view::npos)
        return {};
    const std::string_view scheme = origin.substr(0, end);
    std::string_view authority = origin.substr(end + 3);
    const std::string_view port = equal_ignore_case(scheme, "https") ? ":443" : ":80";
    if (authority.ends_with(port))
        authority.remove_suffix(port.size());
    return authority;
}

bool is_own(std::string_view origin, std::string_view host) {
    // The server may stand behind one that speaks TLS, so that either scheme is its own.
    for (const std::string_view port : {":80", ":443"})
        if (host.ends_with(port))
            host.remove_suffix(port.size());
    const std::string_view authority = authority_of(origin);
    return !authority.empty() && equal_ignore_case(authority, host);
}

} // namespace

bool is_from_own_pages(const asp::Headers& headers, const std::vector<std::string>& allowed) {
    const std::string* origin = asp::find_header(headers, "Origin");
    const std::string* referer = asp::find_header(headers, "Referer");
    const std::string_view from = origin ? std::string_view(*origin) : referer ? origin_of(*referer) : "";
    const auto is_from = [&](const std::string& other) { return equal_ignore_case(other, from); };
    if (!from.empty() && std::ranges::any_of(allowed, is_from))
        return true;
    if (const std::string* site = asp::find_header(headers, "Sec-Fetch-Site"))
        return *site == "same-origin" || *site == "none";
    if (!origin && !referer)
        return true;
    const std::string* host = asp::find_header(headers, "Host");
    return host && is_own(from, *host);
}

} // namespace tabrixdb::server
