#pragma once

#include "data/db_source.h"
#include "engine/pro.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tabrixdb {

// What a control shows.
struct ShownValue {
    std::string plain;   // the column's value without its Format: what a control edits
    std::string content; // what the column shows where it is not edited, as HTML
    bool typed = false;  // the user's own, which no Default_value replaces
};

// Whether a mode's control shows the content, so that there is no need to make it for others.
bool shows_content(const DbField& field, FormMode mode);

// What stands in an attribute of an HTML tag, in quotes or without; false when it has none of that name.
bool read_attribute(std::string_view tag, std::string_view name, std::string_view& value);

// The values that the boxes of a control post when they are checked, for the source's current record. Nothing
// for a control of another kind.
std::vector<std::string> box_values(const DbSource& source, const DbField& field, FormMode mode);

// The input control of one column: the mode's view with the value filled in, what is chosen marked, and its
// posted name. A column without a view ("NORMAL") shows its content. In mode Add a Default_value takes the
// value's place. `row`: 1-based place on the page, 0 in a form of one record. The source's current record
// gives the items of the FROMFIELD kinds. A view's evaluation tag is evaluated once, and the view kept as it
// is then.
//
// A value is encoded for its place in the control, so that what the browser posts back is what was there; the
// upload-to-database kinds show the content as HTML. Failures are reported as "Parse View"; a column that the
// source does not have is Error 5.
std::string parse_view(Pro& pro, FormMode mode, const DbSource& source, std::string_view column,
                       std::int16_t row, const ShownValue& value);

} // namespace tabrixdb
