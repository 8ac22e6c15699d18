#include "editing/posted_form.h"

#include "automation/text.h"
#include "editing/offered_values.h"
#include "engine/page.h"
#include "template/parse_view.h"

#include <algorithm>
#include <array>
#include <set>

namespace tabrixdb {

namespace {

constexpr std::array<std::string_view, 5> kCheckKinds = {"CHECKBOX", "CHECKBOX_LIST", "CHOICE",
                                                         "GETCHOICE_FROMFIELD", "GETCHECKBOX_FROMFIELD"};

// With every line break as a browser's text area posts it, or without any as its text box does.
std::string with_breaks(std::string_view text, std::string_view line_break) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n')
            continue;
        if (text[i] == '\r' || text[i] == '\n')
            out += line_break;
        else
            out += text[i];
    }
    return out;
}

using Items = std::set<std::string>;

Items chosen_items(std::string_view value) {
    Items items;
    for (const std::string_view item : split(value, ','))
        items.insert(fold(trimmed(item)));
    return items;
}

// Those of the boxes that a value checks. What it has besides them no box can post, and is not lost by that.
Items checked_items(const std::vector<std::string>& boxes, std::string_view value) {
    const Items chosen = chosen_items(value);
    Items checked;
    for (const std::string& box : boxes)
        if (std::string item = fold(trimmed(box)); chosen.contains(item))
            checked.insert(std::move(item));
    return checked;
}

} // namespace

bool is_check_kind(std::string_view kind) {
    return std::ranges::find(kCheckKinds, kind) != kCheckKinds.end();
}

bool is_database_upload(std::string_view kind) {
    return kind == "UPLOADDB" || kind == "UPLOADDBIMAGE";
}

PostedForm::PostedForm(const DbSource& source, const ShownRows& shown, FormMode mode)
    : source_(source),
      shown_(shown),
      mode_(mode) {
    for (const auto& [name, value] : request().form_fields())
        names_.insert(name);
}

std::optional<std::string> PostedForm::value(std::size_t column, std::int16_t row) const {
    const DbField& field = source_.field_of(source_.records().columns()[column].name);
    if (field.view(mode_) == "NORMAL")
        return std::nullopt;
    if (shown_.is_posted() && !names_.contains(posted_name(field.name, row)) &&
        !(is_check_kind(field.view_kind(mode_)) && shown_.has_control(column)))
        return std::nullopt;
    std::string value = request().form_value(posted_name(field.name, row)).value_or("");
    // An upload control posts nothing until a file was chosen.
    const bool upload = is_database_upload(field.view_kind(mode_)) || field.view_kind(mode_) == "UPLOADIMAGE";
    if (upload && value.empty() && shown_.is_posted())
        return std::nullopt;
    return value;
}

bool PostedForm::has_value(std::size_t column, std::int16_t row) const {
    return names_.contains(posted_name(source_.records().columns()[column].name, row));
}

bool PostedForm::has_row(std::int16_t row) const {
    const auto& columns = source_.records().columns();
    return std::ranges::any_of(columns, [&](const platform::Column& column) {
        return names_.contains(posted_name(column.name, row));
    });
}

bool PostedForm::is_unchanged(std::size_t column, std::string_view posted) const {
    return shown_.is_posted() && is_value(column, posted);
}

bool PostedForm::is_value(std::size_t column, std::string_view posted) const {
    const DbField& field = source_.field_of(source_.records().columns()[column].name);
    const std::string& kind = field.view_kind(mode_);
    std::string shown;
    source_.records().append_value(column, shown);
    if (is_check_kind(kind))
        return chosen_items(posted) == checked_items(box_values(source_, field, mode_), shown);
    if (kind == "SELECT")
        return collapsed(posted) == collapsed(shown);
    const std::string_view line_break = contains_ignore_case(field.view(mode_), "<textarea") ? "\n" : "";
    return with_breaks(posted, line_break) == with_breaks(shown, line_break);
}

} // namespace tabrixdb
