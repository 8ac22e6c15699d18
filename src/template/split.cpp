#include "template/split.h"

#include "automation/error.h"
#include "automation/text.h"
#include "template/positions.h"

namespace tabrixdb {

namespace {

constexpr std::string_view kContentStart = "<!--tabrixdb:content_start-->";
constexpr std::string_view kContentEnd = "<!--tabrixdb:content_end-->";
constexpr std::string_view kStripeStart = "<!--tabrixdb:content_stripe_start-->";
constexpr std::string_view kStripeEnd = "<!--tabrixdb:content_stripe_end-->";
constexpr std::string_view kTableOpen = "<table";
constexpr std::string_view kTableClose = "</table>";

// From the start marker through the end marker, both included; empty without either.
std::string_view between(std::string_view text, std::string_view start, std::string_view end) {
    const std::size_t from = find_short(text, start);
    const std::size_t to = from == kNotFound ? kNotFound : find_short(text, end, from);
    return to == kNotFound ? std::string_view() : text.substr(from, to + end.size() - from);
}

std::string_view header_of(std::string_view text) {
    const std::size_t table = find_short(text, kTableOpen);
    const std::size_t content = table == kNotFound ? kNotFound : find_short(text, kContentStart, table);
    return content == kNotFound ? std::string_view() : text.substr(table, content - table);
}

std::string_view footer_of(std::string_view text) {
    std::string_view marker = kStripeEnd;
    std::size_t start = find_short(text, marker);
    if (start == kNotFound)
        start = find_short(text, marker = kContentEnd);
    if (start == kNotFound)
        return {};
    const std::size_t last = rfind_short(text, kTableClose);
    if (last == kNotFound)
        return {};
    if (last + kTableClose.size() < start)
        throw Error(kErrorCall);
    // Deliberately measured from the marker's start although the piece begins at its end: the footer also
    // takes up to the marker's length of what follows the final closing tag.
    const std::size_t units = utf16_length(text.substr(start, last + kTableClose.size() - start));
    const std::string_view rest = text.substr(start + marker.size());
    return rest.substr(0, byte_of_unit(rest, units));
}

} // namespace

TemplateParts split_template(std::string_view text) {
    TemplateParts parts;
    parts.header = header_of(text);
    parts.footer = footer_of(text);
    parts.stripe = between(text, kStripeStart, kStripeEnd);
    parts.row = between(text, kContentStart, kContentEnd);
    if (parts.row.empty())
        parts.row = text;
    return parts;
}

std::string take_table_tag(std::string& fragment) {
    const std::size_t start = find_short(fragment, kTableOpen);
    const std::size_t end = start == kNotFound ? kNotFound : find_short(fragment, ">", start);
    if (end == kNotFound)
        return {};
    std::string tag = fragment.substr(start, end + 1 - start);
    fragment.erase(0, end + 1);
    if (const std::size_t close = rfind_short(fragment, kTableClose); close != kNotFound)
        fragment.resize(close);
    return tag;
}

void replace_span(std::string& text, std::string_view start, std::string_view end, std::string_view with) {
    const std::size_t from = find_short(text, start);
    const std::size_t to = from == kNotFound ? kNotFound : find_short(text, end, from);
    if (to == kNotFound)
        return;
    const std::string span = text.substr(from, to + end.size() - from);
    text = replace_ignore_case(text, span, with);
}

} // namespace tabrixdb
