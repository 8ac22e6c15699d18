#pragma once

#include "data/db_source.h"

#include <string>

namespace tabrixdb {

// The display text of one column of the source's current record: nothing for Null, "[Binary Content]" for
// long binary data. Appended to `out`. A failure is reported as "ParseContent".
void parse_content(const DbSource& source, std::size_t column, std::string& out);

} // namespace tabrixdb
