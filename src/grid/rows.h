#pragma once

#include "data/db_source.h"
#include "grid/layout.h"
#include "template/buttons.h"
#include "template/column_tag.h"
#include "template/nested_grids.h"
#include "template/record_content.h"

#include <cstdint>
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

    // Borrows all of them for its own life. Error 5 for a column of the source that has no DbField.
    GridRows(const ButtonContext& buttons, const DbSource& source, NestedGrids& nested, Feeding feeding);

    // Appends the records from the current one on, at most `most`, each by the row template or the stripe.
    void append(std::string& out, const GridLayout& layout, std::int16_t most);

    // The body of the grid's validation function: the inputs of those rows that have to be filled.
    const std::string& validation() const noexcept { return validation_; }

private:
    class Content;
    class Shown;
    class Edited;

    void finish(std::string& text, std::int16_t row, bool edited);
    void require_inputs(std::size_t column, std::int16_t row);

    ButtonContext buttons_;
    const DbSource& source_;
    Feeding feeding_;
    RecordContent content_;
    std::vector<ColumnTag> tags_;
    std::string validation_;
};

} // namespace tabrixdb
