#include "server/address_ranges.h"

#include <algorithm>
#include <charconv>
#include <span>

#include <arpa/inet.h>
#include <sys/socket.h>

namespace tabrixdb::server {

namespace {

constexpr std::array<unsigned char, 12> kMappedPrefix = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xFF, 0xFF};
constexpr unsigned kMappedBits = kMappedPrefix.size() * 8;
constexpr unsigned kAllBits = 128;

} // namespace

bool IpAddress::is_v4() const noexcept {
    return std::ranges::equal(kMappedPrefix, std::span(bytes).first<kMappedPrefix.size()>());
}

std::string IpAddress::text() const {
    char text[INET6_ADDRSTRLEN] = "";
    if (is_v4())
        inet_ntop(AF_INET, &bytes[kMappedPrefix.size()], text, sizeof text);
    else
        inet_ntop(AF_INET6, bytes.data(), text, sizeof text);
    return text;
}

std::optional<IpAddress> parse_address(std::string_view text) {
    // A NUL would end what inet_pton reads before the text does.
    if (text.size() >= INET6_ADDRSTRLEN || text.find('\0') != std::string_view::npos)
        return std::nullopt;
    const std::string whole(text);
    IpAddress address;
    if (inet_pton(AF_INET6, whole.c_str(), address.bytes.data()) == 1)
        return address;
    std::ranges::copy(kMappedPrefix, address.bytes.begin());
    if (inet_pton(AF_INET, whole.c_str(), &address.bytes[kMappedPrefix.size()]) == 1)
        return address;
    return std::nullopt;
}

bool AddressRanges::add(std::string_view text) {
    const std::size_t slash = text.find('/');
    const std::optional<IpAddress> first = parse_address(text.substr(0, slash));
    if (!first)
        return false;
    unsigned bits = kAllBits;
    if (slash != std::string_view::npos) {
        const std::string_view given = text.substr(slash + 1);
        const auto [end, error] = std::from_chars(given.data(), given.data() + given.size(), bits);
        const bool is_v4 = text.find(':') == std::string_view::npos;
        const unsigned added = is_v4 ? kMappedBits : 0;
        if (error != std::errc() || end != given.data() + given.size() || bits > kAllBits - added)
            return false;
        bits += added;
    }
    ranges_.push_back({*first, bits});
    return true;
}

bool AddressRanges::contains(const IpAddress& address) const noexcept {
    return std::ranges::any_of(ranges_, [&](const Range& range) { return range.contains(address); });
}

bool AddressRanges::Range::contains(const IpAddress& address) const noexcept {
    // "::/0" is every address of version 6, and none of version 4.
    if (bits < kMappedBits && address.is_v4())
        return false;
    const std::size_t whole = bits / 8;
    if (!std::equal(first.bytes.begin(), first.bytes.begin() + static_cast<std::ptrdiff_t>(whole),
                    address.bytes.begin()))
        return false;
    const unsigned rest = bits % 8;
    return rest == 0 || ((first.bytes[whole] ^ address.bytes[whole]) >> (8 - rest)) == 0;
}

} // namespace tabrixdb::server
