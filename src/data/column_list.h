#pragma once

#include <string_view>

namespace tabrixdb {

// Whether a list of names, with commas between, each in brackets or not, has that name in any case. "*" has
// all.
bool lists_column(std::string_view list, std::string_view name);

} // namespace tabrixdb
