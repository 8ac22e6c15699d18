#pragma once

#include "data/db_source.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace tabrixdb {

// Beside the bytes under KEY, the Application holds True under this and KEY. So the page that sends them can
// tell them from other values of the site.
inline constexpr std::string_view kBlobMark = "TabrixDb_blob:";

// The start of a response tag behind the column's name. Filling one has an effect of its own.
inline constexpr std::string_view kBlobResponse = ";blob_response=";

// Fills the blob tags of one column in a content, for the source's current record.
// "#~name;blob_content_blob~#" becomes the bytes of the field, as text that is written as just these bytes.
// Without such a tag,
// "#~name;blob_response=ADDRESS_blob~#" becomes "ADDRESS?varname=name_position", and the bytes are put into
// the Application under "name_position" for the page at that address to send; bytes that are not there are
// taken from the picture in the field's Default_value ("<img src="/path">"). Failures are reported as "Get
// Blob" and "Export_Blob_To_Session".
void fill_blob_tags(std::string& text, const DbSource& source, std::size_t column);

} // namespace tabrixdb
