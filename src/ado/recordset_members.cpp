#include "ado/recordset.h"
#include "automation/member.h"

namespace tabrixdb::ado {

const ClassInfo& Recordset::class_info() const {
    static const ClassInfo info(
        "Recordset", "ADODB.Recordset",
        {
            property<&Recordset::fields>("Fields").as_default(),
            method<&Recordset::open_from_page>("Open", {{"Source", Variant::missing()},
                                                        {"ActiveConnection", Variant::missing()},
                                                        {"CursorType", -1},
                                                        {"LockType", -1},
                                                        {"Options", -1}}),
            method<&Recordset::close>("Close"),
            method<&Recordset::requery_from_page>("Requery", {{"Options", -1}}),
            property<&Recordset::state>("State"),
            property<&Recordset::source, &Recordset::set_source_from_page>("Source"),
            property<&Recordset::active_connection, &Recordset::set_active_connection>("ActiveConnection"),
            property<&Recordset::cursor_location, &Recordset::set_cursor_location_from_page>(
                "CursorLocation"),
            property<&Recordset::cursor_type, &Recordset::set_cursor_type>("CursorType"),
            property<&Recordset::lock_type, &Recordset::set_lock_type>("LockType"),
            field<&Recordset::cache_size_>("CacheSize"),

            property<&Recordset::bof>("BOF"),
            property<&Recordset::eof>("EOF"),
            method<&Recordset::move_from>("Move", {"NumRecords", {"Start", Variant::missing()}}),
            method<&Recordset::move_first>("MoveFirst"),
            method<&Recordset::move_next>("MoveNext"),
            method<&Recordset::move_previous>("MovePrevious"),
            method<&Recordset::move_last>("MoveLast"),
            method<&Recordset::find_record>(
                "Find", {"Criteria", {"SkipRows", 0}, {"SearchDirection", 1}, {"Start", Variant::missing()}}),
            property<&Recordset::bookmark, &Recordset::set_bookmark>("Bookmark"),
            method<&Recordset::compare_bookmarks>("CompareBookmarks", {"Bookmark1", "Bookmark2"}),

            property<&Recordset::record_count>("RecordCount"),
            property<&Recordset::page_size, &Recordset::set_page_size>("PageSize"),
            property<&Recordset::page_count>("PageCount"),
            property<&Recordset::absolute_page, &Recordset::set_absolute_page>("AbsolutePage"),
            property<&Recordset::absolute_position, &Recordset::set_absolute_position>("AbsolutePosition"),
            property<&Recordset::filter, &Recordset::set_filter_from_page>("Filter"),
            property<&Recordset::sort, &Recordset::set_sort_from_page>("Sort"),

            method<&Recordset::get_rows>(
                "GetRows", {{"Rows", -1}, {"Start", Variant::missing()}, {"Fields", Variant::missing()}}),
            method<&Recordset::get_string_from_page>("GetString", {{"StringFormat", 2},
                                                                   {"NumRows", -1},
                                                                   {"ColumnDelimiter", "\t"},
                                                                   {"RowDelimiter", "\r"},
                                                                   {"NullExpr", ""}}),
            method<&Recordset::clone>("Clone", {{"LockType", -1}}),
            method<&Recordset::supports>("Supports", {"CursorOptions"}),
            method<&Recordset::next_recordset>("NextRecordset"),

            property<&Recordset::edit_mode>("EditMode"),
            property<&Recordset::status>("Status"),
            method<&Recordset::add_new_from_page>(
                "AddNew", {{"FieldList", Variant::missing()}, {"Values", Variant::missing()}}),
            method<&Recordset::update_from_page>(
                "Update", {{"Fields", Variant::missing()}, {"Values", Variant::missing()}}),
            method<&Recordset::cancel_update>("CancelUpdate"),
            method<&Recordset::remove_from_page>("Delete", {{"AffectRecords", 1}}),
        });
    return info;
}

} // namespace tabrixdb::ado
