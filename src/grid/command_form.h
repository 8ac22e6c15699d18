#pragma once

#include "engine/pro.h"
#include "platform/data.h"

#include <string>

namespace tabrixdb {

// The opening of the form that every grid is wrapped in, with the three hidden fields by which the page's
// functions post a command back. The form is closed by the grid. Sets SubmitHandler when it is "".
std::string command_form(Pro& pro, const std::string& grid);

// A complete grid template with every column, for a grid that was given none. Error 6 for more columns than
// a 16-bit number counts.
std::string plain_template(const platform::Recordset& records);

} // namespace tabrixdb
