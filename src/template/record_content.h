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

    // False for a column whose content has effects of its own (an expression, a nested grid), or that may
    // bring tags of the page, which are filled with the row.
    bool is_plain(std::size_t column) const {
        return templates_[column] ? templates_[column]->is_plain() : !brings_buttons(column);
    }

    // Appends what the current record shows in that column. `row`: 0-based place on the page. `held`: takes
    // what the record brings, if the text is filled further; else nullptr. A failure is reported as
    // "ParseContent".
    void append(std::string& out, std::size_t column, std::int16_t row, HeldValues* held);

private:
    // Whether the source's query may have made buttons that are the page's.
    bool brings_buttons(std::size_t column) const {
        return !literals_.empty() && values_[column].is_computed();
    }

    std::string code_in(std::string_view text) const;

    void append_plain(std::string& out, std::size_t column, HeldValues* held) const;

    std::vector<std::string> literals_; // of the source's query, those that have buttons in them
    std::vector<ColumnValue> values_;
    std::vector<std::optional<ContentTemplate>> templates_;
};

} // namespace tabrixdb
