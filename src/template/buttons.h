#pragma once

#include "engine/grid_state.h"
#include "engine/pro.h"
#include "platform/data.h"

#include <cstdint>
#include <string>

namespace tabrixdb {

class DbSource;

// What the buttons of one grid depend on. Borrowed for the time of a rendering.
struct ButtonContext {
    Pro& pro;
    const GridCommand& command;
    const GridState& state;
    platform::Recordset& records;
    // Set in record-offset paging: the grid whose "_Offset" is the record shown.
    const GridState* offset_grid = nullptr;
};

// Turns the button tags of a header or footer into links, removes the edit buttons that do not apply, fills
// the counters and the grid/form toggle. An "edit" command switches GridEditMode to "GRID".
void parse_header_footer_buttons(std::string& text, const ButtonContext& context);

// Replaces every column's tag in a header by its caption with sort and filter links, then the buttons as
// above. `source`: whose DbFields hold the captions.
void form_grid_header(std::string& header, const ButtonContext& context, const DbSource& source);

// Turns the button tags of one row into links and removes those that do not apply. `row`: 1-based place on
// the page; `edited`: it shows its controls.
void parse_row_buttons(std::string& text, const ButtonContext& context, std::int16_t row, bool edited);

// Turns the button tags of a form for a new record into links that insert it or leave the form; removes those
// that edit or delete a record.
void parse_add_buttons(std::string& text, const std::string& grid);

// Fills the tag by which a row moves another grid to its record; only the first target of a row is filled.
void fill_record_pointer(std::string& text, std::int16_t row);
// The same tag in a grid whose rows move no other: it leads nowhere ("#").
void drop_record_pointer(std::string& text);

} // namespace tabrixdb
