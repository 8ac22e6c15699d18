#pragma once

#include "automation/variant.h"

#include <string>
#include <vector>

namespace tabrixdb {

// A value and the display format that it is shown in.
struct Pair {
    Variant value;
    std::string format;
};

// Several thousand pairs, the same each time: values of all kinds by all named formats, by a list of
// user-defined ones, and by formats that are put together at random.
std::vector<Pair> all_pairs();

} // namespace tabrixdb
