#pragma once

#include <string>
#include <vector>

namespace tabrixdb {

// Runs one of the Windows programs of peer/ in Wine: it reads the lines and writes one for each. Throws
// std::runtime_error when there are fewer, which is how a peer that crashes shows.
std::vector<std::string> ask_peer(const std::string& program, const std::vector<std::string>& lines);

} // namespace tabrixdb
