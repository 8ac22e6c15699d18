#pragma once

#include "platform/data.h"

#include <string>
#include <string_view>

namespace tabrixdb {

// CSV as RFC 4180 has it, for programs that read tables. Lines end with CRLF; text stands between quotes,
// with a quote in it doubled; numbers, dates and Booleans stand bare, and Null is nothing. Text that a
// spreadsheet would take for a formula, as it begins with "=", "+", "-", "@", a tab or CR, has an apostrophe
// before it.

// The names of the columns as a line.
void append_csv_heading(std::string& lines, platform::Recordset& records);
// The current record as a line.
void append_csv_record(std::string& lines, platform::Recordset& records);

} // namespace tabrixdb
