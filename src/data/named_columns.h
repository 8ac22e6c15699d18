#pragma once

#include "platform/data.h"

#include <string>
#include <string_view>
#include <vector>

namespace tabrixdb {

// The columns that a filter or sort expression names: those whose name stands in it, in any case, by itself
// or in brackets, outside of texts and dates. In the order of `columns`.
std::vector<std::string> named_columns(std::string_view expression,
                                       const std::vector<platform::Column>& columns);

// Whether a list of names, with commas between, each in brackets or not, has that name in any case. "*" has
// all.
bool lists_column(std::string_view list, std::string_view name);

} // namespace tabrixdb
