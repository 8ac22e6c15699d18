#include "ado/provider.h"
#include "ado/sqlite/provider.h"
#include "automation/text.h"

namespace tabrixdb::ado {

Provider& find_provider(std::string_view name) {
    static sqlite::SqliteProvider sqlite_provider;
    if (equal_ignore_case(name, sqlite_provider.name()))
        return sqlite_provider;
    throw error(Code::ProviderNotFound, kConnectionSource,
                name.empty() ? "The connection string names none; write Provider=SQLite;Data Source=..."
                             : "There is no provider " + std::string(name) + "; SQLite is one.");
}

} // namespace tabrixdb::ado
