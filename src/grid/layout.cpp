#include "grid/layout.h"

#include "template/offers.h"

#include <algorithm>
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

bool has_edit_buttons(const GridLayout& layout) {
    const std::string* const parts[] = {&layout.header, &layout.row, &layout.stripe, &layout.footer};
    return std::ranges::any_of(parts, [](const std::string* part) { return Offers(*part).mentioned(); });
}

} // namespace tabrixdb
