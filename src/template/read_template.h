#pragma once

#include <string>
#include <string_view>

namespace tabrixdb {

// The text of the template file at a physical path, as UTF-8. With `strip_body`, only what lies inside its
// body element; a file without an opening body tag is returned whole. A file that is not there is reported
// ("File ... Not Found") and gives "". Other failures are raised.
std::string read_template(std::string_view path, bool strip_body);

// Cuts a text down to what lies inside its body element, as above.
void strip_body(std::string& text);

} // namespace tabrixdb
