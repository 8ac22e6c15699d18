#include "editing/save.h"

#include "automation/conversions.h"
#include "automation/text.h"
#include "blob/copy.h"
#include "editing/refusal.h"
#include "engine/report.h"

namespace tabrixdb {

namespace {

platform::Recordset& records_of(const Edit& edit) {
    return edit.source.records();
}

// Makes one change. A form that said what it had shown gets what stands against it as a message; otherwise it
// is raised.
template <class Change>
EditResult carry_out(const Edit& edit, Change change) {
    try {
        change();
        return {.done = !page_ended()};
    } catch (const Refusal& refusal) {
        records_of(edit).cancel_update();
        return {.refusal = refusal.message, .record_gone = refusal.record_gone, .told_row = refusal.told_row};
    }
}

template <class Write>
void write(const Edit& edit, Write operation) {
    try {
        operation();
    } catch (const Error& error) {
        if (!edit.shown.is_posted())
            throw;
        throw not_written(error.description());
    }
}

// --- Values ------------------------------------------------------------------------------------------------

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
    const platform::Column& info = records_of(edit).columns()[column];
    if (edit.shown.is_posted() && is_text(info) && info.defined_size > 0 &&
        utf16_length(value) > static_cast<std::size_t>(info.defined_size))
        throw bad_value(field, "At most " + std::to_string(info.defined_size) + " characters.");
    try {
        records_of(edit).set_value(column, Variant(value));
    } catch (const Error&) {
        if (!edit.shown.is_posted())
            throw;
        throw bad_value(field, "\"" + value + "\" is not " + expected_by(info) + ".");
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

// Gives a field the file that an upload has left under that name.
void take_upload(const Edit& edit, const DbField& field, const std::string& file) {
    try {
        // A name from outside must not lead out of the folder.
        if (file.find_first_of("/\\:") != std::string::npos || file.starts_with('.'))
            throw Error(53);
        copy_file_to_field(records_of(edit), field.name, server().map_path("/TabrixDb/temp/" + file));
    } catch (const Error&) {
        if (!edit.shown.is_posted())
            throw;
        throw bad_value(field, "The file \"" + file + "\" was not received; choose it once more.");
    }
}

// Assigns what was posted for a row to the current record. False when an empty value was reported.
bool assign_values(const Edit& edit, const PostedForm& form, std::int16_t row, std::string_view label) {
    const auto& columns = records_of(edit).columns();
    for (std::size_t i = 0; i < columns.size(); ++i) {
        std::optional<std::string> posted = form.value(i, row);
        if (!posted || (form.mode() == FormMode::Edit && form.is_unchanged(i, *posted)))
            continue;
        const DbField& field = edit.source.field_of(columns[i].name);
        if (is_database_upload(field.view_kind(form.mode()))) {
            take_upload(edit, field, *posted);
            continue;
        }
        const std::string value = meant_value(edit, form, columns[i], field, std::move(*posted));
        if (value.empty() && !field.can_be_null) {
            const std::string message = "The Field " + html_encode(field.name) + " Cannot be Zero Length.";
            if (edit.shown.is_posted())
                throw Refusal{message};
            report({"", message, "TabrixDb", std::string(label)});
            return false;
        }
        assign(edit, i, field, value);
    }
    return true;
}

// --- Rows --------------------------------------------------------------------------------------------------

enum class Found { Unchanged, Changed, Nowhere };

Found compare(const Edit& edit, const RowMark& shown) {
    if (records_of(edit).eof() || records_of(edit).bof())
        return Found::Nowhere;
    const RowMark now = RowMarker(edit.source).mark();
    if (now.key != shown.key)
        return Found::Nowhere;
    return now.values == shown.values ? Found::Unchanged : Found::Changed;
}

// Looks for the record that a row showed: where the recordset stands, then by its bookmark.
Found find_shown(const Edit& edit, std::int16_t row) {
    const RowMark* const shown = edit.shown.row(row);
    if (!shown)
        return Found::Nowhere;
    if (const Found here = compare(edit, *shown); here != Found::Nowhere)
        return here;
    try {
        records_of(edit).set_bookmark(Variant(shown->bookmark));
        return compare(edit, *shown);
    } catch (const Error&) { // no such record
        return Found::Nowhere;
    }
}

// Brings the recordset to the record that a row showed, as it may be now.
Found find_or_refuse(const Edit& edit, const PostedForm& form, std::int16_t row) {
    const Found found = find_shown(edit, row);
    if (found == Found::Nowhere)
        throw gone_meanwhile(edit.source, form, row);
    return found;
}

// The same, but it must be as it was shown.
void stand_on_shown(const Edit& edit, const PostedForm& form, std::int16_t row) {
    if (edit.shown.is_posted() && find_or_refuse(edit, form, row) == Found::Changed)
        throw changed_meanwhile(edit.source, form, row,
                                edit.command.part(1) == "delete" ? "deleted" : "saved");
}

void remove_record(const Edit& edit) {
    write(edit, [&] { records_of(edit).remove(); });
    records_of(edit).requery();
}

// Brings the recordset to the page's first record, and `index` on from there.
void go_to_row(const Edit& edit, std::int16_t index) {
    platform::Recordset& records = records_of(edit);
    try {
        if (!edit.positioned) {
            records.set_page_size(edit.state.number("_PageSize"));
            records.set_absolute_page(edit.state.number("_CurrentPage"));
        }
        records.move(index);
    } catch (const Error&) {
        if (!edit.shown.is_posted()) // else the record is looked for
            throw;
    }
}

void save_row(const Edit& edit, const PostedForm& form, std::int16_t row) {
    if (!assign_values(edit, form, row, "Update Row"))
        return;
    write(edit, [&] { records_of(edit).update(); });
    records_of(edit).requery();
    GridState(edit.state).set("_edit", false);
}

// Assigns and writes each row of the page that was posted.
void write_rows(const Edit& edit, const PostedForm& form, std::int16_t rows) {
    platform::Recordset& records = records_of(edit);
    for (std::int16_t row = 1; row <= rows; ++row) {
        if (records.eof() && !edit.shown.is_posted())
            return;
        const Variant place = records.eof() ? Variant() : records.bookmark();
        if (form.has_row(row)) {
            stand_on_shown(edit, form, row);
            if (!assign_values(edit, form, row, "Update Grid"))
                return;
            write(edit, [&] { records.update(); });
        }
        if (place.is_empty())
            continue;
        records.set_bookmark(place);
        records.move_next();
    }
}

// Writes all rows or, when one fails, none.
void save_page(const Edit& edit, std::int16_t rows) {
    const PostedForm form(edit.source, edit.shown, FormMode::Edit);
    platform::Connection& connection = *edit.source.connection;
    connection.begin_transaction();
    try {
        write_rows(edit, form, edit.shown.is_posted() ? edit.shown.count() : rows);
    } catch (...) {
        records_of(edit).cancel_update();
        connection.rollback_transaction();
        records_of(edit).requery(); // or it would show the rows that had been written
        throw;
    }
    if (page_ended()) // an empty value was reported
        connection.rollback_transaction();
    else
        connection.commit_transaction();
    records_of(edit).requery();
}

} // namespace

EditResult add_record(const Edit& edit) {
    return guard("AddNewRecord - " + edit.state.grid(), [&]() -> EditResult {
        if (edit.command.word != "edit_source" || edit.command.part(1) != "addnew")
            return {};
        platform::Recordset& records = records_of(edit);
        return carry_out(edit, [&] {
            const PostedForm form(edit.source, edit.shown, FormMode::Add);
            records.add_new();
            if (!assign_values(edit, form, 0, "AddNewRecord"))
                return;
            GridState(edit.state).set("_NewRecord_BookMark", records.bookmark());
            write(edit, [&] { records.update(); });
            records.requery();
        });
    });
}

EditResult update_row(const Edit& edit) {
    return guard("Update Row - " + edit.state.grid(), [&]() -> EditResult {
        if (edit.command.word != "edit_grid")
            return {};
        const std::string& action = edit.command.part(1);
        // A form that had the row's controls was in edit, whatever the session has forgotten since.
        const bool saves = action == "update" && (edit.shown.is_posted() || edit.state.flag("_edit"));
        if (!saves && action != "delete")
            return {};
        const std::int16_t index = to_integer(edit.command.part(2));
        const std::int16_t row = to_short(std::int64_t{index} + 1);
        return carry_out(edit, [&] {
            const PostedForm form(edit.source, edit.shown, FormMode::Edit);
            go_to_row(edit, index);
            stand_on_shown(edit, form, row);
            saves ? save_row(edit, form, row) : remove_record(edit);
        });
    });
}

EditResult find_row(const Edit& edit, std::int16_t row) {
    return guard("Update Row - " + edit.state.grid(), [&]() -> EditResult {
        if (!edit.shown.row(row))
            return {};
        return carry_out(edit, [&] {
            go_to_row(edit, to_short(std::int64_t{row} - 1));
            find_or_refuse(edit, PostedForm(edit.source, edit.shown, FormMode::Edit), row);
        });
    });
}

EditResult update_grid(const Edit& edit, std::int16_t rows, std::int16_t selected) {
    return guard("Update Grid - " + edit.state.grid(), [&]() -> EditResult {
        if (edit.command.word != "edit_source")
            return {};
        const std::string& action = edit.command.part(1);
        if (action == "update")
            return carry_out(edit, [&] { save_page(edit, rows); });
        if (action != "delete")
            return {};
        return carry_out(edit, [&] {
            const PostedForm form(edit.source, edit.shown, FormMode::Edit);
            go_to_row(edit, to_short(selected - 1));
            stand_on_shown(edit, form, selected);
            remove_record(edit);
        });
    });
}

} // namespace tabrixdb
