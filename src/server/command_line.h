#pragma once

#include <ostream>
#include <span>
#include <string_view>

namespace tabrixdb::server {

// What the program's exit code says.
inline constexpr int kExitOk = 0;
inline constexpr int kExitFailed = 1; // the page failed, or the site could not be served
inline constexpr int kExitUsage = 2;  // the command line or the settings cannot be understood

// The tabrixdb program: `arguments` without the program's own name. Blocks while it serves.
int run_command(std::span<const std::string_view> arguments, std::ostream& out, std::ostream& err);

} // namespace tabrixdb::server
