#include "automation/array.h"
#include "automation/error.h"
#include "engine/pro.h"
#include "engine/report.h"
#include "template/read_template.h"

#include <array>
#include <utility>

namespace tabrixdb {

namespace {

constexpr auto kButtonTags = std::to_array<std::pair<std::string_view, std::string_view>>({
    {"#~btn_first~#", "javascript:grid_navigate('#~source~#','first_page')"},
    {"#~btn_previous~#", "javascript:grid_navigate('#~source~#','previous_page')"},
    {"#~btn_next~#", "javascript:grid_navigate('#~source~#','next_page')"},
    {"#~btn_last~#", "javascript:grid_navigate('#~source~#','last_page')"},
    {"#~btn_row_plus~#", "javascript:grid_navigate('#~source~#','row+')"},
    {"#~btn_row_minus~#", "javascript:grid_navigate('#~source~#','row-')"},
    {"#~btn_edit~#", "javascript:edit_source('#~source~#','edit')"},
    {"#~btn_update~#", "javascript:edit_source('#~source~#','update')"},
    {"#~btn_update_onstart~#", "javascript:edit_source_onstart('#~source~#','update')"},
    {"#~btn_cancel~#", "javascript:edit_source('#~source~#','cancel')"},
    {"#~btn_add~#", "javascript:edit_source('#~source~#','add')"},
    {"#~btn_delete~#", "javascript:edit_source('#~source~#','delete')"},
    {"#~btn_reset~#", "javascript:reset_form('#~source~#')"},
    {"#~btn_filter~#", "javascript:filter_grid_source('#~source~#','filter_grid_source')"},
    {"#~btn_reset_filter~#", "javascript:filter_grid_source('#~source~#','filter_grid_source_clear')"},
});

constexpr std::string_view kErrorPage = "/TabrixDb/tabrixdb_error.htm";

} // namespace

Pro::Pro() {
    try {
        init_variables();
    } catch (const Error& error) {
        report_plainly(error, "InitVariables"); // the error page may not be usable yet
    }
}

void Pro::init_variables() {
    thread_texts().error_template = tabrixdb::read_template(server().map_path(kErrorPage), true);
    combine_grid_templates = true;
    sort_down_image = "<img src='/TabrixDb/Images/Ver2_d_blue.gif' alt='Sort Descending' border=0>";
    sort_up_image = "<img src='/TabrixDb/Images/Ver2_a_blue.gif' alt='Sort Ascending' border=0>";
    filter_image = "<img src='/TabrixDb/Images/Ver2_picFilterSM.gif' alt='Filter' border=0 align='top'>";
    clear_filter_image =
        "<img src='/TabrixDb/Images/Ver2_picStopFilterSM.gif' alt='Clear Filter' border=0 align='top'>";
    show_sort_icons = true;
    show_filter_icons = true;
    for (const auto& [tag, replacement] : kButtonTags)
        header_footer_tags->add(make_ref<Array>(std::vector<Variant>{tag, replacement}));
    set_edit_mode("row");
    script = platform::Host::current().create_script_control();
    script->set_language("VBScript");
    script->set_allow_ui(false);
    upload_handler = "/TabrixDb/file_upload.asp";
    buttons_goto_anchor = "#tabrixdb";
}

} // namespace tabrixdb
