#pragma once

#include "automation/object.h"

#include <string_view>

namespace tabrixdb {

// A new object of one of the classes that pages create by name (TabrixDb.Pro, TabrixDb.DbField, ...);
// empty for any other name. Needs a platform::Host on this thread.
Ref<Object> create_class(std::string_view program_id);

} // namespace tabrixdb
