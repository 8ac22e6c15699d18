#include "vbscript/library.h"

#include "automation/text.h"
#include "vbscript/library/families.h"

#include <unordered_map>

namespace tabrixdb::vbscript {

namespace {

template <class T>
using Names = std::unordered_map<std::string_view, const T*, IgnoreCaseHash, IgnoreCaseEqual>;

const Names<LibraryFunction>& functions() {
    static const Names<LibraryFunction> names = [] {
        Names<LibraryFunction> built;
        for (const auto family :
             {string_functions, search_functions, byte_functions, number_functions, random_functions,
              date_functions, date_arithmetic_functions, conversion_functions, array_functions,
              formatting_functions, engine_functions})
            for (const LibraryFunction& function : family())
                built.emplace(function.name, &function);
        return built;
    }();
    return names;
}

const Names<Variant>& constants() {
    static const Names<Variant> names = [] {
        Names<Variant> built;
        for (const LibraryConstant& constant : library_constants())
            built.emplace(constant.first, &constant.second);
        return built;
    }();
    return names;
}

template <class T>
const T* find(const Names<T>& names, std::string_view name) noexcept {
    const auto found = names.find(name);
    return found == names.end() ? nullptr : found->second;
}

} // namespace

const LibraryFunction* find_library_function(std::string_view name) noexcept {
    return find(functions(), name);
}

const Variant* find_library_constant(std::string_view name) noexcept {
    return find(constants(), name);
}

} // namespace tabrixdb::vbscript
