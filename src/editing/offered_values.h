#pragma once

#include "data/db_source.h"

#include <string_view>

namespace tabrixdb {

// Whether the list, choice or boxes of a column's control have offered a value that was posted; of a value
// with commas for several boxes, each part. True for controls that offer nothing, such as text boxes, and for
// a page's own HTML. Items that stand in another column are those of the current record.
bool is_offered(const DbSource& source, const DbField& field, FormMode mode, std::string_view posted);

// The text of an option as a browser posts it: blanks at the ends go, those within count as one.
std::string collapsed(std::string_view text);

} // namespace tabrixdb
