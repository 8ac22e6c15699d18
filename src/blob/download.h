#pragma once

#include "platform/data.h"

#include <initializer_list>
#include <string>
#include <string_view>

namespace tabrixdb {

// Writes all records of a recordset as "/tabrixdb/temp/TABLE.csv", TABLE being the first table of its query,
// and replaces "#~btn_download~#" in the texts by that address, where only the page's visitor is sent them;
// in a host that can't tell visitors apart they are a file of the site, and downloads of yesterday are
// deleted. `format`: "csv" in any case, see blob/csv.h; "" for a shape of its own, every value between quotes
// and not escaped. Error 5 for another one. The recordset stands where it stood. Failures are reported as
// "Process Download".
void process_download(platform::Recordset& records, std::initializer_list<std::string*> texts,
                      std::string_view format);

} // namespace tabrixdb
