#pragma once

#include "platform/data.h"

#include <initializer_list>
#include <string>

namespace tabrixdb {

// Writes all records of a recordset as "/tabrixdb/temp/TABLE.csv", TABLE being the first table of its query,
// and replaces "#~btn_download~#" in the texts by that address. Values are not escaped: this is deliberately
// a fixed shape, no general CSV. The recordset stands where it stood; downloads of yesterday are deleted.
// Failures are reported as "Process Download".
void process_download(platform::Recordset& records, std::initializer_list<std::string*> texts);

} // namespace tabrixdb
