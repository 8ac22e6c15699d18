#pragma once

#include "asp/http.h"
#include "server/address_ranges.h"

#include <optional>
#include <string>

namespace tabrixdb::server {

// How the visitor reached the proxies in front of this server, as far as they say.
struct Forwarded {
    std::string client;         // the address; "" when it is not told
    std::string host;           // as Host would give it; "" when it is not told
    std::optional<bool> secure; // by https

    friend bool operator==(const Forwarded&, const Forwarded&) = default;
};

// What X-Forwarded-For, -Proto and -Host say, or without any of them Forwarded (RFC 7239). The addresses are
// read from the right, where the nearest proxy has put what it saw: the client is the first that is none of
// `trusted`, or the last one when all are. What stands left of it was sent by the client, and is not looked
// at. A header that can't be read up to there says nothing; nor do two hosts or schemes in a row, which
// nobody can tell apart.
Forwarded read_forwarded(const asp::Headers& headers, const AddressRanges& trusted);

} // namespace tabrixdb::server
