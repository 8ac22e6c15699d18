#pragma once

#include "editing/edit.h"

#include <cstdint>
#include <string>

namespace tabrixdb {

// What came of it. A form that says what it had shown gets its refusal as a message, with which it is shown
// again; the failures of any other are reported, as those of any procedure.
struct EditResult {
    bool done = false;     // it was carried out
    std::string refusal{}; // HTML; "" when nothing was refused
    // Refused because the record is no longer among those of the grid; otherwise the recordset stands on it.
    bool record_gone = false;
    // The form's row of which the refusal says what its record holds now, or what was typed; 0: none.
    std::int16_t told_row = 0;
};

// "edit_source" with "addnew": inserts a record from the add form and keeps its bookmark in the session
// ("_NewRecord_BookMark"). Failures: "AddNewRecord".
EditResult add_record(const Edit& edit);

// "edit_grid" with "update" or "delete": saves or deletes the record of one row, and ends its editing.
// Failures: "Update Row".
EditResult update_row(const Edit& edit);

// Brings the recordset to the record that a row (from 1) of the posted form showed, as it may be now. Nothing
// is done for a form that does not say which.
EditResult find_row(const Edit& edit, std::int16_t row);

// "edit_source" with "update": saves every row of the page, or none, in one transaction; with "delete":
// deletes the selected record. The recordset stands on the page's first record. `rows`: the most that a page
// has; `selected`: the selected one, from 1. Failures: "Update Grid".
EditResult update_grid(const Edit& edit, std::int16_t rows, std::int16_t selected);

} // namespace tabrixdb
