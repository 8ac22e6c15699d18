#pragma once

#include "automation/object.h"

#include <cstdint>
#include <string_view>

namespace tabrixdb::vbscript {

// A function of the run-time library. Those that need the machine itself (CreateObject, Eval, GetRef, ...)
// are the machine's; all others are here, one source file a family.
struct LibraryFunction {
    std::string_view name;
    std::int8_t least; // fewest and most arguments; others are Error 450
    std::int8_t most;  // -1: any number
    Variant (*call)(Arguments);
};

// nullptr for a name that the library does not have; ignores case.
const LibraryFunction* find_library_function(std::string_view name) noexcept;
// Starts the thread's random numbers anew (Rnd, Randomize), as every new machine does.
void reset_random() noexcept;
// A constant of the language (vbCrLf, vbTextCompare, ...), or nullptr.
const Variant* find_library_constant(std::string_view name) noexcept;

} // namespace tabrixdb::vbscript
