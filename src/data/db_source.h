#pragma once

#include "automation/collection.h"
#include "field/db_field.h"
#include "platform/data.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tabrixdb {

// A named query result that grids and forms draw from, with one DbField a column. A dynamic one keeps only
// its query and is open just while a grid is rendered from it.
class DbSource final : public Object {
public:
    static constexpr std::string_view kProgramId = "TabrixDb.DbSource";

    DbSource();
    const ClassInfo& class_info() const override;

    Ref<platform::Connection> connection; // on which it was opened
    Ref<platform::Recordset> recordset;   // closed until the source is opened; empty after clean-up
    Ref<Collection> fields = make_ref<Collection>(); // DbField, keyed by column name, in column order
    bool dynamic = false;
    bool dynamic_source_open = false;
    std::string dynamic_sql;
    std::vector<Variant> dynamic_values; // for the marks of parameters in it
    // A filter that a visitor has posted, until a grid or a filter form that shows its columns takes it up.
    std::string posted_filter;
    std::string dynamic_connection_id;
    std::int16_t dynamic_cursor_type = 0;
    std::int16_t dynamic_lock_type = 0;

    // The recordset; Error 91 when the page took it away.
    platform::Recordset& records() const;
    // The field of that column. Error 5 when the page took it out, 91 as above.
    DbField& field_of(std::string_view column) const;
    // The field at that place; Error 9 when there are fewer, 91 as above.
    DbField& field_at(std::size_t index) const;
    // Makes one DbField a column of the open recordset. Error 457 for a column name that occurs twice.
    // Lookups of their controls run on the source's connection, unless the page gives them another.
    void make_fields();
};

} // namespace tabrixdb
