#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// The encodings of addresses, forms and HTML text.
namespace tabrixdb::asp {

// Server.URLEncode: a blank is "+", everything but ASCII letters and digits is %XX of its bytes.
std::string url_encode(std::string_view bytes);
// Bytes that may not stand in a header's address (controls, blanks, quotes, non-ASCII) become %XX; what is
// encoded already stays.
std::string encode_location(std::string_view address);
// Server.HTMLEncode: & < > " by name, characters from U+0080 on by number; an apostrophe stays.
std::string html_encode(std::string_view text);

// Decodes %XX once; a malformed escape stays as it is. `plus_is_blank`: as in forms and query strings.
std::string percent_decode(std::string_view text, bool plus_is_blank);

using Fields = std::vector<std::pair<std::string, std::string>>;

// Most fields of one form or query string (Error: ASP 0104). It bounds the work that a client can ask for
// with a small body of empty fields; a wide grid in edit mode posts some hundreds.
inline constexpr std::size_t kMaxFields = 5000;

// Decodes `a=1&b=2` into names and values in their order, as UTF-8: bytes are read in the code page, and
// what is not valid in it becomes U+FFFD. A field without "=" has an empty value; empty fields are skipped.
Fields decode_form(std::string_view text, std::uint32_t code_page);

} // namespace tabrixdb::asp
