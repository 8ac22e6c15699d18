#pragma once

#include "asp/http.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tabrixdb::server {

// Whether a text can be the value of a Host header that names one: a name or an address, in brackets when
// it has colons, and perhaps a port. Nothing in it means anything in HTML.
bool is_host(std::string_view text) noexcept;

// More than one Host header, or one that is no host; an empty one is none.
bool has_bad_host(const asp::Headers& headers) noexcept;

// "shop:81" of the target "http://shop:81/page", as proxies write it; nullopt for a target that is a path.
std::optional<std::string_view> authority_of_target(std::string_view target) noexcept;

// Makes the Host header say `host`.
void set_host(asp::Headers& headers, std::string host);

// Whether one of `names` is the request's host, without regard to case and port; no names are any.
bool is_served(const asp::Headers& headers, const std::vector<std::string>& names) noexcept;

} // namespace tabrixdb::server
