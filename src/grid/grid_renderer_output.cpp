#include "automation/text.h"
#include "engine/report.h"
#include "grid/add_form.h"
#include "grid/command_form.h"
#include "grid/grid_renderer.h"
#include "grid/nested_grid.h"
#include "grid/paging.h"
#include "grid/rows.h"
#include "grid/validation.h"

namespace tabrixdb {

void GridRenderer::render() {
    const std::string& id = grid_.grid_id;
    bool guarded = adds_ || has_edit_buttons(layout_);
    out_ = "<a name='" + id + "_start'></a>" + command_form(pro_, id);
    if (!edited_.refusal.empty())
        out_ += "<div class=\"tabrixdb-message\" role=\"alert\">" + edited_.refusal + "</div>\r\n";
    out_ += layout_.opening + "\r\n";
    if (adds_ && !shows_records()) {
        parse_add_buttons(layout_.header, id);
        parse_add_buttons(layout_.footer, id);
    }
    // The counters of both are taken at the page's first record, before the rows are walked.
    form_grid_header(layout_.header, buttons(), *source_);
    if (page_ended())
        return;
    parse_header_footer_buttons(layout_.footer, buttons());
    if (page_ended())
        return;
    guarded = guarded || equal_ignore_case(pro_.grid_edit_mode, "GRID");
    out_ += layout_.header;
    render_rows(guarded);
    if (page_ended())
        return;
    out_ += "\r\n" + layout_.footer + "\r\n";
    if (guarded)
        out_ += shown_.html(id);
    out_ += layout_.closing + "<a name='" + id + "_end'></a>" + validation_script(id, validation_);
}

// A form for a new record stands before the records, or in their place: by a template of its own, and where
// another grid feeds this one as a form.
bool GridRenderer::shows_records() const {
    return pro_.grid_edit_mode != "ADD" && !(adds_ && grid_.from_grid && rows_ == 1);
}

// What was typed stays on the form, unless it was saved or given up.
bool GridRenderer::shows_typed() const {
    const bool saved = edited_.done && (commands("edit_grid", "update") || commands("edit_source", "update"));
    return posted_.is_posted() && !saved && !commands("edit_grid", "cancel") &&
           !commands("edit_source", "cancel");
}

void GridRenderer::render_rows(bool guarded) {
    if (!pro_.goto_bookmark.is_empty())
        records().set_bookmark(pro_.goto_bookmark);
    if (adds_) {
        const PostedForm typed(*source_, posted_, FormMode::Add);
        out_ += AddForm(pro_, *source_, grid_.grid_id, refused_new_ ? &typed : nullptr)
                    .html(layout_.row, shown_, validation_);
    }
    if (page_ended() || !shows_records())
        return;
    NestedGrid nested(pro_, grid_.depth);
    GridRows rows(buttons(), *source_, nested, {grid_.from_grid, grid_.grid_mode});
    if (guarded)
        rows.mark_in(shown_);
    const GridRows::Typed typed{PostedForm(*source_, posted_, FormMode::Edit), posted_, edited_.told_row};
    if (shows_typed())
        rows.show_typed(typed);
    rows.append(out_, layout_, rows_, validation_);
}

} // namespace tabrixdb
