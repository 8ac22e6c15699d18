#pragma once

#include "platform/page.h"

#include <string>
#include <string_view>

namespace tabrixdb {

// Scheme and host of the page that is served, as the server variables HTTPS and HTTP_HOST have them:
// "https://" when HTTPS is ON, in any case.
std::string site_address(platform::Request& request);

// The absolute address of the page that is served: the site's and the server variable URL, with "?" and the
// query string when `with_query` and there is one. Quotes, "<", ">" and the like that a client sent bare are
// %XX in it.
std::string page_address(platform::Request& request, bool with_query);

// The current query string with the name=value pairs of `pairs` ("a=1&b=2") put in: a name that is there,
// ignoring case, keeps its place and gets the new value; others follow in the order given. A name passes
// through Server.URLEncode when it holds more than letters, digits, "_", "-" and "."; `encode` passes every
// value through it. An empty `pairs` gives the query string as it is, with `encode` made harmless as above.
std::string query_include(platform::Request& request, platform::Server& server, std::string_view pairs,
                          bool encode);

} // namespace tabrixdb
