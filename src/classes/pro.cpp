#include "engine/pro.h"

#include "automation/conversions.h"
#include "automation/member.h"
#include "blob/copy.h"
#include "classes/clean_up.h"
#include "data/connections.h"
#include "data/sources.h"
#include "editing/filter_form.h"
#include "engine/report.h"
#include "grid/create_grid.h"
#include "grid/fast_grid.h"
#include "template/offers.h"
#include "template/read_template.h"
#include "web/mail.h"
#include "web/page_address.h"

// The face that pages see: the member table of Pro, and its methods, each of which hands the work to its room
// under the label that failures are reported with.
namespace tabrixdb {

namespace {

// A collection of the page's: assigning Nothing empties it, so that reading it always gives a collection.
template <auto Field>
Member collection(std::string_view name) {
    Member member = field<Field>(name);
    member.set = [](Object& object, Arguments arguments) {
        const Argument<Ref<Collection>> assigned(*arguments.back());
        static_cast<Pro&>(object).*Field = assigned.get() ? assigned.get() : make_ref<Collection>();
        return Variant();
    };
    return member;
}

platform::Recordset& required(const Ref<platform::Recordset>& records) {
    if (!records)
        throw Error(kErrorNothing);
    return *records;
}

// Null and Empty as "".
std::string plain_text(const Variant& value) {
    std::string text;
    append_text(text, value_of(value));
    return text;
}

} // namespace

const ClassInfo& Pro::class_info() const {
    static const ClassInfo info(
        "Pro", kProgramId,
        {
            field<&Pro::upload_handler>("UploadHandler"),
            field<&Pro::buttons_goto_anchor>("ButtonsGotoAnchor"),
            field<&Pro::download>("Download"),
            field<&Pro::download_format>("DownloadFormat"),
            field<&Pro::bar_graph>("BarGraph"),
            property<&Pro::edit_mode, &Pro::set_edit_mode>("GridEditMode"),
            field<&Pro::combine_grid_templates>("CombineGridTemplates"),
            field<&Pro::sort_down_image>("SortDownImage"),
            field<&Pro::sort_up_image>("SortUpImage"),
            field<&Pro::show_sort_icons>("ShowSortIcons"),
            field<&Pro::filter_image>("FilterImage"),
            field<&Pro::clear_filter_image>("ClearFilterImage"),
            field<&Pro::show_filter_icons>("ShowFilterIcons"),
            field<&Pro::single_grid_template>("SingleGridTemplate"),
            field<&Pro::script>("Script"),
            field<&Pro::calendar>("Calendar"),
            collection<&Pro::header_footer_tags>("HeaderFooterTags"),
            collection<&Pro::connections>("Connection"),
            collection<&Pro::sources>("Source"),
            collection<&Pro::grids>("Grid"),
            collection<&Pro::filter_forms>("FilterForm"),
            field<&Pro::debug_mode>("DebugMode"),
            field<&Pro::script_validate_tags>("Script_Validate_Tags"),
            field<&Pro::submit_handler>("SubmitHandler"),
            field<&Pro::goto_bookmark>("GotoBookMark"),
            field<&Pro::ado_errors>("ADOErrors"),
            field<&Pro::trust_values>("TrustValues"),
            property<&Pro::get_permit, &Pro::set_permit>("Permit"),
            field<&Pro::filter_columns>("FilterColumns"),
            property<&Pro::admin_email, &Pro::set_admin_email>("AdminEmail"),
            method<&Pro::create_connection>(
                "CreateConnection", {"ConnectionID", {"ConnectionString", ""}, {"AccessDatabase", ""}}),
            method<&Pro::create_source>("CreateSource", {"SourceID",
                                                         "SQL",
                                                         "ConnectionID",
                                                         {"CursorType", std::int16_t{3}},
                                                         {"LockType", std::int16_t{3}},
                                                         {"Dynamic", false},
                                                         {"CursorLocation", std::int16_t{3}},
                                                         {"Options", std::int16_t{-1}}}),
            method<&Pro::get_table_name>("GetTableName", {"SQL"}),
            method<&Pro::read_template>("ReadTemplate",
                                        {"Template", {"StripBody", true}, {"ForScript", false}}),
            method<&Pro::create_grid>("CreateGrid", {"GridID",
                                                     "SourceID",
                                                     {"Template", ""},
                                                     {"Header_Template", ""},
                                                     {"Footer_Template", ""},
                                                     {"ROW", std::int16_t{10}},
                                                     {"RowInc", std::int16_t{5}},
                                                     {"SourceISAnotherGrid", false},
                                                     {"GridMode", false}}),
            method<&Pro::copy_field_to_file>("CopyFieldToFile", {"rst", "fd", "strFileName"}),
            method<&Pro::copy_file_to_field>("CopyFileToField",
                                             {"rst", "FieldName", "FileName", {"Update", true}}),
            method<&Pro::get_byte_string>("getByteString", {"StringStr"}),
            method<&Pro::get_string>("getString", {"StringBin"}),
            method<&Pro::create_fast_grid>(
                "CreateFastGrid",
                {"GridID",
                 "SourceSQL",
                 "ConnectionID",
                 {"ROW", std::int16_t{10}},
                 {"RowInc", std::int16_t{10}},
                 {"TableTag", "<TABLE border=1 cellPadding=0 cellSpacing=0 width=700>"},
                 {"TDStart", "<td  bgcolor='#FFFFFF'><font face='Arial' size='1'><b>"},
                 {"TDEnd", "</b></font></td>"},
                 {"HeadTDStart", "<td nowrap bgcolor='#90F0FE'><b><font face='Arial' size='2'>"},
                 {"HeadTDEnd", "</font></b></td>"}}),
            method<&Pro::create_filter>("CreateFilter", {"SourceID", "Template", {"Display", true}}),
            method<&Pro::send_email>("SendEmail", {"strFrom",
                                                   "strTo",
                                                   "strSubject",
                                                   "strBody",
                                                   {"MailFormat", "TEXT"},
                                                   {"RecordSet", Variant::nothing()},
                                                   {"RelativePath", ""}}),
            method<&Pro::url_address>("UrlAddress", {{"Query", false}}),
            method<&Pro::query_include>("QueryInclude", {"Qparams", {"Encode", true}}),
            method<&Pro::clean_up>("CleanUp"),
        });
    return info;
}

void Pro::set_permit(const std::string& words) {
    permitted_changes(words);
    permit = words;
}

void Pro::create_connection(std::string& connection_id, std::string& connection_string,
                            std::string& access_database) {
    tabrixdb::create_connection(*this, connection_id, connection_string, access_database);
}

void Pro::create_source(std::string& source_id, std::string& sql, std::string& connection_id,
                        std::int16_t cursor_type, Variant& lock_type, bool dynamic, Variant& cursor_location,
                        Variant& options) {
    guard("CreateSource", [&] {
        const SourceOptions wanted{cursor_type, to_integer(lock_type), to_long(cursor_location),
                                   to_long(options)};
        const auto create = dynamic ? create_dynamic_source : tabrixdb::create_source;
        create(*this, source_id, sql, connection_id, wanted);
    });
}

std::string Pro::get_table_name(std::string& sql) {
    return table_name(sql);
}

std::string Pro::read_template(std::string& path, bool strip_body, bool) {
    return guard("Read Template", [&] {
        trace("Read Template Called");
        return tabrixdb::read_template(path, strip_body);
    });
}

void Pro::create_grid(std::string& grid_id, std::string& source_id, std::string& row_template,
                      std::string& header_template, std::string& footer_template, std::int16_t& rows,
                      std::int16_t& row_increment, bool& source_is_another_grid, bool& grid_mode) {
    guard("CreateGrid - " + grid_id, [&] {
        tabrixdb::create_grid(*this, {.grid_id = grid_id,
                                      .source_id = source_id,
                                      .row_template = row_template,
                                      .header_template = header_template,
                                      .footer_template = footer_template,
                                      .rows = rows,
                                      .increment = row_increment,
                                      .from_grid = source_is_another_grid,
                                      .grid_mode = grid_mode});
    });
}

std::string Pro::copy_field_to_file(Ref<platform::Recordset> records, std::string& field, std::string& path) {
    guard("Copy Field To File - " + field,
          [&] { tabrixdb::copy_field_to_file(required(records), field, path); });
    return path;
}

Variant Pro::copy_file_to_field(Ref<platform::Recordset> records, std::string& field, std::string& path,
                                bool update) {
    guard("Copy File To Field", [&] {
        tabrixdb::copy_file_to_field(required(records), field, path);
        if (update && !path.empty())
            records->update();
    });
    return {};
}

Variant Pro::get_byte_string(Variant& text) {
    return Text::bytes(platform::Host::current().bytes_of_text(plain_text(text)));
}

std::string Pro::get_string(Variant& bytes) {
    const Variant value = value_of(bytes);
    if (value.is_byte_array() || (value.is_string() && value.text().is_bytes()))
        return platform::Host::current().text_of_bytes(value.text());
    return plain_text(value); // it is text already
}

void Pro::create_fast_grid(std::string& grid_id, std::string& sql, std::string& connection_id,
                           std::int16_t& rows, std::int16_t&, std::string& table_tag, std::string& cell_start,
                           std::string& cell_end, std::string& head_start, std::string& head_end) {
    tabrixdb::create_fast_grid(
        *this, {grid_id, sql, connection_id, rows, table_tag, cell_start, cell_end, head_start, head_end});
}

void Pro::create_filter(std::string& source_id, std::string& path, bool display) {
    guard("CreateFilter", [&] {
        if (tabrixdb::create_filter(*this, source_id, path, display))
            make_grids_again(*this, source_id);
    });
}

Variant Pro::send_email(Variant& from, Variant& to, Variant& subject, Variant& body, std::string& format,
                        Variant& records, std::string& relative_path) {
    try {
        const Ref<platform::Recordset> filled_from =
            records.is_empty() ? Ref<platform::Recordset>()
                               : ArgumentType<Ref<platform::Recordset>>::from(records);
        send_mail(platform::Host::current(), {.from = plain_text(from),
                                              .to = plain_text(to),
                                              .subject = plain_text(subject),
                                              .body = plain_text(body),
                                              .format = format,
                                              .records = filled_from.get(),
                                              .relative_path = relative_path});
    } catch (const Error& error) {
        report(mail_failure(error));
    }
    return {};
}

std::string Pro::url_address(bool with_query) {
    return guard("UrlAddress", [&] { return page_address(request(), with_query); });
}

std::string Pro::query_include(std::string& pairs, bool encode) {
    return guard("QueryInclude", [&] { return tabrixdb::query_include(request(), server(), pairs, encode); });
}

void Pro::clean_up() {
    guard("CleanUp", [&] { tabrixdb::clean_up(*this); });
}

} // namespace tabrixdb
