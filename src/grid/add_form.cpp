#include "grid/add_form.h"

#include "engine/report.h"
#include "grid/row_template.h"
#include "grid/validation.h"
#include "template/buttons.h"
#include "template/column_tag.h"
#include "template/parse_view.h"

namespace tabrixdb {

std::string AddForm::html(std::string text, ShownRows& shown, std::string& validation) const {
    const auto& columns = source_.records().columns();
    for (std::size_t i = 0; i < columns.size() && !page_ended(); ++i) {
        const ColumnTag tag(columns[i].name);
        if (!tag.occurs_in(text))
            continue;
        const DbField& field = source_.field_of(columns[i].name);
        tag.replace_in(text, shown_value(control(i)));
        append_required(validation, grid_, field, 0);
        if (field.view(FormMode::Add) != "NORMAL")
            shown.add_control(i);
    }
    drop_record_pointer(text);
    parse_add_buttons(text, grid_);
    return text;
}

std::string AddForm::control(std::size_t column) const {
    const std::string& name = source_.records().columns()[column].name;
    ShownValue value;
    if (typed_ && !is_database_upload(source_.field_of(name).view_kind(FormMode::Add)))
        if (auto posted = typed_->value(column, 0))
            value = {.plain = std::move(*posted), .content = {}, .typed = true};
    return parse_view(pro_, FormMode::Add, source_, name, 0, value);
}

} // namespace tabrixdb
