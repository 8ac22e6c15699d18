#pragma once

#include "vbscript/source.h"
#include "vbscript/token.h"

#include <string>

namespace tabrixdb::vbscript {

// Line and column of a place, counted in UTF-16 units from the piece's own position.
Position position_of(const Source& source, Place place);
// The line of the source that holds the place, without its line break.
std::string source_line_at(const Source& source, Place place);

// Raises the compile error of that number (1001 to 1058), with its standard text or with `text`.
[[noreturn]] void raise_compile_error(const Source& source, Place place, std::int32_t number);
[[noreturn]] void raise_compile_error(const Source& source, Place place, std::int32_t number,
                                      std::string text);

// A run-time error with its place, and with the engine as its source when it has none.
ScriptError located(const Error& error, const Source& source, Place place);

} // namespace tabrixdb::vbscript
