#include "editing/save.h"

#include "automation/conversions.h"
#include "editing/change_log.h"
#include "editing/posted_values.h"
#include "editing/refusal.h"
#include "engine/report.h"

#include <algorithm>

namespace tabrixdb {

namespace {

// Makes one change. A form that said what it had shown gets what stands against it as a message; otherwise it
// is raised.
template <class Change>
EditResult carry_out(const Edit& edit, Change change) {
    try {
        change();
        return {.done = !page_ended()};
    } catch (const Refusal& refusal) {
        edit.records().cancel_update();
        return {.refusal = refusal.message, .record_gone = refusal.record_gone, .told_row = refusal.told_row};
    }
}

// What the command is about, as messages say it.
std::string_view intent(const Edit& edit) {
    return edit.command.part(1) == "delete" ? "deleted" : "saved";
}

template <class Write>
void write(const Edit& edit, Write operation) {
    try {
        operation();
    } catch (const Error& error) {
        if (!edit.shown.is_posted())
            throw InputError(error);
        // The visitor reads it in the grid; a full disk is the administrator's to know.
        platform::Host::current().log(request().server_variable("URL") + ": grid " + edit.state.grid() +
                                      ": nothing was " + std::string(intent(edit)) + ": " +
                                      error.description());
        throw not_written(error.description(), intent(edit));
    }
}

enum class Found { Unchanged, Changed, Nowhere };

Found compare(const Edit& edit, const RowMark& shown) {
    if (edit.records().eof() || edit.records().bof())
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
        edit.records().set_bookmark(Variant(shown->bookmark));
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
        throw changed_meanwhile(edit.source, form, row, intent(edit));
}

void remove_record(const Edit& edit) {
    ChangeLog log = ChangeLog::of_delete(edit);
    write(edit, [&] { edit.records().remove(); });
    log.written();
    edit.records().requery();
}

// Brings the recordset to the page's first record, and `index` on from there.
void go_to_row(const Edit& edit, std::int16_t index) {
    platform::Recordset& records = edit.records();
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
    check_posted_values(edit, form, row);
    ChangeLog log = ChangeLog::of_update(edit, form, row);
    if (!assign_values(edit, form, row, "Update Row"))
        return;
    write(edit, [&] { edit.records().update(); });
    log.written();
    edit.records().requery();
    edit.state.set("_edit", false);
}

// Forgets what was written; what fails in that is not to hide why.
void give_up(const Edit& edit, platform::Connection& connection) {
    try {
        edit.records().cancel_update();
        connection.rollback_transaction();
        edit.records().requery(); // or it would show the rows that had been written
    } catch (const Error&) {
    }
}

void write_row(const Edit& edit, const PostedForm& form, std::int16_t row) {
    check_posted_values(edit, form, row);
    ChangeLog log = ChangeLog::of_update(edit, form, row);
    if (!assign_values(edit, form, row, "Update Grid"))
        return;
    write(edit, [&] { edit.records().update(); });
    log.written();
}

// Each row that the form says it had controls for, wherever its record stands now.
void write_shown_rows(const Edit& edit, const PostedForm& form, std::int16_t rows) {
    for (std::int16_t row = 1; row <= std::max(rows, edit.shown.count()); ++row) {
        const RowMark* const shown = edit.shown.row(row);
        if (shown ? !shown->edited : !form.has_row(row))
            continue;
        stand_on_shown(edit, form, row);
        write_row(edit, form, row);
    }
}

// Each row of the page from the current record on, if anything was posted for it.
void write_rows_by_place(const Edit& edit, const PostedForm& form, std::int16_t rows) {
    for (std::int16_t row = 1; row <= rows && !edit.records().eof() && !page_ended(); ++row) {
        if (form.has_row(row))
            write_row(edit, form, row);
        if (!page_ended())
            edit.records().move_next();
    }
}

// Writes all rows or, when one fails, none.
void save_page(const Edit& edit, std::int16_t rows) {
    const PostedForm form(edit.source, edit.shown, FormMode::Edit);
    platform::Connection& connection = *edit.source.connection;
    write(edit, [&] { connection.begin_transaction(); });
    try {
        (edit.shown.is_posted() ? write_shown_rows : write_rows_by_place)(edit, form, rows);
        if (!page_ended()) // else an empty value was reported
            write(edit, [&] { connection.commit_transaction(); });
    } catch (...) {
        give_up(edit, connection);
        throw;
    }
    if (page_ended())
        give_up(edit, connection);
    else
        edit.records().requery();
}

// Brings the recordset to the record by which the form for a new one stood, where one of its controls has
// taken its items from that.
void stand_by_form(const Edit& edit) {
    const auto takes_items = [&](const platform::Column& column) {
        return edit.source.field_of(column.name).view_kind(FormMode::Add).ends_with("_FROMFIELD");
    };
    platform::Recordset& records = edit.records();
    if (std::ranges::any_of(records.columns(), takes_items) && edit.state.number("_CurrentPage") > 0 &&
        !records.is_empty())
        go_to_row(edit, 0);
}

} // namespace

EditResult add_record(const Edit& edit) {
    return guard("AddNewRecord - " + edit.state.grid(), [&]() -> EditResult {
        if (edit.command.word != "edit_source" || edit.command.part(1) != "addnew")
            return {};
        platform::Recordset& records = edit.records();
        return carry_out(edit, [&] {
            const PostedForm form(edit.source, edit.shown, FormMode::Add);
            stand_by_form(edit);
            check_posted_values(edit, form, 0);
            ChangeLog log = ChangeLog::of_add(edit);
            records.add_new();
            if (!assign_values(edit, form, 0, "AddNewRecord"))
                return;
            edit.state.set("_NewRecord_BookMark", records.bookmark());
            write(edit, [&] { records.update(); });
            log.written();
            records.requery();
        });
    });
}

EditResult update_row(const Edit& edit) {
    return guard("Update Row - " + edit.state.grid(), [&]() -> EditResult {
        if (edit.command.word != "edit_grid")
            return {};
        const std::string& action = edit.command.part(1);
        const bool saves = action == "update";
        if (!saves && action != "delete")
            return {};
        const std::int16_t index = to_integer(edit.command.part(2));
        // A form that says what it had shown was in edit, whatever the session has forgotten since. For any
        // other, the row is deliberately looked for first.
        if (saves && !edit.shown.is_posted() && !edit.state.flag("_edit")) {
            go_to_row(edit, index);
            return {};
        }
        const std::int16_t row = to_short(std::int64_t{index} + 1);
        return carry_out(edit, [&] {
            const PostedForm form(edit.source, edit.shown, FormMode::Edit);
            go_to_row(edit, index);
            stand_on_shown(edit, form, row);
            if (edit.check)
                edit.check();
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
            if (edit.check)
                edit.check();
            remove_record(edit);
        });
    });
}

} // namespace tabrixdb
