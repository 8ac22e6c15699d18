#pragma once

#include "vbscript/library.h"

#include <span>
#include <string_view>
#include <utility>

// The families of the run-time library: one source file each, joined by library.cpp.
namespace tabrixdb::vbscript {

std::span<const LibraryFunction> string_functions();
std::span<const LibraryFunction> search_functions();
std::span<const LibraryFunction> byte_functions();
std::span<const LibraryFunction> number_functions();
std::span<const LibraryFunction> random_functions();
std::span<const LibraryFunction> date_functions();
std::span<const LibraryFunction> date_arithmetic_functions();
std::span<const LibraryFunction> conversion_functions();
std::span<const LibraryFunction> array_functions();
std::span<const LibraryFunction> formatting_functions();
std::span<const LibraryFunction> engine_functions();

using LibraryConstant = std::pair<std::string_view, Variant>;
std::span<const LibraryConstant> library_constants();

} // namespace tabrixdb::vbscript
