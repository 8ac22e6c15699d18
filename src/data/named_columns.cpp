#include "data/named_columns.h"

#include "automation/text.h"

#include <algorithm>

namespace tabrixdb {

namespace {

bool is_name_sign(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
           c == '$' || static_cast<unsigned char>(c) >= 0x80;
}

// The expression with blanks in the place of its texts and dates. A quote that is not closed hides nothing.
std::string without_values(std::string_view expression) {
    std::string text(expression);
    for (std::size_t at = 0; at < text.size(); ++at) {
        const char sign = text[at];
        if (sign == '[') { // a name, in which quotes are letters
            at = std::min(text.find(']', at), text.size());
            continue;
        }
        const std::size_t end = sign == '\'' || sign == '#' ? text.find(sign, at + 1) : std::string::npos;
        if (end == std::string::npos)
            continue;
        std::fill(text.begin() + static_cast<std::ptrdiff_t>(at),
                  text.begin() + static_cast<std::ptrdiff_t>(end) + 1, ' ');
        at = end;
    }
    return text;
}

bool names(std::string_view text, std::string_view column) {
    for (std::size_t at = 0; (at = find_ignore_case(text, column, at)) != std::string_view::npos; ++at) {
        const std::size_t end = at + column.size();
        if ((at == 0 || !is_name_sign(text[at - 1])) && (end == text.size() || !is_name_sign(text[end])))
            return true;
    }
    return false;
}

} // namespace

std::vector<std::string> named_columns(std::string_view expression,
                                       const std::vector<platform::Column>& columns) {
    const std::string text = without_values(expression);
    std::vector<std::string> found;
    for (const platform::Column& column : columns)
        if (!column.name.empty() && names(text, column.name))
            found.push_back(column.name);
    return found;
}

bool lists_column(std::string_view list, std::string_view name) {
    return std::ranges::any_of(split(list, ','), [&](std::string_view item) {
        item = trimmed(item);
        if (item.starts_with('[') && item.ends_with(']'))
            item = item.substr(1, item.size() - 2);
        return item == "*" || equal_ignore_case(item, name);
    });
}

} // namespace tabrixdb
