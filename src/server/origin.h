#pragma once

#include "asp/http.h"

#include <string>
#include <vector>

namespace tabrixdb::server {

// Whether a request that changes something comes from a page of this site, so that other sites cannot post
// in the name of a visitor. The browser's own word (Sec-Fetch-Site) counts first, then Origin, then
// Referer, compared with Host; a client that sends none of them is no browser and is let through.
// `allowed`: other origins ("https://other.example") that may post.
bool is_from_own_pages(const asp::Headers& headers, const std::vector<std::string>& allowed);

} // namespace tabrixdb::server
