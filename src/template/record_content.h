#pragma once

#include "engine/pro.h"
#include "template/column_value.h"
#include "template/content_template.h"
#include "template/nested_grids.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tabrixdb {

// What the columns of a source's records are shown as, prepared once for a grid: a column's value, or where
// its DbField has a Content, that template filled from the whole record.
class RecordContent {
public:
    // Borrows all of them for its own life. Error 5 for a column that has no DbField.
    RecordContent(Pro& pro, const DbSource& source, NestedGrids& nested);
    RecordContent(const RecordContent&) = delete;
    RecordContent& operator=(const RecordContent&) = delete;

    std::size_t size() const noexcept { return values_.size(); }

    const ColumnValue& value(std::size_t column) const { return values_[column]; }

    // False for a column whose content has effects of its own (an expression, a nested grid).
    bool is_repeatable(std::size_t column) const {
        return !templates_[column] || templates_[column]->is_repeatable();
    }

    // Appends what the current record shows in that column. `row`: 0-based place on the page. A failure is
    // reported as "ParseContent".
    void append(std::string& out, std::size_t column, std::int16_t row);

private:
    std::vector<ColumnValue> values_;
    std::vector<std::optional<ContentTemplate>> templates_;
};

} // namespace tabrixdb
