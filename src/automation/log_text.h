#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// What may stand in a log, and in what is said of a failure.
namespace tabrixdb {

// A text can repeat what a client sent: without its control characters and separators of lines, each of which
// becomes a blank, it can't pass for several lines, and can't speak to a terminal.
std::string one_line(std::string_view text);

// The same between quotes, which are preceded by a backslash inside, as a backslash is. A text of more than
// `most` bytes is cut and followed by "...".
std::string quoted_line(std::string_view text, std::size_t most);

// The first `most` bytes of a text, less when they would end inside a character; "..." follows what was cut.
std::string shortened(std::string_view text, std::size_t most);

// A text without the passwords of connection strings: what follows "Password=" or "Pwd=", up to the next ";"
// or the end of the line, becomes "***". A value in quotes or braces may hold ";".
std::string without_passwords(std::string_view text);

} // namespace tabrixdb
