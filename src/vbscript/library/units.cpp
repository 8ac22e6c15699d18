#include "vbscript/library/units.h"

#include <algorithm>
#include <string>

namespace tabrixdb::vbscript {

namespace {

constexpr std::size_t kPairBytes = 4; // UTF-8 bytes of a character that is two units

bool is_pair(std::string_view text, std::size_t at) {
    return next_code_point(text, at) >= 0x10000;
}

// True when `unit`, whose byte position was rounded up to `byte`, is the second half of the pair before it.
bool within_pair(const Text& text, std::size_t unit, std::size_t byte) {
    const std::string_view view = text.view();
    if (byte < kPairBytes || !is_pair(view, byte - kPairBytes))
        return false;
    return byte == view.size() ? unit < text.units() : byte_of_unit(view, unit + 1) == byte;
}

void append_half(std::string& out, std::string_view text, std::size_t pair, bool high) {
    const char32_t bits = next_code_point(text, pair) - 0x10000;
    append_utf8(out, high ? 0xD800 + (bits >> 10) : 0xDC00 + (bits & 0x3FF));
}

} // namespace

Text slice_units(const Text& text, std::size_t start, std::size_t count) {
    const std::string_view view = text.view();
    const std::size_t units = text.units();
    if (start == 0 && count >= units)
        return text;
    if (start >= units || count == 0)
        return {};
    count = std::min(count, units - start);
    if (text.ascii())
        return Text(view.substr(start, count));
    const std::size_t from = byte_of_unit(view, start);
    const bool from_within = within_pair(text, start, from);
    const std::size_t to = from + byte_of_unit(view.substr(from), count - from_within);
    const bool to_within = within_pair(text, start + count, to);
    if (!from_within && !to_within)
        return Text(view.substr(from, to - from));
    std::string out;
    if (from_within)
        append_half(out, view, from - kPairBytes, false);
    const std::size_t end = to_within ? to - kPairBytes : to;
    if (end > from)
        out.append(view.substr(from, end - from));
    if (to_within)
        append_half(out, view, end, true);
    return Text(out);
}

std::size_t byte_of(const Text& text, std::size_t unit) {
    return text.ascii() ? std::min(unit, text.size()) : byte_of_unit(text.view(), unit);
}

std::size_t unit_of(const Text& text, std::size_t byte) {
    return text.ascii() ? byte : utf16_length(text.view().substr(0, byte));
}

} // namespace tabrixdb::vbscript
