#pragma once

#include <cstddef>
#include <string>

namespace tabrixdb::asp {

// Bytes that nobody can guess, from the system. Raises std::system_error without any.
void fill_random(void* bytes, std::size_t size);

// 128 such bits as 32 hexadecimal digits.
std::string random_id();

} // namespace tabrixdb::asp
