#pragma once

#include "engine/pro.h"

#include <string>

namespace tabrixdb {

// Decides whether a single-template grid is shown with its list, its edit or its add template: replaces
// `row_template` by the edit template (`header_template`) or the add template (`footer_template`) and sets
// GridEditMode. The edit choice is toggled by "edit" and kept in the session; "add" holds for one request.
// `repeated`: the command has been carried out, and toggles nothing.
void process_edit_form_toggle(Pro& pro, std::string& row_template, const std::string& header_template,
                              const std::string& footer_template, const std::string& grid, bool repeated);

} // namespace tabrixdb
