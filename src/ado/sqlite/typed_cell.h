#pragma once

#include "ado/cell.h"

#include <cstdint>

#include <sqlite3.h>

namespace tabrixdb::ado::sqlite {

// SQLite keeps any kind of value in any column. Gives what is stored the kind that the column's ADO type asks
// for, as long as it is such a value: 1 in a Boolean column is True, ISO text in a date column is a date.
Cell typed(const Cell& stored, std::int32_t type) noexcept;

// A value as it is stored: Null, Integer, Real, Text or Bytes.
Cell stored_cell(sqlite3_stmt* row, int column) noexcept;
Cell stored_cell(sqlite3_value* value) noexcept;

} // namespace tabrixdb::ado::sqlite
