#include "asp/classes.h"

#include "ado/classes.h"
#include "asp/stream.h"
#include "automation/text.h"
#include "classes/factory.h"
#include "scripting/classes.h"

namespace tabrixdb::asp {

namespace {

// "ADODB.Connection" of "ADODB.Connection.2.8".
std::string_view without_version(std::string_view program_id) {
    std::string_view name = program_id;
    while (!name.empty() && name.back() >= '0' && name.back() <= '9') {
        const std::size_t last = name.find_last_not_of("0123456789");
        if (last == std::string_view::npos || name[last] != '.')
            break;
        name = name.substr(0, last);
    }
    return name;
}

} // namespace

Ref<Object> create_known_class(std::string_view program_id) {
    const std::string_view name = without_version(program_id);
    if (Ref<Object> object = ado::create_object(name))
        return object;
    if (equal_ignore_case(name, "ADODB.Stream"))
        return make_ref<Stream>();
    if (Ref<Object> object = scripting::create_object(name))
        return object;
    return create_class(name);
}

} // namespace tabrixdb::asp
