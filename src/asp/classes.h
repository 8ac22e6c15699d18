#pragma once

#include "automation/object.h"

#include <string_view>

namespace tabrixdb::asp {

// A new object of a class that pages may create: the engine's, the data access's, the scripting library's.
// A version at the end of the name ("ADODB.Connection.2.8") is passed over. Empty for any other name.
Ref<Object> create_known_class(std::string_view program_id);

} // namespace tabrixdb::asp
