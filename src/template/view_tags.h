#pragma once

#include "data/db_source.h"

#include <string>

namespace tabrixdb {

// Reads the input controls that a template names for its columns: a tag "#~column[specification]~#" becomes
// the plain tag of the column, and its view specification (after a mode prefix "E;", "A;" or "EA;") the
// control of the column's DbField in edit mode, add mode or both, unless the page has chosen one. Short codes
// ("tx;", "sl;", ...) stand for the long names. Failures are reported as "Parse_ViewTags_From_Template".
void parse_view_tags(std::string& text, const DbSource& source);

} // namespace tabrixdb
