// Decodes what clients send: forms and query strings, cookies, addresses.
#include "asp/code_page.h"
#include "asp/encoding.h"
#include "asp/request_collections.h"
#include "asp/site_paths.h"
#include "automation/error.h"

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

void check_form(std::string_view text) {
    try {
        const asp::Fields fields = asp::decode_form(text, asp::kUtf8);
        check(fields.size() <= asp::kMaxFields);
        for (const auto& [name, value] : fields) {
            check(asp::decode_bytes(name, asp::kUtf8) ==
                  name); // valid, so that decoding again changes nothing
            check(asp::decode_bytes(value, asp::kUtf8) == value);
        }
        const asp::MultiMap items(fields);
        for (const auto& [name, value] : fields)
            check(items.find(std::string_view(name)) != nullptr);
        asp::decode_form(text, 932);
    } catch (const Error&) { // too many fields
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    check_form(text);
    check(asp::percent_decode(asp::url_encode(text), true) == text);
    const asp::RequestCookies cookies({text}, asp::kUtf8);
    for (const auto& [name, value] : asp::parse_cookies(text))
        cookies.named(name);
    if (const auto plain = asp::plain_path(asp::percent_decode(text, false), "/folder/", true)) {
        check(plain->starts_with('/') && (*plain + '/').find("/../") == std::string::npos);
        check(asp::plain_path(*plain, "/", false) == plain);
    }
    asp::html_encode(asp::decode_file(text, asp::kUtf8));
    return 0;
}
