#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tabrixdb::mail {

struct Mailbox {
    std::string name;    // as it is shown; may be empty
    std::string address; // "local@domain", ASCII without blanks, brackets and controls
};

// Most addresses in one list.
inline constexpr std::size_t kMaxAddresses = 500;

// The mailboxes of a list: "a@b.example; Ann <ann@c.example>, "Cid, jr." <cid@d.example>". Error 5, which
// names it, for an entry that is no address.
std::vector<Mailbox> parse_addresses(std::string_view list);

} // namespace tabrixdb::mail
