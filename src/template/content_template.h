#pragma once

#include "engine/pro.h"
#include "template/bound_code.h"
#include "template/column_value.h"
#include "template/held_values.h"
#include "template/nested_grids.h"
#include "template/slotted_text.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tabrixdb {

// The Content of a column's DbField, filled from the current record: the tags of its columns one after
// another, in the order of the columns ("#~name~#", and where that occurs "$~name~$", the same for
// addresses; its blob, its graphs), then one expression, one nested grid, and the page's own address. Names
// are those of the columns exactly, in any case.
//
// What values bring along is text: no tag, no expression, no SQL. Where the page trusts its values
// (TrustValues), tags in them are tags of the content.
//
// The tags of columns are compiled once. With trusted values, a record whose values hold characters of tags,
// which may make tags of later columns, is filled step by step.
class ContentTemplate {
public:
    // `column`: the one that it belongs to. Borrows the others for its own life.
    ContentTemplate(std::string text, std::size_t column, const std::vector<ColumnValue>& values, Pro& pro,
                    NestedGrids& nested);

    // Appends the content for the current record. `row`: 0-based place on the page. `held`: takes what the
    // record brings, when tags of the page are filled in the content's text afterwards, too; else nullptr.
    void append(std::string& out, std::int16_t row, HeldValues* held) const;

    // False when filling it has effects of its own, as an expression, a nested grid or a blob that is served
    // have; or when it has tags that are filled with the row.
    bool is_plain() const noexcept;

private:
    // The nested grid of the content: its name, its source and its query, in which the columns' tags are
    // filled, too. Without a source there is none.
    struct Nested {
        std::string grid;
        Ref<DbSource> source;
        BoundCode query;
    };

    SlottedText compile();
    bool append_compiled(std::string& out, HeldValues* held) const;
    void fill(std::string& text, std::int16_t row, HeldValues& held) const;
    std::string fill_columns(Nested& nested, HeldValues& held) const;
    void fill_special_tags(std::string& text, const ColumnValue& column, HeldValues& held) const;
    Nested find_nested() const;
    std::string render(Nested& nested, std::int16_t row) const;

    std::string text_;
    std::size_t column_;
    const std::vector<ColumnValue>& values_;
    Pro& pro_;
    NestedGrids& nested_;
    bool late_tags_ = true; // it has tags that are filled after the columns, or may get them
    SlottedText columns_;   // empty: step by step
};

} // namespace tabrixdb
