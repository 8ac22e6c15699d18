#include "grid/rows.h"

#include "editing/row_edit.h"
#include "engine/report.h"
#include "grid/validation.h"
#include "template/parse_view.h"

#include <optional>

namespace tabrixdb {

class GridRows::Content : public RowContent {
public:
    explicit Content(GridRows& rows) : rows_(rows) {}

protected:
    void append_content(std::string& out, std::size_t column, std::int16_t row, HeldValues* held) {
        rows_.content_.append(out, column, static_cast<std::int16_t>(row - 1), held);
    }

    GridRows& rows_;
};

// A row as it is read.
class GridRows::Shown final : public Content {
public:
    using Content::Content;

    bool is_plain(std::size_t column) const override { return rows_.content_.is_plain(column); }

    void append_value(std::string& out, std::size_t column, std::int16_t row, HeldValues* held) override {
        append_content(out, column, row, held);
    }

    void finish(std::string& text, std::int16_t row) override { rows_.finish(text, row, false); }
};

// A row with its controls.
class GridRows::Edited final : public Content {
public:
    using Content::Content;

    // Controls hold tags of the page.
    bool is_plain(std::size_t) const override { return false; }

    void append_value(std::string& out, std::size_t column, std::int16_t row, HeldValues* held) override {
        const ColumnValue& value = rows_.content_.value(column);
        ShownValue shown;
        if (!take_typed(shown.plain, column))
            value.append_plain(shown.plain);
        if (shows_content(value.field(), FormMode::Edit))
            append_content(shown.content, column, row, held);
        out += parse_view(rows_.buttons_.pro, FormMode::Edit, rows_.source_, value.name(), row, shown);
    }

    void finish(std::string& text, std::int16_t row) override { rows_.finish(text, row, true); }

private:
    // The posted value, if there is one for that column of the current record.
    bool take_typed(std::string& plain, std::size_t column) const {
        if (rows_.typed_row_ == 0)
            return false;
        auto posted = rows_.typed_->form.value(column, rows_.typed_row_);
        if (posted)
            plain = std::move(*posted);
        return posted.has_value();
    }
};

GridRows::GridRows(const ButtonContext& buttons, const DbSource& source, NestedGrids& nested, Feeding feeding)
    : buttons_(buttons),
      source_(source),
      feeding_(feeding),
      content_(buttons.pro, source, nested) {
    for (std::size_t i = 0; i < content_.size(); ++i)
        tags_.emplace_back(content_.value(i).name());
}

void GridRows::append(std::string& out, const GridLayout& layout, std::int16_t most,
                      std::string& validation) {
    Shown shown(*this);
    Edited edited(*this);
    // The rows of a fed grid show counters of their record, so each is made by itself.
    const RowFilling filling{.compiled = !feeding_.from_grid, .trusts_values = buttons_.pro.trust_values};
    RowTemplate templates[2][2] = {
        {{layout.row, tags_, shown, filling}, {layout.row, tags_, edited, filling}},
        {{layout.stripe, tags_, shown, filling}, {layout.stripe, tags_, edited, filling}}};
    platform::Recordset& records = source_.records();
    RowMarker marker(source_);
    for (std::int16_t row = 1; row <= most && !records.eof(); ++row) {
        const bool stripe = row % 2 == 0 && !layout.stripe.empty();
        const bool is_edited = is_row_edited(buttons_.pro, buttons_.state, row);
        if (marks_)
            mark_row(marker, is_edited);
        RowTemplate& row_template = templates[stripe][is_edited];
        row_template.append(out, row);
        if (page_ended())
            return;
        note_controls(row_template, row, is_edited, validation);
        records.move_next();
    }
}

std::string GridRows::page_text(const GridLayout& layout) {
    Shown shown(*this);
    std::string text;
    for (const std::string* row : {&layout.row, &layout.stripe}) {
        HeldValues held(buttons_.pro.trust_values);
        text += RowTemplate(*row, tags_, shown, {}).filled(1, held);
    }
    return text;
}

void GridRows::mark_row(RowMarker& marker, bool edited) {
    RowMark mark = marker.mark();
    mark.edited = edited;
    typed_row_ = typed_ && edited ? typed_->shown.row_of(mark.key) : std::int16_t{0};
    if (typed_row_ != 0 && !typed_->shown.row(typed_row_)->edited)
        typed_row_ = 0;
    if (typed_row_ != 0)
        showed_typed_.insert(typed_row_);
    // What was typed was typed over the record as it was then, unless the user was told that it has changed
    // since.
    if (typed_row_ != 0 && typed_row_ != typed_->told_row)
        mark.values = typed_->shown.row(typed_row_)->values;
    marks_->add_row(std::move(mark));
}

// Which inputs have to be filled, deliberately also in rows that are not edited, and which columns have a
// control.
void GridRows::note_controls(const RowTemplate& row_template, std::int16_t row, bool edited,
                             std::string& validation) {
    for (std::size_t i = 0; i < tags_.size(); ++i) {
        if (!row_template.shows(i))
            continue;
        const DbField& field = content_.value(i).field();
        append_required(validation, buttons_.state.grid(), field, row);
        if (marks_ && edited && field.view(FormMode::Edit) != "NORMAL")
            marks_->add_control(i);
    }
}

// What a row gets after its columns.
void GridRows::finish(std::string& text, std::int16_t row, bool edited) {
    if (feeding_.from_grid && feeding_.grid_mode)
        drop_record_pointer(text);
    else
        fill_record_pointer(text, row);
    parse_row_buttons(text, buttons_, row, edited);
    if (feeding_.from_grid)
        parse_header_footer_buttons(text, buttons_);
}

} // namespace tabrixdb
