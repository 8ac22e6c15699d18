#pragma once

#include "ado/cell.h"
#include "ado/session.h"

#include <optional>
#include <span>
#include <vector>

namespace tabrixdb::ado {

// Writing of one row of a query's result to the table it comes from. A change addresses the row by its key
// and by the values that the changed columns had when they were read; when that is not exactly one row,
// nothing is changed and Error kRowChanged is raised. Error 3251 for a result that does not tell which row of
// which table it shows.

// One value a column; nothing for a column that is not written.
using NewValues = std::span<const std::optional<OwnedCell>>;
// The row as it was read, one value a column.
using RowCells = std::vector<OwnedCell>;

void insert_row(Session& session, const std::vector<ColumnInfo>& columns, NewValues values);
void update_row(Session& session, const std::vector<ColumnInfo>& columns, const RowCells& original,
                NewValues values);
void delete_row(Session& session, const std::vector<ColumnInfo>& columns, const RowCells& original);

// The row as the table holds it after the change: columns of that table read anew, others as given. `cells`
// holds the key already.
void read_back(Session& session, const std::vector<ColumnInfo>& columns, RowCells& cells);

} // namespace tabrixdb::ado
