#include "automation/array.h"
#include "vbscript/library/arguments.h"
#include "vbscript/library/families.h"

#include <vector>

// Array, LBound and UBound; Dim, ReDim and Erase are statements of the language.
namespace tabrixdb::vbscript {

namespace {

Variant make_array(Arguments arguments) {
    std::vector<Variant> elements;
    elements.reserve(arguments.size());
    for (const Variant* argument : arguments)
        elements.push_back(*argument);
    return make_ref<Array>(std::move(elements));
}

std::int32_t upper_bound(Arguments arguments) {
    const Value value(*arguments[0]);
    const std::int32_t dimension = long_or(arguments, 1, 1);
    if (!value->is_array() && !value->is_byte_array())
        throw Error(kErrorMismatch);
    if (dimension < 1 || (value->is_byte_array() && dimension > 1))
        throw Error(kErrorSubscript);
    if (value->is_byte_array())
        return static_cast<std::int32_t>(value->text().size()) - 1;
    return value->array()->upper_bound(static_cast<std::size_t>(dimension - 1));
}

Variant u_bound(Arguments arguments) {
    return upper_bound(arguments);
}

// Every array starts at 0; asking has the same errors.
Variant l_bound(Arguments arguments) {
    upper_bound(arguments);
    return std::int32_t{0};
}

constexpr LibraryFunction kFunctions[] = {
    {"Array", 0, -1, make_array},
    {"LBound", 1, 2, l_bound},
    {"UBound", 1, 2, u_bound},
};

} // namespace

std::span<const LibraryFunction> array_functions() {
    return kFunctions;
}

} // namespace tabrixdb::vbscript
