#pragma once

#include "data/db_source.h"
#include "editing/change_request.h"
#include "editing/save.h"
#include "engine/grid_state.h"
#include "grid/create_grid.h"
#include "grid/grid_text.h"
#include "grid/layout.h"
#include "grid/rows.h"
#include "template/buttons.h"
#include "template/split.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tabrixdb {

// Makes one grid: the steps of create_grid, in order, on what they share. One use.
class GridRenderer {
public:
    GridRenderer(Pro& pro, GridRequest& grid) : pro_(pro), grid_(grid), state_(session(), grid.grid_id) {}

    // Runs the steps; one that ended the page (its failure was reported) is the last.
    void run();

private:
    // --- The steps ---
    void toggle_edit_form();
    void find_source_grid();
    void carry_selection();
    void read_grid_command();
    void find_source();
    void sort_and_filter();
    void read_templates();
    void judge_change();
    void add_record();
    void edit_row_of_page();
    void page();
    void edit_positioned();
    void write_download();
    void render();
    void select_row();
    void switch_grid_mode();
    void store();

    // --- Records and templates (grid_renderer.cpp) ---
    void apply_sort();
    void apply_filter();
    std::string read_row_template();
    void join_templates(TemplateParts parts);

    void stand_on_a_record();

    // --- What a visitor may do (grid_renderer_permission.cpp) ---
    enum class Permission : unsigned char { Granted, ByRecord, Denied };

    const GridText& text();
    Permission permission(Change change);
    void deny(Change change);
    void check_record(Change change);
    void judge_sort();
    std::string hidden_column(const std::vector<std::string>& columns);
    bool may_name(const std::vector<std::string>& columns);
    bool takes_posted_filter();
    std::string question() const;

    // --- Editing (grid_renderer_editing.cpp) ---
    bool commands(std::string_view word, std::string_view action) const { return command_.is(word, action); }

    Edit edit(bool positioned);
    void read_controls_of(std::string path);
    void edit_row(bool positioned);
    void edit_here();
    std::int16_t selected_row() const;
    void follow_edited_row(bool positioned);
    void edit_page();
    void leave_edit_form();
    void show_add_form_again();
    void render_source_grid_again();

    // --- Output (grid_renderer_output.cpp) ---
    bool is_guarded() const;
    std::int16_t selection_to_come() const;
    bool shows_typed() const;
    bool shows_records() const;
    void render_rows(bool guarded);
    void list_typed_elsewhere(const GridRows::Typed& typed, const GridRows& rows);

    platform::Recordset& records() const { return source_->records(); }

    ButtonContext buttons() { return {pro_, command_, state_, records(), offset_grid()}; }

    // Whose offset selects the record of a fed grid: its own with GridMode, else that of the grid that feeds
    // it.
    const GridState* offset_grid() const {
        return !grid_.from_grid ? nullptr : grid_.grid_mode ? &state_ : &*source_state_;
    }

    Pro& pro_;
    GridRequest& grid_;
    GridState state_;
    std::optional<GridState> source_state_; // of the grid that feeds this one, when from_grid
    GridCommand command_;
    bool repeated_ = false;           // this request has made the grid before, and carried out its command
    std::optional<GridText> text_;    // read when something is to be judged by it
    std::optional<Change> by_record_; // each record says whether it may be changed so
    GridCommand asked_;               // a change that the address asks for, which takes a form
    Ref<DbSource> source_;
    Ref<platform::Recordset> held_records_; // a script that a row runs may take it from the source
    bool opens_source_ = false;             // a dynamic one, for the time of this rendering
    std::string list_template_;             // the row template as the page gave it
    GridLayout layout_;
    std::int16_t rows_ = 0; // most rows of this page

    ShownRows posted_; // what the posted form says about itself
    EditResult edited_;
    bool adds_ = false;        // a form for a new record is shown
    bool refused_new_ = false; // with what was posted in it

    std::string out_;
    ShownRows shown_;        // what this form says about itself
    std::string validation_; // body of the client-side validation function
};

} // namespace tabrixdb
