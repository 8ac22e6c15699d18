#pragma once

#include "engine/pro.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace tabrixdb {

// What a page asks of one grid. `source_id` names a source, or with `from_grid` another grid, and is then
// replaced by that grid's source.
struct GridRequest {
    const std::string& grid_id;
    std::string& source_id;
    std::string& row_template; // physical paths; "": the built-in template; the edit toggle may replace it
    const std::string& header_template;
    const std::string& footer_template;
    std::int16_t rows = 10;     // page size at first display
    std::int16_t increment = 5; // step of "row+" and "row-"
    bool from_grid = false;
    bool grid_mode = false;
    int depth = 0; // of a grid inside another one's rows
};

// Carries out the grid's posted command, renders one page of records, and keeps the HTML in pro.grids under
// the grid's identifier. Failures are reported; errors of its own are raised to the caller.
void create_grid(Pro& pro, GridRequest grid);

// Makes a grid of the page once more, as it was made, from what its source holds now. Error 5 when there is
// none of that name.
void make_grid_again(Pro& pro, const std::string& id);
// All that were made of a source.
void make_grids_again(Pro& pro, std::string_view source);

} // namespace tabrixdb
