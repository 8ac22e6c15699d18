#pragma once

#include "ado/connection.h"
#include "ado/recordset.h"

#include <string_view>

namespace tabrixdb::ado {

// A new object of the class that a page names (`ADODB.Connection`, `ADODB.Recordset`), ignoring case; empty
// for any other name.
Ref<Object> create_object(std::string_view program_id);

} // namespace tabrixdb::ado
