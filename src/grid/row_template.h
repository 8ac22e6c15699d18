#pragma once

#include "template/column_tag.h"
#include "template/held_values.h"
#include "template/slotted_text.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tabrixdb {

// What stands for a column's value in a row: a value that is empty or blank is written as "&nbsp;".
std::string_view shown_value(std::string_view value);

// What the rows of a grid are filled with.
class RowContent {
public:
    virtual ~RowContent() = default;

    // Appends what a column of the current record shows. `row`: 1-based place on the page. `held`: takes what
    // the record brings, for a row that is filled step by step; nullptr when the text is final.
    virtual void append_value(std::string& out, std::size_t column, std::int16_t row, HeldValues* held) = 0;
    // False for a column that must be asked for once a row only, because asking has effects of its own, or
    // whose text may hold tags that are filled with the row.
    virtual bool is_plain(std::size_t column) const = 0;
    // Fills a row's text after its columns: the record pointer and the buttons.
    virtual void finish(std::string& text, std::int16_t row) = 0;
};

// How the rows of a grid are filled.
struct RowFilling {
    // What finish() does depends on nothing but the text and the row's place; otherwise every row is filled
    // step by step.
    bool compiled = true;
    bool trusts_values = false; // tags that a value brings along are tags
};

// What a row becomes: the tags of its columns replaced one after another, in the order of the columns, then
// its record pointer and buttons. A value that is empty or blank is written as "&nbsp;". What a value brings
// along is text; with trusted values its tags of later columns and of buttons are replaced, too. A row that
// would pass kMaxFilledBytes is Error 14.
//
// The template is compiled once: a row is its literals and values in turn. A template that can't be compiled
// or shows a column that is not plain is filled step by step; so is, with trusted values, a row with a value
// that holds a character of a tag.
class RowTemplate {
public:
    // Borrows the tags and the content for its own life.
    RowTemplate(std::string text, const std::vector<ColumnTag>& tags, RowContent& content,
                RowFilling filling);

    // True once a row was appended by its compiled form.
    bool is_compiled() const noexcept { return !compiled_.empty(); }

    // Whether the column's tag stands in the template.
    bool shows(std::size_t column) const noexcept { return shown_[column]; }

    // Appends the source's current record as row `row`.
    void append(std::string& out, std::int16_t row);
    // The same, filled step by step: the definition that append() agrees with.
    void append_step_by_step(std::string& out, std::int16_t row) const;
    // The row's text before finish(), with what the record brings in `held`.
    std::string filled(std::int16_t row, HeldValues& held) const;

private:
    SlottedText compile() const;
    SlottedText compile_as(std::int16_t sample_row) const;
    bool append_compiled(std::string& out, std::int16_t row) const;
    bool append_value(std::string& out, std::size_t column, std::int16_t row) const;

    std::string text_;
    const std::vector<ColumnTag>& tags_;
    RowContent& content_;
    std::vector<bool> shown_;
    bool trusts_values_;
    bool may_compile_;
    SlottedText compiled_; // made at the first row; empty: step by step
};

} // namespace tabrixdb
