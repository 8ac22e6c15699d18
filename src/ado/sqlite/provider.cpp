#include "ado/sqlite/provider.h"

#include "ado/sqlite/database.h"

namespace tabrixdb::ado::sqlite {

std::string SqliteProvider::database_version() const {
    return sqlite3_libversion();
}

std::unique_ptr<Database> SqliteProvider::open(const ConnectionString& settings) {
    return std::make_unique<SqliteDatabase>(settings);
}

} // namespace tabrixdb::ado::sqlite
