#include "asp/random_id.h"

#include <cerrno>
#include <system_error>

#include <sys/random.h>

namespace tabrixdb::asp {

void fill_random(void* bytes, std::size_t size) {
    if (getrandom(bytes, size, 0) != static_cast<ssize_t>(size))
        throw std::system_error(errno, std::generic_category(), "getrandom");
}

std::string random_id() {
    unsigned char bytes[16];
    fill_random(bytes, sizeof bytes);
    std::string id;
    for (const unsigned char byte : bytes) {
        id += "0123456789abcdef"[byte >> 4];
        id += "0123456789abcdef"[byte & 15];
    }
    return id;
}

} // namespace tabrixdb::asp
