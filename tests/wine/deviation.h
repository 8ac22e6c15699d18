#pragma once

#include "tests/wine/pair.h"

#include <span>
#include <string>
#include <string_view>

namespace tabrixdb {

// A pair that TabrixDb and Wine show differently.
struct Difference {
    Pair pair;
    std::string ours;
    std::string wine;
};

// A known reason for differences: where Wine does not do what the platform is documented, or known, to do,
// and where TabrixDb deliberately goes its own way.
struct Deviation {
    std::string_view reason;
    bool (*explains)(const Difference& difference);
};

std::span<const Deviation> deviations();

} // namespace tabrixdb
