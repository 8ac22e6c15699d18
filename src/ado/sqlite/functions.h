#pragma once

#include "ado/provider.h"

#include <sqlite3.h>

namespace tabrixdb::ado::sqlite {

// What SQLite lacks for comparing as ADO does, and the SQL that uses it.

// Gives a handle the collation and the functions that the dialect's SQL calls. The result is SQLite's code.
int add_functions(sqlite3* handle) noexcept;

const Dialect& sqlite_dialect();

} // namespace tabrixdb::ado::sqlite
