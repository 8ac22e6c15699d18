#pragma once

#include "platform/data.h"

#include <string_view>

namespace tabrixdb {

// Writes the bytes of a field (text: in the site's code page) to a file, in the place of what was there. An
// empty or Null field writes nothing and leaves an existing file alone.
void copy_field_to_file(platform::Recordset& records, std::string_view field, std::string_view path);

// Gives a field the bytes of a file, as a pending change of the current record. An empty path does nothing.
void copy_file_to_field(platform::Recordset& records, std::string_view field, std::string_view path);

} // namespace tabrixdb
