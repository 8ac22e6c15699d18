#pragma once

#include "template/split.h"

#include <string>
#include <string_view>

namespace tabrixdb {

// A grid's templates, read and put together: opening text, header, one or two row templates, footer and
// closing text, in the order of the output.
struct GridLayout {
    std::string opening;
    std::string header;
    std::string row;
    std::string stripe; // empty: every row uses `row`
    std::string footer;
    std::string closing;
};

// The layout of one template file with markers (or of the built-in template's text).
GridLayout layout_of_template(TemplateParts parts, bool combine);

// The layout of a row template with separate header and footer templates; either may be "". With `combine`
// the table around each is taken away and one of them, the header's if it has one, stands around the whole.
// Error 6 for a table tag beyond the 16-bit positions.
GridLayout layout_of_parts(TemplateParts parts, std::string header, std::string footer, bool combine);

// Whether there are buttons that change records.
bool has_edit_buttons(const GridLayout& layout);

} // namespace tabrixdb
