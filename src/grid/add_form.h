#pragma once

#include "data/db_source.h"
#include "editing/posted_form.h"
#include "editing/shown_rows.h"
#include "engine/pro.h"

#include <optional>
#include <string>

namespace tabrixdb {

// A form for a new record: a row template with the controls of mode Add, whose names have no row.
class AddForm {
public:
    // Borrows all of them for its own life. `typed`: a refused post, whose values are shown again; or
    // nullptr.
    AddForm(Pro& pro, const DbSource& source, const std::string& grid, const PostedForm* typed)
        : pro_(pro),
          source_(source),
          grid_(grid),
          typed_(typed) {}

    // The template filled. Its controls are added to `shown`, the inputs that have to be filled to
    // `validation`.
    std::string html(std::string text, ShownRows& shown, std::string& validation) const;

private:
    std::string control(std::size_t column) const;

    Pro& pro_;
    const DbSource& source_;
    const std::string& grid_;
    const PostedForm* typed_;
};

} // namespace tabrixdb
