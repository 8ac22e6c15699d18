#pragma once

#include "data/db_source.h"

#include <string>

namespace tabrixdb {

// The filter expression that a posted filter form of a source means: a clause for each column with a value,
// in the order of the columns ("[Age] > 30 "), joined by the connectives that were posted with them. The
// clause of a column without a connective leads the others; of several such only the last stays,
// deliberately. Values are taken as they were typed, quotes and wildcards included: the expression is data of
// the user, and checked where it is used. Failures are reported as "Get Filter Form Values".
std::string filter_form_values(const DbSource& source);

} // namespace tabrixdb
