#include "editing/offered_values.h"

#include "automation/text.h"
#include "editing/posted_form.h"
#include "template/parse_view.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string>
#include <utility>
#include <vector>

namespace tabrixdb {

namespace {

constexpr std::size_t kNone = std::string_view::npos;

// Stands for a character that HTML has by a name which is not known here.
constexpr char kSomeLetter = '\x01';

// The character of a reference without its "&" and ";".
std::string character(std::string_view reference) {
    constexpr auto kNamed = std::to_array<std::pair<std::string_view, std::string_view>>(
        {{"amp", "&"}, {"lt", "<"}, {"gt", ">"}, {"quot", "\""}, {"apos", "'"}, {"nbsp", "\xC2\xA0"}});
    for (const auto& [name, text] : kNamed)
        if (reference == name)
            return std::string(text);
    std::string text;
    if (!reference.starts_with('#'))
        return {kSomeLetter};
    const bool hexadecimal = reference.size() > 1 && (reference[1] == 'x' || reference[1] == 'X');
    const std::string_view digits = reference.substr(hexadecimal ? 2 : 1);
    std::uint32_t code = 0;
    const auto [end, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), code, hexadecimal ? 16 : 10);
    if (error == std::errc() && end == digits.data() + digits.size() && code != 0 && code <= 0x10FFFF)
        append_utf8(text, code);
    return text;
}

// HTML text as a browser reads it.
std::string decoded(std::string_view html) {
    constexpr std::size_t kLongestName = 10;
    std::string text;
    for (std::size_t at = 0; at < html.size();) {
        const std::size_t end = html[at] == '&' ? html.find(';', at) : kNone;
        if (end != kNone && end > at + 1 && end - at <= kLongestName) {
            text += character(html.substr(at + 1, end - at - 1));
            at = end + 1;
        } else {
            text += html[at++];
        }
    }
    return text;
}

bool is_same(std::string_view offered, std::string_view posted) {
    std::size_t at = 0;
    for (const char c : offered) {
        if (at == posted.size())
            return false;
        if (c == kSomeLetter && static_cast<unsigned char>(posted[at]) >= 0x80)
            next_code_point(posted, at);
        else if (posted[at++] != c)
            return false;
    }
    return at == posted.size();
}

// Where text ends: before a tag, for which a browser takes "<" only with a letter, "/" or "!" behind it.
std::size_t text_end(std::string_view html, std::size_t from) {
    for (std::size_t at = from; (at = html.find('<', at)) != kNone; ++at) {
        const char next = at + 1 < html.size() ? html[at + 1] : ' ';
        if ((next >= 'a' && next <= 'z') || (next >= 'A' && next <= 'Z') || next == '/' || next == '!')
            return at;
    }
    return html.size();
}

// The values that the entries of a list post.
std::vector<std::string> entries(std::string_view view) {
    constexpr std::string_view kOption = "<option";
    std::vector<std::string> values;
    for (std::size_t at = 0; (at = find_ignore_case(view, kOption, at)) != kNone;) {
        const std::size_t end = std::min(view.find('>', at), view.size());
        const std::string_view tag = view.substr(at, end - at);
        const std::size_t close = text_end(view, end);
        std::string_view value;
        if (read_attribute(tag, "value", value))
            values.push_back(decoded(value));
        else if (end < close)
            values.push_back(collapsed(decoded(view.substr(end + 1, close - end - 1))));
        else
            values.emplace_back();
        at = end;
    }
    return values;
}

bool has_value(const std::vector<std::string>& offered, std::string_view posted) {
    return std::ranges::any_of(offered, [&](const std::string& value) { return is_same(value, posted); });
}

bool is_listed(const DbField& field, FormMode mode, std::string_view posted) {
    std::vector<std::string> offered = entries(field.view(mode));
    // The empty entry that leads each list takes the place of a value that is not in it, and is no offer.
    constexpr std::string_view kLeading = "<option></option>";
    const std::string_view view = field.view(mode);
    if (const std::size_t first = find_ignore_case(view, "<option");
        first != kNone && equal_ignore_case(view.substr(first, kLeading.size()), kLeading))
        offered.erase(offered.begin());
    return has_value(offered, posted) || has_value(offered, collapsed(posted));
}

// A box that is not checked posts nothing, and so do buttons of which none is. `several`: boxes that post
// together.
bool is_choice(std::vector<std::string> offered, std::string_view posted, bool several) {
    for (std::string& value : offered) {
        value = decoded(trimmed(value));
        // A box without a value of its own has all that follows up to the next quote.
        if (value.find('>') != std::string::npos && posted.starts_with("ON"))
            return true;
    }
    if (trimmed(posted).empty() || has_value(offered, trimmed(posted)))
        return true;
    const std::vector<std::string_view> parts = split(posted, ',');
    return several && std::ranges::all_of(
                          parts, [&](std::string_view part) { return has_value(offered, trimmed(part)); });
}

} // namespace

std::string collapsed(std::string_view text) {
    std::string out;
    for (const char c : text) {
        const bool blank = c == ' ' || c == '\t' || c == '\r' || c == '\n';
        if (!blank)
            out += c;
        else if (!out.empty() && out.back() != ' ')
            out += ' ';
    }
    while (out.ends_with(' '))
        out.pop_back();
    return out;
}

bool is_offered(const DbSource& source, const DbField& field, FormMode mode, std::string_view posted) {
    const std::string& kind = field.view_kind(mode);
    if (kind == "SELECT")
        return is_listed(field, mode, posted);
    const bool several = kind == "CHECKBOX_LIST" || kind == "GETCHECKBOX_FROMFIELD";
    return !is_check_kind(kind) || is_choice(box_values(source, field, mode), posted, several);
}

} // namespace tabrixdb
