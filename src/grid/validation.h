#pragma once

#include "field/db_field.h"

#include <cstdint>
#include <string>

namespace tabrixdb {

// Appends the line of a grid's validation function that says that an input has to be filled; nothing for a
// column that need not be. `row`: 1-based place on the page, 0 in a form of one record.
void append_required(std::string& validation, const std::string& grid, const DbField& field,
                     std::int16_t row);

// The grid's validation function.
std::string validation_script(const std::string& grid, const std::string& validation);

} // namespace tabrixdb
