#pragma once

#include "automation/text.h"

#include <cstddef>
#include <string_view>

namespace tabrixdb::vbscript {

// `count` UTF-16 units of a text from the unit at `start` (0-based), as many as there are. May cut a pair of
// surrogates in two, as scripts can.
Text slice_units(const Text& text, std::size_t start, std::size_t count);

// The byte position of a unit and back; free for ASCII. A unit within a pair counts as the pair's end.
std::size_t byte_of(const Text& text, std::size_t unit);
std::size_t unit_of(const Text& text, std::size_t byte);

} // namespace tabrixdb::vbscript
