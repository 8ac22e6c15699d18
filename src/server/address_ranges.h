#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tabrixdb::server {

// An address of the internet protocol; one of version 4 is kept as its mapped form ("::ffff:10.0.0.1"), so
// that it is the same address however a socket or a header spells it.
struct IpAddress {
    std::array<unsigned char, 16> bytes{};

    bool is_v4() const noexcept;
    // "10.0.0.1", "2001:db8::1".
    std::string text() const;

    friend bool operator==(const IpAddress&, const IpAddress&) = default;
};

// nullopt for anything but a whole address of either version, without brackets, port or zone.
std::optional<IpAddress> parse_address(std::string_view text);

// Addresses, and ranges of them ("10.0.0.0/8", "2001:db8::/32").
class AddressRanges {
public:
    // False, with nothing added, when `text` is neither. A range's address may have bits beyond its prefix.
    bool add(std::string_view text);

    bool contains(const IpAddress& address) const noexcept;

    bool empty() const noexcept { return ranges_.empty(); }

private:
    struct Range {
        IpAddress first;
        unsigned bits; // so many are the same in all its addresses

        bool contains(const IpAddress& address) const noexcept;
    };

    std::vector<Range> ranges_;
};

} // namespace tabrixdb::server
