#include "template/column_tag.h"

#include "engine/fill_tag.h"

namespace tabrixdb {

ColumnTag::ColumnTag(std::string_view column) : underscored_("#~" + replace_all(column, " ", "_") + "~#") {
    if (column.find(' ') != std::string_view::npos)
        plain_ = "#~" + std::string(column) + "~#";
}

bool ColumnTag::occurs_in(std::string_view text) const {
    return contains_ignore_case(text, underscored_) ||
           (!plain_.empty() && contains_ignore_case(text, plain_));
}

void ColumnTag::replace_in(std::string& text, std::string_view with) const {
    fill_tag(text, underscored_, with);
    if (!plain_.empty())
        fill_tag(text, plain_, with);
}

} // namespace tabrixdb
