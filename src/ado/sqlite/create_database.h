#pragma once

#include <string>
#include <string_view>

namespace tabrixdb::ado::sqlite {

// Makes the database `file` from a script of SQL statements, unless it is there by now. It is made under
// another name beside it and gets its own when it is complete: a script that fails leaves nothing behind, and
// of two processes that do the same one makes it. Raises std::runtime_error with SQLite's text and the line
// of the script that it is about.
void create_database(const std::string& file, std::string_view script);

} // namespace tabrixdb::ado::sqlite
