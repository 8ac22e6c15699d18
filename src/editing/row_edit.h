#pragma once

#include "engine/grid_state.h"
#include "engine/pro.h"

#include <cstdint>

namespace tabrixdb {

// Which row of a grid is being edited in place. The session keeps it: "_edit" (True while a row is) and
// "_edit_row" (the row's 0-based place on the page).

// "edit_grid" with "edit" begins, with "cancel" ends it; so does a command that shows other rows. Failures (a
// command without its row, a row that is no 16-bit number) are reported as "Update Row".
void process_row_edit(const GridCommand& command, GridState state);

// Edits a row: its 0-based place on the page.
void edit_row(GridState state, std::int16_t row);

// The row that is edited in place, from 1; 0: none is.
std::int16_t edited_row(const GridState& state);

// Whether a row shows its controls: the one that is being edited, or in GridEditMode "GRID" every row.
// `row`: 1-based place on the page.
bool is_row_edited(const Pro& pro, const GridState& state, std::int16_t row);

} // namespace tabrixdb
