#pragma once

#include "engine/pro.h"

#include <string>
#include <string_view>

namespace tabrixdb {

// Opens a connection and keeps it under `id`. With an empty connection string the disk path of a desktop
// database makes one, which is written back. Without either, an unopened connection is kept.
void create_connection(Pro& pro, std::string_view id, std::string& connection_string,
                       std::string_view database_path);

} // namespace tabrixdb
