#pragma once

#include <cstdint>
#include <cstring>
#include <string_view>

namespace tabrixdb {

inline constexpr std::uint64_t kHashStart = 14695981039346656037u;

// A hash of 64 bits that is the same in every process of one kind of machine and at any time, so that it may
// be kept and sent. Continues from `start`, so that texts may come one after another; it tells where each
// ends. No protection against somebody who looks for collisions.
inline std::uint64_t stable_hash(std::string_view text, std::uint64_t start = kHashStart) noexcept {
    constexpr std::uint64_t kMultiplier = 0x9e3779b97f4a7c15u;
    std::uint64_t hash = start ^ text.size();
    const auto mix = [&](std::uint64_t word) {
        hash = (hash ^ word) * kMultiplier;
        hash ^= hash >> 32;
    };
    for (; text.size() >= sizeof(std::uint64_t); text.remove_prefix(sizeof(std::uint64_t))) {
        std::uint64_t word = 0;
        std::memcpy(&word, text.data(), sizeof word);
        mix(word);
    }
    std::uint64_t rest = 0;
    std::memcpy(&rest, text.data(), text.size());
    mix(rest);
    return hash;
}

} // namespace tabrixdb
