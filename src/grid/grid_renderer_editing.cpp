#include "automation/conversions.h"
#include "editing/row_edit.h"
#include "engine/report.h"
#include "grid/db_grid.h"
#include "grid/grid_renderer.h"
#include "grid/paging.h"
#include "template/view_tags.h"

// The steps that carry out a posted command to change records, and what the grid shows after it.
namespace tabrixdb {

Edit GridRenderer::edit(bool positioned) {
    Edit edit{pro_, command_, state_, *source_, posted_, positioned};
    if (by_record_)
        edit.check = [this] { check_record(*by_record_); };
    return edit;
}

// The controls that a template chooses, for a form by another template than the one that will be shown.
void GridRenderer::read_controls_of(std::string path) {
    std::string text = pro_.read_template(path, true, false);
    if (!page_ended())
        parse_view_tags(text, *source_);
}

// Inserts the posted record, by the controls of the add template.
void GridRenderer::add_record() {
    if (commands("edit_source", "addnew")) {
        const bool has_template = pro_.single_grid_template && !grid_.footer_template.empty();
        if (has_template)
            read_controls_of(grid_.footer_template);
        if (page_ended())
            return;
        if (!repeated_)
            edited_ = tabrixdb::add_record(edit(false));
        refused_new_ = !edited_.refusal.empty();
        if (has_template && refused_new_)
            show_add_form_again();
    }
    adds_ = pro_.grid_edit_mode == "ADD" || commands("edit_source", "add") || refused_new_;
}

void GridRenderer::show_add_form_again() {
    pro_.grid_edit_mode = "ADD";
    grid_.row_template = grid_.footer_template;
    read_templates();
}

void GridRenderer::edit_row_of_page() {
    process_row_edit(command_, state_);
    if (!page_ended() && !grid_.from_grid)
        edit_row(false);
}

// What can be done only when the recordset stands on the page's first record: the row of a grid that another
// one feeds, and the whole page.
void GridRenderer::edit_positioned() {
    const bool whole_page = commands("edit_source", "update") || commands("edit_source", "delete");
    const bool fed = grid_.from_grid && (command_.word == "edit_grid" || command_.word == "edit_source");
    if (!whole_page && !fed)
        return;
    const std::int32_t source_page = fed ? source_state_->number("_CurrentPage") : 0;
    if (fed)
        edit_row(true);
    if (!page_ended() && whole_page)
        edit_page();
    const bool moved = fed && source_state_->number("_CurrentPage") != source_page;
    if (!page_ended() && fed && !repeated_ && (edited_.done || moved))
        render_source_grid_again();
    if (!page_ended())
        page();
}

void GridRenderer::edit_row(bool positioned) {
    if (repeated_)
        return;
    if (command_.word == "edit_grid")
        edited_ = update_row(edit(positioned));
    if (page_ended())
        return;
    if (edited_.done && commands("edit_grid", "delete"))
        keep_selection_within(grid_.from_grid ? *offset_grid() : state_, records());
    if (!commands("edit_grid", "update"))
        follow_edited_row(positioned);
    else if (edited_.record_gone)
        state_.set("_edit", false);
    else if (!edited_.refusal.empty())
        edit_here();
}

// The record that is edited may stand elsewhere than it was shown, or nowhere.
void GridRenderer::follow_edited_row(bool positioned) {
    const std::int16_t row = edited_row(state_);
    if (row == 0)
        return;
    const EditResult found = find_row(edit(positioned), row);
    if (found.done)
        edit_here();
    if (!found.record_gone)
        return;
    state_.set("_edit", false);
    edited_.refusal += (edited_.refusal.empty() ? "" : "<br>") + found.refusal;
}

// Edits the record on which the recordset stands.
void GridRenderer::edit_here() {
    const std::int32_t index = records().absolute_position() - 1;
    if (grid_.from_grid)
        edit_fed_record_at(index, state_, *offset_grid(), grid_.rows);
    else
        edit_record_at(index, state_, grid_.rows);
}

// The row (from 1) that other grids show: of the posted form, or by the session.
std::int16_t GridRenderer::selected_row() const {
    if (grid_.from_grid)
        return 1;
    if (posted_.is_posted())
        return posted_.selected();
    return to_short(std::int64_t{state_.number("_Offset")} + 1);
}

void GridRenderer::edit_page() {
    // The form may have been that of the edit template, which the session has forgotten since.
    const bool other_form = posted_.is_posted() && pro_.single_grid_template &&
                            !grid_.header_template.empty() && grid_.row_template != grid_.header_template;
    if (other_form)
        read_controls_of(grid_.header_template);
    if (page_ended())
        return;
    const std::int16_t selected = selected_row();
    if (!repeated_)
        edited_ = update_grid(edit(true), rows_, selected);
    if (page_ended())
        return;
    if (commands("edit_source", "delete")) {
        if (edited_.done)
            keep_selection_within(grid_.from_grid ? *offset_grid() : state_, records());
    } else if (edited_.done) {
        leave_edit_form();
    } else {
        command_.parts[1] = "edit"; // the page stays in edit, with the buttons of a page that is
    }
}

// From the edit template back to the list.
void GridRenderer::leave_edit_form() {
    if (!pro_.single_grid_template || grid_.row_template == list_template_)
        return;
    state_.set("_mode", "");
    pro_.grid_edit_mode = pro_.chosen_edit_mode;
    grid_.row_template = list_template_;
    read_templates();
}

// The grid that feeds this one was made before the change.
void GridRenderer::render_source_grid_again() {
    const std::string& id = source_state_->grid();
    if (!read_command_word(request(), id).empty())
        return; // it has a command of its own, which is not to be carried out twice
    make_grid_again(pro_, id);
}

} // namespace tabrixdb
