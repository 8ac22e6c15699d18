#pragma once

#include "server/settings.h"

#include <filesystem>
#include <ostream>
#include <vector>

namespace tabrixdb::server {

// Makes the databases whose files are missing. Raises std::runtime_error naming the script and why.
void create_databases(const std::filesystem::path& site, const std::vector<DatabaseSetting>& databases,
                      std::ostream& log);

} // namespace tabrixdb::server
