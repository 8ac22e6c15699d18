#include "automation/text.h"
#include "editing/refusal.h"
#include "editing/row_edit.h"
#include "engine/report.h"
#include "grid/add_form.h"
#include "grid/command_form.h"
#include "grid/grid_renderer.h"
#include "grid/nested_grid.h"
#include "grid/paging.h"
#include "grid/validation.h"

#include <algorithm>
#include <charconv>

namespace tabrixdb {

void GridRenderer::render() {
    const std::string& id = grid_.grid_id;
    bool guarded = is_guarded();
    out_ = "<a name='" + id + "_start'></a>" + command_form(pro_, id);
    const std::size_t message_at = out_.size();
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
    guarded = guarded || is_guarded(); // now with what the buttons became
    out_ += layout_.header;
    render_rows(guarded);
    if (page_ended())
        return;
    out_ += "\r\n" + layout_.footer + "\r\n";
    if (guarded) {
        shown_.select(selection_to_come());
        out_ += shown_.html(id);
    }
    out_ += layout_.closing + "<a name='" + id + "_end'></a>" + validation_script(id, validation_);
    if (!edited_.refusal.empty())
        out_.insert(message_at,
                    "<div class=\"tabrixdb-message\" role=\"alert\">" + edited_.refusal + "</div>\r\n");
    // Before the anchors between which fields belong to the grid's own form.
    out_.insert(0, question());
}

// Whether the form says which records it shows: where it can change them.
bool GridRenderer::is_guarded() const {
    if (adds_ || has_edit_buttons(layout_) || edited_row(state_) != 0 ||
        permitted_changes(pro_.permit).any() || equal_ignore_case(pro_.grid_edit_mode, "GRID"))
        return true;
    const auto& columns = source_->records().columns();
    return std::ranges::any_of(columns, [&](const platform::Column& column) {
        return Offers(source_->field_of(column.name).content).mentioned();
    });
}

// The row (from 1) that is selected when the page is done: "grid_offset" comes after the rows.
std::int16_t GridRenderer::selection_to_come() const {
    std::int32_t offset = grid_.from_grid ? 0 : state_.number("_Offset");
    if (!grid_.from_grid && command_.word == "grid_offset") {
        const std::string& text = command_.parameters;
        std::from_chars(text.data(), text.data() + text.size(), offset);
    }
    return offset >= 0 && offset < INT16_MAX ? static_cast<std::int16_t>(offset + 1) : std::int16_t{0};
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
    if (!page_ended() && !edited_.refusal.empty())
        list_typed_elsewhere(typed, rows);
}

// What was typed in rows that are not on this page any more.
void GridRenderer::list_typed_elsewhere(const GridRows::Typed& typed, const GridRows& rows) {
    for (std::int16_t row = 1; row <= posted_.count(); ++row) {
        if (!posted_.row(row)->edited || rows.showed_typed(row) || row == edited_.told_row)
            continue;
        if (const std::string values = typed_elsewhere(*source_, typed.form, row); !values.empty())
            edited_.refusal += "<br>" + values;
    }
}

} // namespace tabrixdb
