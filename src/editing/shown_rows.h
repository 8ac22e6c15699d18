#pragma once

#include "data/db_source.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace tabrixdb {

// A record as a form showed it: where it was, and traces of its key and of the values that it has in its
// table (long binary data left out). A record of a source without a key is known by its values only.
struct RowMark {
    std::string bookmark;
    std::uint64_t key = 0;
    std::uint64_t values = 0;
    bool edited = false; // it had controls
};

// Makes the marks of a source's records. Borrows the source for its own life.
class RowMarker {
public:
    explicit RowMarker(const DbSource& source);

    // Of the current record; Error 3021 without one.
    RowMark mark();

private:
    platform::Recordset& records_;
    std::vector<bool> in_key_, in_values_;
    std::string text_; // of one value, kept for the next
};

// What a grid's form says about itself in a hidden field, so that a later save can tell whether its rows are
// still those that were shown: a mark for each row, and the columns for which it had controls (a check box
// that is not checked posts nothing). A form without the field is handled by place alone.
class ShownRows {
public:
    // Of a form that is being made.
    ShownRows() = default;
    // What the request posted for a grid. A field that can't be read has no rows, so that every row is
    // refused.
    static ShownRows posted(const std::string& grid);

    bool is_posted() const noexcept { return posted_; }

    void add_row(RowMark mark) { rows_.push_back(std::move(mark)); }

    // `column`: its 0-based position in the source.
    void add_control(std::size_t column);

    bool has_control(std::size_t column) const noexcept {
        return column < controls_.size() && controls_[column];
    }

    // The mark of a row (1-based place on the page), or nullptr.
    const RowMark* row(std::int16_t row) const noexcept;
    // The row that showed the record of that key (1-based), or 0.
    std::int16_t row_of(std::uint64_t key) const noexcept;

    std::int16_t count() const noexcept { return static_cast<std::int16_t>(rows_.size()); }

    // The row (from 1) that other grids show.
    void select(std::int16_t row) noexcept { selected_ = row; }

    std::int16_t selected() const noexcept { return selected_; }

    // What the hidden field holds.
    std::string text() const;
    // The hidden field.
    std::string html(const std::string& grid) const;

private:
    bool posted_ = false;
    std::int16_t selected_ = 1;
    std::vector<bool> controls_;
    std::vector<RowMark> rows_;
};

} // namespace tabrixdb
