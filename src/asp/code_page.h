#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// Text in the code pages that pages, forms and responses may use. Inside everything is UTF-8.
namespace tabrixdb::asp {

inline constexpr std::uint32_t kUtf8 = 65001;

bool is_code_page(std::uint32_t code_page) noexcept;
// The code page as a charset names it: "utf-8", "windows-1252".
std::string_view charset_name(std::uint32_t code_page) noexcept;
// The other way, ignoring case; nullopt for a charset that is not known.
std::optional<std::uint32_t> code_page_of(std::string_view charset) noexcept;

// Both replace what cannot be converted: U+FFFD in decoded text, "?" in encoded bytes. An unknown code
// page counts as UTF-8.
std::string decode_bytes(std::string bytes, std::uint32_t code_page);
std::string encode_text(std::string_view text, std::uint32_t code_page);

// The same, one byte a character and each byte a character; in Windows-1252 for a code page that has
// characters of several bytes. A byte that the code page has no character for is the control character of its
// number, so that bytes survive both ways; a character that it does not have is "?".
std::string decode_single_bytes(std::string_view bytes, std::uint32_t code_page);
std::string encode_single_bytes(std::string_view text, std::uint32_t code_page);

// A file of the site as text: a byte order mark decides and is dropped; otherwise the code page does. Under
// UTF-8 a file that is no valid UTF-8 is read as Windows-1252, which old pages and templates are written in.
std::string decode_file(std::string bytes, std::uint32_t code_page);

} // namespace tabrixdb::asp
