#pragma once

#include "engine/pro.h"

namespace tabrixdb {

// Releases what the page made: grids, then sources, then connections, each from the last to the first. A
// failure (a recordset that is closed already) is raised where it happens; what was not yet released stays.
void clean_up(Pro& pro);

} // namespace tabrixdb
