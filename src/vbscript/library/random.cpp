#include "vbscript/library/arguments.h"
#include "vbscript/library/families.h"

#include <bit>

// Rnd and Randomize: the language's published linear congruential generator, so that a page that starts it
// with a number gets the sequence that it always got.
namespace tabrixdb::vbscript {

namespace {

constexpr std::uint32_t kMask = 0xFFFFFF; // 24 bits
constexpr std::uint32_t kMultiplier = 16598013;
constexpr std::uint32_t kIncrement = 12820163;
constexpr std::uint32_t kFirstSeed = 327680;

// A machine runs on one thread at a time and starts its generator anew (see reset_random()).
thread_local std::uint32_t seed = kFirstSeed;

// Rnd(n): n > 0 or none gives the next number, 0 the last one again, n < 0 the one that belongs to n.
Variant rnd(Arguments arguments) {
    const float which = given(arguments, 0) ? to_single(*arguments[0]) : 1.0F;
    if (which < 0) {
        const auto bits = std::bit_cast<std::uint32_t>(which);
        seed = ((bits & kMask) + (bits >> 24)) & kMask;
    }
    if (which != 0)
        seed = (seed * kMultiplier + kIncrement) & kMask;
    return Variant::single(static_cast<float>(seed) / static_cast<float>(kMask + 1));
}

// Randomize [number]: replaces the middle 16 bits only, so the sequence also depends on where it stood.
Variant randomize(Arguments arguments) {
    const double number = given(arguments, 0) ? to_double(*arguments[0]) : seconds_since_midnight();
    const auto high = static_cast<std::uint32_t>(std::bit_cast<std::uint64_t>(number) >> 32);
    seed = (seed & 0xFF0000FF) | (((high & 0xFFFF) ^ (high >> 16)) << 8);
    return {};
}

constexpr LibraryFunction kFunctions[] = {
    {"Rnd", 0, 1, rnd},
    {"Randomize", 0, 1, randomize},
};

} // namespace

void reset_random() noexcept {
    seed = kFirstSeed;
}

std::span<const LibraryFunction> random_functions() {
    return kFunctions;
}

} // namespace tabrixdb::vbscript
