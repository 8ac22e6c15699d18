#pragma once

#include "automation/text.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace tabrixdb {

// The longest text that tags are filled into. Values may hold tags that are filled in their turn, so that a
// few short values could otherwise make any length. More is Error 14.
inline constexpr std::size_t kMaxFilledBytes = std::size_t{16} * 1024 * 1024;

// Replaces every occurrence of a tag, in any case.
inline void fill_tag(std::string& text, std::string_view tag, std::string_view with) {
    if (contains_ignore_case(text, tag))
        text = replace_ignore_case(text, tag, with, kMaxFilledBytes);
}

} // namespace tabrixdb
