#pragma once

#include <string>
#include <string_view>

namespace tabrixdb {

// The pieces of a grid template. What a template does not have is empty.
struct TemplateParts {
    std::string header;
    std::string row; // the whole template when it has no content markers
    std::string stripe;
    std::string footer;
};

// Cuts a grid template at its markers. Error 6 for a marker beyond the 16-bit positions, 5 when the last
// closing table tag stands before the end marker.
TemplateParts split_template(std::string_view text);

// Takes the table around a fragment away: returns its opening tag and leaves what stands between it and the
// last closing tag. A fragment without a table is left as it is and gives "". Error 6 as above.
std::string take_table_tag(std::string& fragment);

// Replaces the span from the first `start` through the next `end`, and every other occurrence of that span's
// text, by `with`. Nothing changes when either is not there. Error 6 as above.
void replace_span(std::string& text, std::string_view start, std::string_view end, std::string_view with);

} // namespace tabrixdb
