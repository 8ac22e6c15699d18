#include "grid/layout.h"

#include "automation/text.h"

#include <algorithm>
#include <initializer_list>
#include <utility>

namespace tabrixdb {

GridLayout layout_of_template(TemplateParts parts, bool combine) {
    GridLayout layout{.opening = {},
                      .header = std::move(parts.header),
                      .row = std::move(parts.row),
                      .stripe = std::move(parts.stripe),
                      .footer = std::move(parts.footer),
                      .closing = "</form>"};
    if (layout.header.empty())
        return layout;
    // The header of a one-file template opens the table that its footer closes. Only the opening tag is
    // taken: a table inside the header's own cells is none of the layout's business.
    if (combine) {
        const std::size_t end = layout.header.find('>') + 1;
        layout.opening = layout.header.substr(0, end);
        layout.header.erase(0, end);
    }
    if (layout.footer.empty())
        layout.closing = "</table></form>";
    return layout;
}

GridLayout layout_of_parts(TemplateParts parts, std::string header, std::string footer, bool combine) {
    GridLayout layout = layout_of_template(std::move(parts), false);
    layout.closing = "</form>";
    if (!header.empty())
        layout.header = std::move(header);
    if (!footer.empty())
        layout.footer = std::move(footer);
    if (!combine)
        return layout;
    for (std::string* part : {&layout.header, &layout.row, &layout.stripe, &layout.footer}) {
        std::string tag = take_table_tag(*part);
        if (layout.opening.empty())
            layout.opening = std::move(tag);
    }
    if (!layout.opening.empty())
        layout.closing = "</table></form>";
    return layout;
}

bool has_edit_buttons(std::string_view text) {
    const auto has = [&](std::string_view start, std::initializer_list<std::string_view> ends) {
        for (std::size_t at = 0; (at = find_ignore_case(text, start, at)) != std::string_view::npos;) {
            const std::string_view rest = text.substr(at += start.size());
            if (std::ranges::any_of(ends, [&](std::string_view end) {
                    return equal_ignore_case(rest.substr(0, end.size()), end);
                }))
                return true;
        }
        return false;
    };
    return has("#~btn_", {"edit", "update", "delete", "add"}) || has("edit_", {"grid(", "source"});
}

bool has_edit_buttons(const GridLayout& layout) {
    const std::string* const parts[] = {&layout.header, &layout.row, &layout.stripe, &layout.footer};
    return std::ranges::any_of(
        parts, [](const std::string* part) { return has_edit_buttons(std::string_view(*part)); });
}

} // namespace tabrixdb
