#pragma once

#include "engine/pro.h"

#include <string>

namespace tabrixdb {

// The opening of the form that every grid is wrapped in, with the three hidden fields by which the page's
// functions post a command back. The form is closed by the grid. Sets SubmitHandler when it is "".
std::string command_form(Pro& pro, const std::string& grid);

} // namespace tabrixdb
