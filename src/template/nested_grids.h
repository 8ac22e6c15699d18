#pragma once

#include "data/db_source.h"

#include <cstdint>
#include <string>

namespace tabrixdb {

// The grids that stand inside the contents of another grid's columns ("#~grid_name~#"). The grid engine
// renders them; contents only know where they go.
class NestedGrids {
public:
    virtual ~NestedGrids() = default;

    // The source that the grid of that name is made from. Error 5 when there is no such grid.
    virtual Ref<DbSource> source_of(const std::string& grid) = 0;
    // The grid's HTML inside the row at `row` (0-based place on the page).
    virtual std::string render(const std::string& grid, std::int16_t row) = 0;
};

} // namespace tabrixdb
