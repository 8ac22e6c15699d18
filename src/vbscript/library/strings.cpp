#include "vbscript/library/arguments.h"
#include "vbscript/library/families.h"
#include "vbscript/library/units.h"

#include <algorithm>
#include <array>
#include <limits>

// Parts, cases and blanks of texts, and their characters. Positions and lengths are UTF-16 units.
namespace tabrixdb::vbscript {

namespace {

Variant len(Arguments arguments) {
    const TextArgument text(*arguments[0]);
    return text.is_null() ? Variant::null() : Variant(static_cast<std::int32_t>(text->units()));
}

Variant left(Arguments arguments) {
    const TextArgument text(*arguments[0]);
    if (text.is_null())
        return Variant::null();
    return slice_units(*text, 0, count_argument(*arguments[1], 0));
}

Variant right(Arguments arguments) {
    const TextArgument text(*arguments[0]);
    if (text.is_null())
        return Variant::null();
    const std::size_t count = std::min(count_argument(*arguments[1], 0), text->units());
    return slice_units(*text, text->units() - count, count);
}

Variant mid(Arguments arguments) {
    const TextArgument text(*arguments[0]);
    if (text.is_null())
        return Variant::null();
    const std::size_t start = count_argument(*arguments[1], 1);
    const std::size_t count =
        given(arguments, 2) ? count_argument(*arguments[2], 0) : std::numeric_limits<std::size_t>::max();
    return slice_units(*text, start - 1, count);
}

template <std::string (*Map)(std::string_view)>
Variant map_case(Arguments arguments) {
    const TextArgument text(*arguments[0]);
    return text.is_null() ? Variant::null() : Variant(Map(text->view()));
}

// Only blanks go, not tabs or line ends.
template <bool Start, bool End>
Variant trim(Arguments arguments) {
    const TextArgument text(*arguments[0]);
    if (text.is_null())
        return Variant::null();
    std::string_view view = text->view();
    if (Start)
        view.remove_prefix(std::min(view.find_first_not_of(' '), view.size()));
    if (End)
        view = view.substr(0, view.find_last_not_of(' ') + 1);
    return view.size() == text->size() ? Variant(*text) : Variant(view);
}

// --- Texts made of one character -------------------------------------------------------------------

Variant repeat(std::string_view character, std::size_t count) {
    if (count > kMaxTextBytes / character.size())
        throw Error(14);
    std::string out;
    out.reserve(count * character.size());
    for (std::size_t i = 0; i < count; ++i)
        out.append(character);
    return out;
}

Variant space(Arguments arguments) {
    return repeat(" ", count_argument(*arguments[0], 0));
}

// --- Character codes -------------------------------------------------------------------------------

// Chr and Asc speak the code page that scripts were written in, Windows-1252: it differs from Unicode in
// these 32 places (its five holes are taken as the control characters of the same number).
constexpr std::array<char16_t, 32> kWindows1252{
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};
constexpr std::int32_t kFirstDifference = 0x80;

std::string character(std::int32_t code) {
    char32_t code_point = static_cast<char32_t>(code);
    const std::int32_t index = code - kFirstDifference;
    if (index >= 0 && index < static_cast<std::int32_t>(kWindows1252.size()))
        code_point = kWindows1252[static_cast<std::size_t>(index)];
    std::string out;
    append_utf8(out, code_point);
    return out;
}

std::int16_t code_of(char32_t code_point) {
    const auto place = std::ranges::find(kWindows1252, code_point);
    if (place != kWindows1252.end())
        return static_cast<std::int16_t>(kFirstDifference + (place - kWindows1252.begin()));
    return code_point <= 0xFF ? static_cast<std::int16_t>(code_point) : '?';
}

Variant chr(Arguments arguments) {
    const std::int32_t code = to_long(*arguments[0]);
    if (code < 0 || code > 255)
        throw Error(kErrorCall);
    return character(code);
}

Variant chr_w(Arguments arguments) {
    const std::int32_t code = to_long(*arguments[0]);
    if (code < INT16_MIN || code > UINT16_MAX)
        throw Error(kErrorCall);
    std::string out;
    append_utf8(out, static_cast<char16_t>(code));
    return out;
}

char32_t first_character(Arguments arguments) {
    const TextArgument text(*arguments[0]);
    if (text->empty())
        throw Error(kErrorCall);
    std::size_t at = 0;
    return next_code_point(text->view(), at);
}

Variant asc(Arguments arguments) {
    return code_of(first_character(arguments));
}

// An Integer, so units from &H8000 are negative.
Variant asc_w(Arguments arguments) {
    const char32_t c = first_character(arguments);
    return static_cast<std::int16_t>(c < 0x10000 ? c : 0xD800 + ((c - 0x10000) >> 10));
}

// String(3, "ab") is "aaa"; String(3, 65) is "AAA".
Variant string(Arguments arguments) {
    const std::size_t count = count_argument(*arguments[0], 0);
    const Value value(*arguments[1]);
    if (value->is_null())
        return Variant::null();
    if (!value->is_string())
        return repeat(character(to_long(*value) & 0xFF), count);
    const TextArgument text(*value);
    if (text->empty())
        throw Error(kErrorCall);
    return repeat(slice_units(*text, 0, 1).view(), count);
}

// --- Whole texts -----------------------------------------------------------------------------------

Variant str_reverse(Arguments arguments) {
    const TextArgument text(*arguments[0]);
    if (text->ascii())
        return std::string(text->view().rbegin(), text->view().rend());
    std::string bytes = to_utf16(text->view()); // units are reversed, halves of pairs too
    std::ranges::reverse(bytes);
    for (std::size_t at = 0; at < bytes.size(); at += 2)
        std::swap(bytes[at], bytes[at + 1]);
    std::string out;
    append_utf16(out, bytes);
    return out;
}

constexpr std::string_view kHexDigits = "0123456789ABCDEF";

void append_hex(std::string& out, unsigned value, int digits) {
    while (digits-- > 0)
        out += kHexDigits[(value >> (4 * digits)) & 15];
}

// "%41" for units to 255, "%u20AC" beyond; letters, digits and @*_+-./ stay.
Variant escape(Arguments arguments) {
    const TextArgument text(*arguments[0]);
    if (text.is_null())
        return Variant::null();
    constexpr std::string_view kKept = "@*_+-./";
    const std::string units = to_utf16(text->view());
    std::string out;
    for (std::size_t at = 0; at < units.size(); at += 2) {
        const unsigned unit =
            static_cast<unsigned char>(units[at]) | (static_cast<unsigned char>(units[at + 1]) << 8);
        const auto c = static_cast<char>(unit);
        const bool letter = (unit >= 'a' && unit <= 'z') || (unit >= 'A' && unit <= 'Z');
        if (letter || (unit >= '0' && unit <= '9') || (unit < 128 && kKept.find(c) != kKept.npos)) {
            out += c;
        } else if (unit < 256) {
            out += '%';
            append_hex(out, unit, 2);
        } else {
            out.append("%u");
            append_hex(out, unit, 4);
        }
        if (out.size() > kMaxTextBytes)
            throw Error(14);
    }
    return out;
}

int hex_value(std::string_view digits) {
    int value = 0;
    for (const char c : digits) {
        const std::size_t digit = kHexDigits.find(c >= 'a' ? static_cast<char>(c - 32) : c);
        if (digit == kHexDigits.npos)
            return -1;
        value = value * 16 + static_cast<int>(digit);
    }
    return value;
}

Variant unescape(Arguments arguments) {
    const TextArgument text(*arguments[0]);
    if (text.is_null())
        return Variant::null();
    const std::string_view view = text->view();
    Text out; // which joins the halves of a pair as they come
    for (std::size_t at = 0; at < view.size();) {
        const std::size_t percent = std::min(view.find('%', at), view.size());
        out.append(view.substr(at, percent - at));
        at = percent;
        if (at == view.size())
            break;
        const bool wide = at + 1 < view.size() && view[at + 1] == 'u';
        const std::size_t digits = wide ? 4 : 2, start = at + (wide ? 2 : 1);
        const int unit = start + digits <= view.size() ? hex_value(view.substr(start, digits)) : -1;
        std::string one = "%"; // stays when no code follows
        if (unit >= 0) {
            one.clear();
            append_utf8(one, static_cast<char32_t>(unit));
        }
        out.append(one);
        at = unit >= 0 ? start + digits : at + 1;
    }
    return out;
}

constexpr LibraryFunction kFunctions[] = {
    {"Len", 1, 1, len},
    {"Left", 2, 2, left},
    {"Right", 2, 2, right},
    {"Mid", 2, 3, mid},
    {"UCase", 1, 1, map_case<upper>},
    {"LCase", 1, 1, map_case<lower>},
    {"Trim", 1, 1, trim<true, true>},
    {"LTrim", 1, 1, trim<true, false>},
    {"RTrim", 1, 1, trim<false, true>},
    {"Space", 1, 1, space},
    {"String", 2, 2, string},
    {"StrReverse", 1, 1, str_reverse},
    {"Asc", 1, 1, asc},
    {"AscW", 1, 1, asc_w},
    {"Chr", 1, 1, chr},
    {"ChrW", 1, 1, chr_w},
    {"Escape", 1, 1, escape},
    {"Unescape", 1, 1, unescape},
};

} // namespace

std::span<const LibraryFunction> string_functions() {
    return kFunctions;
}

} // namespace tabrixdb::vbscript
