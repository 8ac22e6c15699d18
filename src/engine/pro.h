#pragma once

#include "automation/collection.h"
#include "engine/page.h"
#include "platform/host.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tabrixdb {

// The command of a request for one grid: `<grid>_command`, `<grid>_params` and the latter split at ";" (part
// 0 names a grid, part 1 is the action or the sort expression, part 2 the row).
struct GridCommand {
    std::string word;
    std::string parameters;
    std::vector<std::string> parts;
    bool posted = false; // by a form; else the address has it

    // Error 9 when there is no such part.
    const std::string& part(std::size_t index) const;

    bool is(std::string_view command, std::string_view action) const {
        return word == command && parts.size() > 1 && parts[1] == action;
    }
};

// Reads it from the posted form, or where that has none, from the address; never from a cookie. A grid
// without a command has an empty word.
GridCommand read_command(platform::Request& request, std::string_view grid);
// The word alone.
std::string read_command_word(platform::Request& request, std::string_view grid);

// What the posted form has for a control, or where it has no such control, the address; "" when neither has.
std::string read_control(platform::Request& request, std::string_view name);

// The engine object: what a page creates once, sets, asks for grids, and cleans up. Keeps the page's
// settings and its named connections, sources, grids and filter forms for the life of the page. One thread.
//
// The methods that pages call are declared here and do their work in the rooms they belong to (data/, grid/,
// template/, web/); their bodies and the member table are in classes/pro.cpp.
class Pro final : public Object {
public:
    static constexpr std::string_view kProgramId = "TabrixDb.Pro";

    // Binds the page, loads the site's error page and fills the settings below; a failure writes one line to
    // the response and leaves the rest as it is.
    Pro();
    const ClassInfo& class_info() const override;

    // --- Settings, under the names that pages know them by ---
    std::string upload_handler;
    std::string buttons_goto_anchor;
    bool download = false;
    std::string download_format; // "" or "csv"
    bool bar_graph = false;
    std::string grid_edit_mode;   // "row", "GRID" or "ADD": of the grid that is made, or was made last
    std::string chosen_edit_mode; // what the page has set, with which each grid begins
    bool combine_grid_templates = false;
    std::string sort_down_image;
    std::string sort_up_image;
    bool show_sort_icons = false;
    std::string filter_image;
    std::string clear_filter_image;
    bool show_filter_icons = false;
    bool single_grid_template = false;
    Ref<platform::ScriptControl> script;
    Ref<Object> calendar;
    bool debug_mode = false;
    std::string script_validate_tags;
    std::string submit_handler;
    Variant goto_bookmark;
    bool ado_errors = false;
    bool trust_values = false;  // tags, expressions and SQL that values bring along are the page's
    std::string permit;         // which changes a grid takes: "": those that it offers; else words for them
    std::string filter_columns; // by which visitors may sort and filter beside those that a grid shows

    // --- What the page has made, each item under the identifier that the page gave it ---
    Ref<Collection> header_footer_tags = make_ref<Collection>(); // two-element arrays (tag, replacement)
    Ref<Collection> connections = make_ref<Collection>();        // platform::Connection
    Ref<Collection> sources = make_ref<Collection>();            // DbSource
    Ref<Collection> grids = make_ref<Collection>();              // DbGrid
    Ref<Collection> filter_forms = make_ref<Collection>();       // HTML

    // --- Methods of pages; each reports its failures under its own label ---
    void create_connection(std::string& connection_id, std::string& connection_string,
                           std::string& access_database);
    void create_source(std::string& source_id, std::string& sql, std::string& connection_id,
                       std::int16_t cursor_type, Variant& lock_type, bool dynamic, Variant& cursor_location,
                       Variant& options);
    std::string get_table_name(std::string& sql);
    std::string read_template(std::string& path, bool strip_body, bool for_script);
    void create_grid(std::string& grid_id, std::string& source_id, std::string& row_template,
                     std::string& header_template, std::string& footer_template, std::int16_t& rows,
                     std::int16_t& row_increment, bool& source_is_another_grid, bool& grid_mode);
    std::string copy_field_to_file(Ref<platform::Recordset> records, std::string& field, std::string& path);
    Variant copy_file_to_field(Ref<platform::Recordset> records, std::string& field, std::string& path,
                               bool update);
    Variant get_byte_string(Variant& text);
    std::string get_string(Variant& bytes);
    void create_fast_grid(std::string& grid_id, std::string& sql, std::string& connection_id,
                          std::int16_t& rows, std::int16_t& row_increment, std::string& table_tag,
                          std::string& cell_start, std::string& cell_end, std::string& head_start,
                          std::string& head_end);
    void create_filter(std::string& source_id, std::string& path, bool display);
    Variant send_email(Variant& from, Variant& to, Variant& subject, Variant& body, std::string& format,
                       Variant& records, std::string& relative_path);
    std::string url_address(bool with_query);
    std::string query_include(std::string& pairs, bool encode);
    void clean_up();

    // Writes "<pre> text </pre><br>" to the response when DebugMode is on. `end` is what stands behind the
    // text.
    void trace(std::string_view text, std::string_view end = " ") const;

private:
    void init_variables();

    const std::string& edit_mode() const { return grid_edit_mode; }

    void set_edit_mode(const std::string& mode) { grid_edit_mode = chosen_edit_mode = mode; }

    const std::string& get_permit() const { return permit; }

    void set_permit(const std::string& words);

    std::string admin_email() const { return thread_texts().admin_email; }

    void set_admin_email(const std::string& address) { thread_texts().admin_email = address; }
};

} // namespace tabrixdb
