// Reads what clients and proxies say of a request: hosts, addresses, the headers of proxies.
#include "server/proxies.h"

#include "server/host_names.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

using namespace tabrixdb;

void check(bool holds) {
    if (!holds)
        std::abort();
}

server::AddressRanges ranges_of(const char* range) {
    server::AddressRanges ranges;
    check(ranges.add(range));
    return ranges;
}

void check_forwarded(const asp::Headers& headers) {
    static const server::AddressRanges trusted = ranges_of("10.0.0.0/8");
    const server::Forwarded told = server::read_forwarded(headers, trusted);
    check(told.host.empty() || server::is_host(told.host));
    if (told.client.empty())
        return;
    const auto address = server::parse_address(told.client);
    check(address && address->text() == told.client);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    check_forwarded({{"X-Forwarded-For", text}, {"X-Forwarded-Host", text}, {"X-Forwarded-Proto", text}});
    check_forwarded({{"Forwarded", text}});
    // Whatever stands left of what the nearest proxy says changes nothing.
    static const server::AddressRanges none;
    const server::Forwarded told =
        server::read_forwarded({{"Forwarded", text + ", for=192.0.2.1;proto=https"}}, none);
    check(told == server::Forwarded{.client = "192.0.2.1", .host = {}, .secure = true});
    server::AddressRanges ranges;
    ranges.add(text);
    if (server::is_host(text))
        check(text.find_first_of("<>\"'&/ ") == std::string::npos);
    server::authority_of_target(text);
    return 0;
}
