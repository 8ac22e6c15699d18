#pragma once

#include "data/db_source.h"
#include "editing/posted_form.h"
#include "editing/shown_rows.h"
#include "grid/layout.h"
#include "grid/row_template.h"
#include "template/buttons.h"
#include "template/column_tag.h"
#include "template/nested_grids.h"
#include "template/record_content.h"

#include <cstdint>
#include <set>
#include <string>
#include <vector>

namespace tabrixdb {

// Renders the rows of one page of a grid.
class GridRows {
public:
    // How the rows of a grid that another one feeds differ from those of a grid with its own source.
    struct Feeding {
        bool from_grid = false; // its rows have counters and the buttons of header and footer
        bool grid_mode = false; // it is a list: its record pointers lead nowhere
    };

    // What was posted but not saved: the rows that are edited show it instead of their records' values.
    struct Typed {
        PostedForm form;
        const ShownRows& shown;    // which records it was for
        std::int16_t told_row = 0; // the row of whose record the user was told what it holds now
    };

    // Borrows all of them for its own life. Error 5 for a column of the source that has no DbField.
    GridRows(const ButtonContext& buttons, const DbSource& source, NestedGrids& nested, Feeding feeding);

    // Marks each row and its controls in `shown`, for a later save.
    void mark_in(ShownRows& shown) { marks_ = &shown; }

    void show_typed(const Typed& typed) { typed_ = &typed; }

    // Whether a row (from 1) of what was posted has been shown again.
    bool showed_typed(std::int16_t row) const { return showed_typed_.contains(row); }

    // Appends the records from the current one on, at most `most`, each by the row template or the stripe;
    // and to `validation` the inputs of those rows that have to be filled.
    void append(std::string& out, const GridLayout& layout, std::int16_t most, std::string& validation);

    // The text of the current record's row, by the row template and by the stripe, before its buttons are
    // filled. What the record brings is left out, as far as it is not the page's.
    std::string page_text(const GridLayout& layout);

private:
    class Content;
    class Shown;
    class Edited;

    void mark_row(RowMarker& marker, bool edited);
    void note_controls(const RowTemplate& row_template, std::int16_t row, bool edited,
                       std::string& validation);
    void finish(std::string& text, std::int16_t row, bool edited);

    ButtonContext buttons_;
    const DbSource& source_;
    Feeding feeding_;
    RecordContent content_;
    std::vector<ColumnTag> tags_;
    ShownRows* marks_ = nullptr;
    const Typed* typed_ = nullptr;
    std::set<std::int16_t> showed_typed_;
    std::int16_t typed_row_ = 0; // where the current record was posted; 0: nowhere
};

} // namespace tabrixdb
