#include "server/proxies.h"

#include "automation/text.h"
#include "server/host_names.h"

#include <algorithm>
#include <string_view>

namespace tabrixdb::server {

namespace {

std::string_view trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

// A header that came in several lines is one list.
std::string list_of(const asp::Headers& headers, std::string_view name) {
    std::string list;
    for (const asp::Header& header : headers)
        if (equal_ignore_case(header.name, name))
            list.append(list.empty() ? "" : ",").append(header.value);
    return list;
}

// Takes the last part of a list away, without its separator. Quotes are matched from the end: what follows
// them there is a proxy's, while an odd one before it may be a client's.
std::string_view take_last(std::string_view& list, char separator) {
    bool quoted = false;
    std::size_t at = list.size();
    while (at > 0 && (quoted || list[at - 1] != separator)) {
        quoted = quoted != (list[at - 1] == '"');
        --at;
    }
    const std::string_view last = list.substr(at);
    list = list.substr(0, at == 0 ? 0 : at - 1);
    return trimmed(last);
}

// "192.0.2.1", "192.0.2.1:80", "[2001:db8::1]:80", and the bare form of X-Forwarded-For, "2001:db8::1".
std::optional<IpAddress> address_of_node(std::string_view node) {
    if (const std::optional<IpAddress> bare = parse_address(node))
        return bare;
    if (!is_host(node))
        return std::nullopt;
    std::string_view name = asp::split_host(node).name;
    if (name.starts_with('['))
        name = name.substr(1, name.size() - 2);
    return parse_address(name);
}

std::optional<bool> is_secure(std::string_view scheme) {
    if (equal_ignore_case(scheme, "https"))
        return true;
    if (equal_ignore_case(scheme, "http"))
        return false;
    return std::nullopt;
}

std::string host_of(std::string_view given) {
    return std::string(is_host(given) ? given : std::string_view());
}

std::string client_of(std::string_view list, const AddressRanges& trusted) {
    std::optional<IpAddress> address;
    do {
        address = address_of_node(take_last(list, ','));
    } while (address && trusted.contains(*address) && !list.empty());
    return address ? address->text() : std::string();
}

// --- RFC 7239 --------------------------------------------------------------------------------------

// What one proxy says.
struct Element {
    std::optional<std::string_view> node, host, scheme;
};

// A token, or a text in quotes; nullopt for anything else, and for escapes, which none of the values needs.
std::optional<std::string_view> value_of(std::string_view text) {
    const bool quoted = text.size() >= 2 && text.starts_with('"') && text.ends_with('"');
    if (quoted)
        text = text.substr(1, text.size() - 2);
    if (text.empty() || text.find_first_of(quoted ? "\"\\" : "\"\\ \t=,;") != std::string_view::npos)
        return std::nullopt;
    return text;
}

// nullopt when it can't be read.
std::optional<Element> parse_element(std::string_view text) {
    Element element;
    do {
        const std::string_view pair = take_last(text, ';');
        if (pair.empty())
            continue;
        const std::size_t equals = std::min(pair.find('='), pair.size());
        const std::string_view name = pair.substr(0, equals);
        const std::optional<std::string_view> value =
            value_of(pair.substr(std::min(equals + 1, pair.size())));
        if (!value)
            return std::nullopt;
        std::optional<std::string_view> ignored;
        std::optional<std::string_view>& known = equal_ignore_case(name, "for")     ? element.node
                                                 : equal_ignore_case(name, "host")  ? element.host
                                                 : equal_ignore_case(name, "proto") ? element.scheme
                                                                                    : ignored;
        if (known) // said twice
            return std::nullopt;
        known = value;
    } while (!text.empty());
    return element;
}

// The element of the outermost trusted proxy says how the client came to it.
Forwarded read_standard(std::string_view list, const AddressRanges& trusted) {
    while (!list.empty()) {
        const std::optional<Element> element = parse_element(take_last(list, ','));
        if (!element)
            return {};
        const std::optional<IpAddress> address =
            element->node ? address_of_node(*element->node) : std::nullopt;
        if (address && trusted.contains(*address) && !list.empty())
            continue;
        return {.client = address ? address->text() : std::string(),
                .host = host_of(element->host.value_or("")),
                .secure = is_secure(element->scheme.value_or(""))};
    }
    return {};
}

} // namespace

Forwarded read_forwarded(const asp::Headers& headers, const AddressRanges& trusted) {
    const std::string clients = list_of(headers, "X-Forwarded-For");
    const std::string scheme = list_of(headers, "X-Forwarded-Proto");
    const std::string host = list_of(headers, "X-Forwarded-Host");
    if (clients.empty() && scheme.empty() && host.empty())
        return read_standard(list_of(headers, "Forwarded"), trusted);
    return {.client = client_of(clients, trusted),
            .host = host_of(trimmed(host)),
            .secure = is_secure(trimmed(scheme))};
}

} // namespace tabrixdb::server
