#pragma once

#include "platform/page.h"

#include <string>
#include <string_view>

namespace tabrixdb {

// Scheme and host of the page that is served: "https://" when the server variable HTTPS is ON, in any case.
std::string site_address(platform::Request& request);

// The absolute address of the page that is served: the site's and URL, with "?" and the query string when
// `with_query` and there is one.
std::string page_address(platform::Request& request, bool with_query);

// The current query string with the name=value pairs of `pairs` ("a=1&b=2") put in: a name that is there,
// ignoring case, keeps its place and gets the new value; others follow in the order given. `encode` passes
// every value through Server.URLEncode. An empty `pairs` gives the query string as it is.
std::string query_include(platform::Request& request, platform::Server& server, std::string_view pairs,
                          bool encode);

} // namespace tabrixdb
