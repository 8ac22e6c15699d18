#pragma once

#include <cstdint>
#include <string_view>

namespace tabrixdb {

// FNV-1a of 64 bits: the same in every process and at any time, so that it may be kept and sent. Continues
// from `start`, so that texts may come in pieces. No protection against somebody who looks for collisions.
constexpr std::uint64_t stable_hash(std::string_view text,
                                    std::uint64_t start = 14695981039346656037u) noexcept {
    for (const char c : text)
        start = (start ^ static_cast<unsigned char>(c)) * 1099511628211u;
    return start;
}

} // namespace tabrixdb
