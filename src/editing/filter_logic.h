#pragma once

#include "engine/pro.h"

#include <string>

namespace tabrixdb {

// Carries out the filter commands posted for a grid: "filter_grid" stores the posted parameter text as the
// grid's filter expression, "filter_grid_clear" drops it; "filter_grid_source" and its "_clear" show and hide
// the source's filter form.
void process_filter_logic(const GridCommand& command, const std::string& grid, const std::string& source);

} // namespace tabrixdb
