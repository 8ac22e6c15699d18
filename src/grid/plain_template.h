#pragma once

#include "platform/data.h"

#include <string>

namespace tabrixdb {

// A complete grid template with every column, for a grid that was given none. Error 6 for more columns than
// a 16-bit number counts.
std::string plain_template(const platform::Recordset& records);

} // namespace tabrixdb
