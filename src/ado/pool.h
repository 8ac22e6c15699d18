#pragma once

#include "ado/provider.h"

#include <memory>
#include <string>

namespace tabrixdb::ado {

// Idle database handles, by connection string: a page opens its connection at every request, and what costs
// is reading the schema and preparing the statements again. Safe from any thread.

// Idle handles kept for one connection string, and in all: about the workers of a server. Further ones are
// closed.
inline constexpr std::size_t kMaxIdlePerString = 8;
inline constexpr std::size_t kMaxIdle = 64;

// An idle handle that can be used again, or nullptr.
std::unique_ptr<Database> take_idle(const std::string& connection_string);
void keep_idle(const std::string& connection_string, std::unique_ptr<Database> database) noexcept;
// Closes all idle handles.
void close_idle() noexcept;

} // namespace tabrixdb::ado
