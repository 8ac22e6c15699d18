#include "automation/display_format.h"
#include "automation/text.h"

#include <algorithm>

namespace tabrixdb {

namespace {

bool has(const DisplayFormat::Section& section, char code) {
    return std::ranges::any_of(section,
                               [&](const DisplayFormat::Token& token) { return token.code == code; });
}

bool is_place(const DisplayFormat::Token& token) {
    return token.code == '@' || token.code == '&';
}

} // namespace

// Places are filled from the right unless "!" says from the left; an empty "@" is a blank, an empty "&"
// nothing; what finds no place is written where the filling ends.
void append_text_section(std::string& out, std::string_view text, const DisplayFormat::Section& section) {
    const std::string shown = has(section, '>')   ? upper(text)
                              : has(section, '<') ? lower(text)
                                                  : std::string(text);
    const auto places = static_cast<std::size_t>(std::ranges::count_if(section, is_place));
    const std::size_t units = utf16_length(shown);
    const bool from_left = has(section, '!');
    const std::size_t empty = places > units ? places - units : 0; // places that stay empty
    std::size_t at = 0;
    const auto take = [&] {
        if (at < shown.size()) {
            std::size_t next = at;
            next_code_point(shown, next);
            out.append(shown, at, next - at);
            at = next;
        }
    };
    std::size_t place = 0;
    for (const DisplayFormat::Token& token : section) {
        if (token.code == DisplayFormat::Token::kLiteral)
            out += token.text;
        if (!is_place(token))
            continue;
        const bool is_empty = from_left ? place >= units : place < empty;
        if (is_empty && token.code == '@')
            out += ' ';
        if (!is_empty) {
            if (!from_left && place == 0)
                for (std::size_t more = places; more < units; ++more)
                    take();
            take();
        }
        ++place;
    }
    out.append(shown, std::min(at, shown.size()));
}

} // namespace tabrixdb
