#include "classes/factory.h"

#include "automation/text.h"
#include "calendar/calendar.h"
#include "data/db_source.h"
#include "engine/pro.h"
#include "field/db_field.h"
#include "grid/db_grid.h"

#include <array>

namespace tabrixdb {

namespace {

struct Class {
    std::string_view program_id;
    Ref<Object> (*create)();
};

template <class T>
constexpr Class class_of() {
    return {T::kProgramId, [] { return Ref<Object>(make_ref<T>()); }};
}

constexpr std::array kClasses = {class_of<Pro>(), class_of<DbField>(), class_of<DbSource>(),
                                 class_of<DbGrid>(), class_of<Calendar>()};

} // namespace

Ref<Object> create_class(std::string_view program_id) {
    for (const Class& known : kClasses)
        if (equal_ignore_case(known.program_id, program_id))
            return known.create();
    return {};
}

} // namespace tabrixdb
