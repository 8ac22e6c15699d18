#pragma once

#include "engine/grid_state.h"
#include "engine/pro.h"
#include "platform/data.h"

#include <cstdint>
#include <string>

namespace tabrixdb {

// The paging and sorting of grids: each turns the posted command into session state and positions the
// recordset. Each reports its failures under its own label; what it wrote before stays written.

// Beside the sort expression: what a visitor has posted as such, until the grid that it is for has judged it.
inline constexpr std::string_view kPostedSort = "_SortPosted";

// "sort": stores part 1 of the parameters as the sort expression of the grid that part 0 names, whatever grid
// is being built.
void process_sort_logic(const GridCommand& command, const std::string& grid);

// Page and page size of a grid with its own source: first use, "row+", "row-", the clamp to the page count,
// then "next_page", "previous_page", "first_page", "last_page". `rows`: the page size at first use;
// `increment`: the step of "row+" and "row-".
void process_page_logic(const GridCommand& command, GridState state, platform::Recordset& records,
                        std::int16_t rows, std::int16_t increment);

// Places the recordset on the selected row: `_Offset` records from the start of `_CurrentPage`. "grid_offset"
// chooses the row first.
void process_offset_logic(const GridCommand& command, GridState state, platform::Recordset& records);

// The page logic of a grid that another grid feeds. Without `grid_mode` it shows one record, and navigation
// moves the source grid's selection; with it, it lists rows of the source grid's recordset from an offset of
// its own, which follows what the user did on the source grid.
void process_page_logic_for_form(const Pro& pro, const GridCommand& command, const std::string& source_grid,
                                 platform::Recordset& records, bool grid_mode, const std::string& this_grid);

// Brings a record into sight and edits it. `index`: its 0-based place in the recordset; `rows`: the page size
// of a grid that was not shown yet.
void edit_record_at(std::int32_t index, const GridState& state, std::int16_t rows);
// The same in a grid that another one feeds: the record is selected in `selecting`, unless it is among the
// `rows` that are shown.
void edit_fed_record_at(std::int32_t index, const GridState& state, const GridState& selecting,
                        std::int16_t rows);

// After a record went: moves the selected record of a grid back to the last one, where it is beyond.
void keep_selection_within(const GridState& state, platform::Recordset& records);

} // namespace tabrixdb
