#pragma once

#include <string>
#include <string_view>

// How a message's parts become lines of ASCII.
namespace tabrixdb::mail {

// As one line of valid UTF-8: controls, line breaks among them, and blanks around them become one blank.
std::string one_line(std::string_view text);

// A header's free text, of one line: as it is, or as encoded words when it has other letters than ASCII's or
// would make too long a line. `before`: characters that stand in its first line already.
std::string header_text(std::string_view text, std::size_t before);

// A name that stands before an address: a quoted text, or encoded words. "" for "".
std::string display_name(std::string_view text);

// A parameter behind a header's value, with the ";" before it; its own name is ASCII, its value any text.
std::string parameter(std::string_view name, std::string_view value);

// Lines of at most 76 characters, with CR LF between them and behind the last one.
std::string base64(std::string_view bytes);
// Text whose line breaks become CR LF, whichever they were.
std::string quoted_printable(std::string_view text);

} // namespace tabrixdb::mail
