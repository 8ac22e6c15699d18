#pragma once

#include "data/db_source.h"
#include "editing/shown_rows.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_set>

namespace tabrixdb {

// The values that the browser posted for the controls of a grid's form.
//
// Where the form says what it had shown, a column whose control it did not have is left alone, a box that is
// not checked is told from a control that was not there, and a value that is as it was shown counts as
// unchanged. Otherwise every column with a control counts as posted, empty where nothing came.
class PostedForm {
public:
    // Borrows both for its own life.
    PostedForm(const DbSource& source, const ShownRows& shown, FormMode mode);

    FormMode mode() const noexcept { return mode_; }

    // The posted value of a column, or nothing where the form had no control for it. `row`: the form's row, 0
    // in a form of one record.
    std::optional<std::string> value(std::size_t column, std::int16_t row) const;

    // Whether a value was posted for a column, of whatever control.
    bool has_value(std::size_t column, std::int16_t row) const;

    // Whether anything was posted for a row.
    bool has_row(std::int16_t row) const;

    // Whether a posted value is what the control shows for the current record.
    bool is_value(std::size_t column, std::string_view posted) const;

    // The same where the form says what it had shown.
    bool is_unchanged(std::size_t column, std::string_view posted) const;

private:
    const DbSource& source_;
    const ShownRows& shown_;
    FormMode mode_;
    std::unordered_set<std::string, IgnoreCaseHash, IgnoreCaseEqual> names_;
};

// Whether a control of that kind posts nothing when nothing is chosen.
bool is_check_kind(std::string_view kind);
// Whether a control of that kind brings the name of an uploaded file, which goes into the database.
bool is_database_upload(std::string_view kind);

} // namespace tabrixdb
