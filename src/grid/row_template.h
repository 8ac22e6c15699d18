#pragma once

#include "template/column_tag.h"
#include "template/content.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace tabrixdb {

// One column as rows show it.
struct RowColumn {
    ColumnTag tag;
    ColumnContent content;
};

// The longest text of one row. Values may hold the tags of later columns, which are filled in their turn, so
// that a few short values could otherwise make any length. More is Error 14.
inline constexpr std::size_t kMaxRowBytes = std::size_t{16} * 1024 * 1024;

// What a row becomes: the tags of its columns replaced one after another, in the order of the columns, then
// its record pointer and buttons. A value that is empty or blank is written as "&nbsp;"; a value may itself
// hold tags of later columns or of buttons, and these are replaced too.
//
// The template is compiled once: as long as no value holds a character of a tag, a row is its literals and
// values in turn. A row with such a value, or a template that can't be compiled, is replaced step by step.
class RowTemplate {
public:
    // Fills a row's text after its columns: the record pointer and the buttons, given its 1-based place.
    using Finish = std::function<void(std::string& text, std::int16_t row)>;

    // `columns` are borrowed for the template's life. `compiled`: the finish depends on nothing but the text
    // and the row's place; otherwise every row is replaced step by step.
    RowTemplate(std::string text, const std::vector<RowColumn>& columns, Finish finish, bool compiled);

    // True once a row was appended by its compiled form.
    bool is_compiled() const noexcept { return !pieces_.empty(); }

    // Whether the column's tag stands in the template.
    bool shows(std::size_t column) const noexcept { return shown_[column]; }

    // Appends the source's current record as row `row` (1-based place on the page).
    void append(std::string& out, std::int16_t row);
    // The same, replaced step by step: the definition that append() agrees with.
    void append_step_by_step(std::string& out, std::int16_t row) const;

private:
    // A literal, and what follows it: a column, the row's zero-based place, or nothing.
    struct Piece {
        static constexpr int kEnd = -1, kRowIndex = -2;
        std::string literal;
        int slot = kEnd;
        friend bool operator==(const Piece&, const Piece&) = default;
    };

    using Pieces = std::vector<Piece>;

    Pieces compile() const;
    Pieces compile_as(std::int16_t sample_row) const;
    bool append_compiled(std::string& out, std::int16_t row) const;
    bool append_value(std::string& out, const RowColumn& column) const;

    std::string text_;
    const std::vector<RowColumn>& columns_;
    Finish finish_;
    std::vector<bool> shown_;
    bool may_compile_;
    Pieces pieces_; // compiled at the first row; empty: step by step
};

} // namespace tabrixdb
