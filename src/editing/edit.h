#pragma once

#include "data/db_source.h"
#include "editing/shown_rows.h"
#include "engine/grid_state.h"
#include "engine/pro.h"

#include <functional>

namespace tabrixdb {

// One grid's request to change records. Borrowed for the time of the change.
struct Edit {
    Pro& pro;
    const GridCommand& command;
    GridState state;
    const DbSource& source;
    const ShownRows& shown; // what the posted form says about itself
    // The recordset stands on the page's first record already; otherwise the session says where the page
    // begins.
    bool positioned = false;
    // Called with the recordset on the record that is to be changed: raises the Refusal of a record that may
    // not be. May be empty.
    std::function<void()> check = {};

    platform::Recordset& records() const { return source.records(); }
};

} // namespace tabrixdb
