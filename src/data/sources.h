#pragma once

#include "data/db_source.h"
#include "engine/pro.h"

#include <string>
#include <string_view>

namespace tabrixdb {

// How a page asks for a source's cursor; the numbers are ADO's.
struct SourceOptions {
    std::int16_t cursor_type = 3;     // static
    std::int16_t lock_type = 3;       // optimistic
    std::int32_t cursor_location = 3; // client side
    std::int32_t options = -1;        // unspecified
};

// Opens a query on a connection of the page and keeps it, with one DbField a column, under `id`; then carries
// out the filter command posted for it and applies its filter.
void create_source(Pro& pro, const std::string& id, const std::string& sql, const std::string& connection_id,
                   const SourceOptions& options);
// In the session, under a source's identifier: the columns that its filter form has, as last shown.
inline constexpr std::string_view kFormColumns = "_formcolumns";

// Takes up the filter that was posted for a source.
void take_posted_filter(DbSource& source, const std::string& id);

// Keeps the query only; the recordset is opened for the time that a grid is rendered from it.
void create_dynamic_source(Pro& pro, const std::string& id, const std::string& sql,
                           const std::string& connection_id, const SourceOptions& options);

// Opens a dynamic source with a client-side cursor. Its fields take their settings from the session, where
// the page has left them: `id` "_" column "_Content", "_ViewEdit", "_ViewAdd", "_ViewFilter". Failures are
// reported as "Open Dynamic Source".
void open_dynamic_source(Pro& pro, const std::string& id);
// Takes its fields away and closes it again; reported as "Close Dynamic Source".
void close_dynamic_source(Pro& pro, const std::string& id);

// The first table of a query by plain text search, in capitals: what follows the first "FROM" and one
// character, up to the next blank; without a FROM the whole text.
std::string table_name(std::string_view sql);

} // namespace tabrixdb
