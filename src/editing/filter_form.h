#pragma once

#include "engine/pro.h"

#include <string>

namespace tabrixdb {

// Makes the filter form of a source from a template and keeps it in pro.filter_forms under the source's
// identifier. Tags of a column ("#~" name "_label~#", "_operator~#", "_value~#", "_andor~#") become its name,
// the operators for its type, its control of mode Filter and a choice of "And" and "Or". Without `display`
// the form is empty until the user asks for it. `template_path`: physical; an empty template makes no form.
// Error 457 for a second form of one source. True when a filter that was posted has been taken up because
// this form has its columns: grids that were made before do not show it yet.
bool create_filter(Pro& pro, const std::string& source_id, std::string& template_path, bool display);

} // namespace tabrixdb
