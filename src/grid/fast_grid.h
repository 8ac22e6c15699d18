#pragma once

#include "engine/pro.h"

#include <cstdint>
#include <string>

namespace tabrixdb {

// What a page asks of one fast grid: a query's first rows between the HTML that it gives.
struct FastGridRequest {
    const std::string& grid_id;
    const std::string& sql;
    const std::string& connection_id;
    std::int16_t rows; // most rows
    const std::string& table_tag;
    const std::string& cell_start;
    const std::string& cell_end;
    const std::string& head_start;
    const std::string& head_end;
};

// Runs the query, and keeps the table of its first rows in pro.grids under the grid's identifier: no
// template, no paging, no editing. Values are written as they are; Null is "&nbsp;".
//
// A query that fails is asked once more, sorted by the session's sort expression of that grid ("_Sort"), if
// it is not sorted yet; failures of a sorted query are deliberately passed over, and leave what could be
// made. Anything else is reported as "CreateFastGrid -".
void create_fast_grid(Pro& pro, const FastGridRequest& grid);

} // namespace tabrixdb
