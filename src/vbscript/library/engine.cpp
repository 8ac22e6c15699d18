#include "automation/locale.h"
#include "vbscript/library/arguments.h"
#include "vbscript/library/families.h"

// The locale of the script, and what the engine says of itself.
namespace tabrixdb::vbscript {

namespace {

Variant get_locale(Arguments) {
    return static_cast<std::int32_t>(Locale::current().lcid);
}

// By number or name; without one, the system's. Returns the number of the one before.
Variant set_locale(Arguments arguments) {
    const auto previous = static_cast<std::int32_t>(Locale::current().lcid);
    const Variant system(std::int32_t{0});
    const Value wanted(argument_or(arguments, 0, system));
    const bool by_name = wanted->is_string() && !is_numeric(*wanted);
    const Locale* locale = by_name ? Locale::find(wanted->text().view())
                                   : Locale::find(static_cast<std::uint32_t>(to_long(*wanted)));
    if (!locale)
        throw Error(447);
    set_current_locale(*locale);
    return previous;
}

// The version is that of the language that pages can rely on.
template <int Number>
Variant version(Arguments) {
    return std::int32_t{Number};
}

Variant script_engine(Arguments) {
    return "TabrixScript";
}

// There are no files to open as objects, and no other programs to ask for theirs.
Variant get_object(Arguments) {
    throw Error(kErrorCannotCreate);
}

constexpr LibraryFunction kFunctions[] = {
    {"GetObject", 0, 2, get_object},
    {"GetLocale", 0, 0, get_locale},
    {"SetLocale", 0, 1, set_locale},
    {"ScriptEngine", 0, 0, script_engine},
    {"ScriptEngineMajorVersion", 0, 0, version<5>},
    {"ScriptEngineMinorVersion", 0, 0, version<8>},
    {"ScriptEngineBuildVersion", 0, 0, version<0>},
};

} // namespace

std::span<const LibraryFunction> engine_functions() {
    return kFunctions;
}

} // namespace tabrixdb::vbscript
