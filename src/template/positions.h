#pragma once

#include <cstddef>
#include <string_view>

namespace tabrixdb {

inline constexpr std::size_t kNotFound = std::string_view::npos;

// Positions in templates are 16-bit: what is found beyond the character 32767 is an overflow.
inline constexpr std::size_t kLastPosition = 32767;

// The byte position of `wanted` at or after `from`, ignoring case, or kNotFound. Error 6 when it is found
// beyond kLastPosition, counted in UTF-16 units from 1 as the page's script would.
std::size_t find_short(std::string_view text, std::string_view wanted, std::size_t from = 0);
// The same for the last occurrence.
std::size_t rfind_short(std::string_view text, std::string_view wanted);

} // namespace tabrixdb
