#include "data/column_list.h"

#include "automation/text.h"

#include <algorithm>

namespace tabrixdb {

bool lists_column(std::string_view list, std::string_view name) {
    return std::ranges::any_of(split(list, ','), [&](std::string_view item) {
        item = trimmed(item);
        if (item.starts_with('[') && item.ends_with(']'))
            item = item.substr(1, item.size() - 2);
        return item == "*" || equal_ignore_case(item, name);
    });
}

} // namespace tabrixdb
