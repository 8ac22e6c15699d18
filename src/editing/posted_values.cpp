#include "editing/posted_values.h"

#include "automation/text.h"
#include "blob/copy.h"
#include "editing/offered_values.h"
#include "editing/refusal.h"
#include "engine/page.h"
#include "engine/report.h"

namespace tabrixdb {

namespace {

bool is_text(const platform::Column& column) {
    return platform::type_class(column.type) == platform::TypeClass::Text &&
           column.type != platform::data_type::kBoolean;
}

std::string expected_by(const platform::Column& column) {
    switch (platform::type_class(column.type)) {
    case platform::TypeClass::Number:
        return "a number that fits here";
    case platform::TypeClass::Date:
        return "a date";
    case platform::TypeClass::Text:
        break;
    }
    return column.type == platform::data_type::kBoolean ? "True or False" : "a value that fits here";
}

void assign(const Edit& edit, std::size_t column, const DbField& field, const std::string& value) {
    const platform::Column& info = edit.records().columns()[column];
    if (edit.shown.is_posted() && is_text(info) && info.defined_size > 0 &&
        utf16_length(value) > static_cast<std::size_t>(info.defined_size))
        throw bad_value(field, "At most " + std::to_string(info.defined_size) + " characters.");
    try {
        edit.records().set_value(column, Variant(value));
    } catch (const Error& error) {
        if (!edit.shown.is_posted())
            throw InputError(error);
        const bool computed = (info.attributes & platform::kFieldUpdatable) == 0;
        throw bad_value(field, computed ? error.description()
                                        : "\"" + value + "\" is not " + expected_by(info) + ".");
    }
}

// What a posted value means for its column.
std::string meant_value(const Edit& edit, const PostedForm& form, const platform::Column& column,
                        const DbField& field, std::string posted) {
    const bool unchecked = edit.shown.is_posted() && is_check_kind(field.view_kind(form.mode()));
    if (posted.empty() && unchecked && column.type == platform::data_type::kBoolean)
        return "False";
    if (posted.empty() && form.mode() == FormMode::Add && !unchecked)
        return field.default_value;
    return posted;
}

// What was typed, for a form that is not shown again with it.
std::string typed_by_place(const Edit& edit, const PostedForm& form, std::int16_t row) {
    const std::string typed = edit.shown.is_posted() ? std::string() : typed_values(edit.source, form, row);
    return typed.empty() ? "" : " What you had typed:" + typed;
}

// Gives a field the file that an upload has left under that name.
void take_upload(const Edit& edit, const DbField& field, const std::string& file) {
    try {
        // A name from outside must not lead out of the folder.
        if (file.find_first_of("/\\:") != std::string::npos || file.starts_with('.'))
            throw Error(53);
        copy_file_to_field(edit.records(), field.name, server().map_path("/TabrixDb/temp/" + file));
    } catch (const Error& error) {
        if (!edit.shown.is_posted())
            throw InputError(error);
        throw bad_value(field, "The file \"" + file + "\" was not received; choose it once more.");
    }
}

// What can't be written: what the query has made, keys that the database numbers, sources that are only read;
// unless the page says that it can.
bool is_writable(const platform::Column& column, const DbField& field) {
    return field.updatable || ((column.attributes & platform::kFieldUpdatable) != 0 && !column.numbered);
}

// What a form for a new record proposes, or leaves to the database.
bool is_proposed(const DbField& field, std::string_view posted) {
    return posted.empty() || collapsed(posted) == collapsed(field.default_value);
}

} // namespace

void check_posted_values(const Edit& edit, const PostedForm& form, std::int16_t row) {
    const auto& columns = edit.records().columns();
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const DbField& field = edit.source.field_of(columns[i].name);
        const std::optional<std::string> posted = form.value(i, row);
        if (!posted ||
            (form.mode() == FormMode::Add ? is_proposed(field, *posted) : form.is_value(i, *posted)))
            continue;
        if (!is_writable(columns[i], field))
            throw bad_value(field, "This value can not be changed.", typed_by_place(edit, form, row));
        if (!field.open_list && !is_offered(edit.source, field, form.mode(), *posted))
            throw bad_value(field, "\"" + *posted + "\" is not among what is offered.",
                            typed_by_place(edit, form, row));
    }
}

bool assign_values(const Edit& edit, const PostedForm& form, std::int16_t row, std::string_view label) {
    const auto& columns = edit.records().columns();
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const DbField& field = edit.source.field_of(columns[i].name);
        if (edit.shown.is_posted() && field.view(form.mode()) == "NORMAL" && form.has_value(i, row))
            throw unknown_control(field);
        std::optional<std::string> posted = form.value(i, row);
        if (!posted || (form.mode() == FormMode::Edit && form.is_unchanged(i, *posted)) ||
            !is_writable(columns[i], field))
            continue;
        const bool upload = is_database_upload(field.view_kind(form.mode()));
        const std::string value =
            upload ? std::move(*posted) : meant_value(edit, form, columns[i], field, std::move(*posted));
        if (value.empty() && !field.can_be_null) {
            const std::string message = "The Field " + html_encode(field.name) + " Cannot be Zero Length.";
            if (edit.shown.is_posted())
                throw Refusal{message};
            report({"", message, "TabrixDb", std::string(label), true});
            return false;
        }
        if (!upload)
            assign(edit, i, field, value);
        else if (!value.empty())
            take_upload(edit, field, value);
    }
    return true;
}

} // namespace tabrixdb
