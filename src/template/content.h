#pragma once

#include "automation/display_format.h"
#include "data/db_source.h"

#include <string>

namespace tabrixdb {

// How one column of a source shows its value, prepared once for all records of a grid.
class ColumnContent {
public:
    // Borrows the source for its own life. Error 5 for a column that has no DbField.
    ColumnContent(const DbSource& source, std::size_t column);

    const DbField& field() const noexcept { return field_; }

    // Appends the display text of the current record: nothing for Null, "[Binary Content]" for long binary
    // data, formatted when the DbField has a Format. A failure is reported as "ParseContent".
    void append(std::string& out) const;

private:
    const DbSource& source_;
    std::size_t column_;
    const DbField& field_;
    DisplayFormat format_;
    bool binary_;
};

} // namespace tabrixdb
