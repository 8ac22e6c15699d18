#pragma once

#include "automation/display_format.h"
#include "data/db_source.h"

#include <string>

namespace tabrixdb {

// One column of a source's current record as text, prepared once for all records.
class ColumnValue {
public:
    // Borrows the source for its own life. Error 5 for a column that has no DbField.
    ColumnValue(const DbSource& source, std::size_t column);

    const DbSource& source() const noexcept { return source_; }

    std::size_t position() const noexcept { return column_; }

    const DbField& field() const noexcept { return *field_; }

    const std::string& name() const { return source_.records().columns()[column_].name; }

    // Whether the source's query has made the value.
    bool is_computed() const noexcept { return source_.records().columns()[column_].computed; }

    // Appends the value as it is displayed: nothing for Null, "[Binary Content]" for long binary data,
    // formatted when the DbField has a Format.
    void append(std::string& out) const;
    // The same without the Format.
    void append_plain(std::string& out) const;

private:
    const DbSource& source_;
    std::size_t column_;
    Ref<DbField> field_; // a script that the row runs may take it from the source
    DisplayFormat format_;
    bool binary_;
};

} // namespace tabrixdb
