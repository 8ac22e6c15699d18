#include "server/databases.h"

#include "ado/sqlite/create_database.h"
#include "asp/files.h"

#include <stdexcept>

namespace tabrixdb::server {

void create_databases(const std::filesystem::path& site, const std::vector<DatabaseSetting>& databases,
                      std::ostream& log) {
    for (const DatabaseSetting& database : databases) {
        const std::filesystem::path file = site / database.file, script = site / database.script;
        if (std::filesystem::exists(file))
            continue;
        const std::optional<std::string> sql = asp::read_bytes(script.string());
        if (!sql)
            throw std::runtime_error("cannot make " + file.string() + ": " + script.string() +
                                     " cannot be read.");
        std::filesystem::create_directories(file.parent_path());
        log << "Making " << file.string() << " from " << script.string() << std::endl;
        try {
            ado::sqlite::create_database(file.string(), *sql);
        } catch (const std::exception& error) {
            throw std::runtime_error("cannot make " + file.string() + ": " + script.string() + ", " +
                                     error.what());
        }
    }
}

} // namespace tabrixdb::server
