#include "editing/filter_form.h"

#include "automation/text.h"
#include "data/column_list.h"
#include "data/sources.h"
#include "engine/fill_tag.h"
#include "engine/grid_state.h"
#include "engine/report.h"
#include "template/parse_view.h"
#include "template/read_template.h"

namespace tabrixdb {

namespace {

// A list named "operator"; `like`: as texts are compared.
std::string operator_list(bool like) {
    std::string list = "<SELECT name='operator' >";
    list += like ? "<option SELECTED value='LIKE'>LIKE</option><option value='='>=</option>"
                 : "<option SELECTED value='='>=</option>";
    for (const std::string_view sign : {"&gt;", "&lt;", "&lt;=", "&gt;=", "&lt;&gt;"})
        list += "<option value='" + std::string(sign) + "'>" + std::string(sign) + "</option>";
    return list + "</select>\r\n";
}

constexpr std::string_view kConnectives = "<Input type=radio name='andor' value='And' >AND"
                                          "<Input type=radio name='andor' value='Or'  checked >OR\r\n";

void fill_column(std::string& text, Pro& pro, const DbSource& source, const platform::Column& column) {
    const std::string tag = "#~" + column.name;
    if (!contains_ignore_case(text, tag))
        return;
    const std::string name = posted_name(column.name);
    const bool like = platform::type_class(column.type) == platform::TypeClass::Text;
    fill_tag(text, tag + "_label~#", column.name);
    fill_tag(text, tag + "_operator~#", replace_all(operator_list(like), "operator", name + "_operator"));
    if (const std::string value = tag + "_value~#"; contains_ignore_case(text, value))
        fill_tag(text, value, parse_view(pro, FormMode::Filter, source, column.name, 0, {}));
    fill_tag(text, tag + "_andor~#", replace_all(kConnectives, "andor", name + "_andor"));
}

// Whether a form has something of a column: a tag, or an input that the page wrote itself.
bool has_column(std::string_view text, const std::string& column) {
    for (const std::string_view part : {"_label~#", "_operator~#", "_value~#", "_andor~#"})
        if (contains_ignore_case(text, "#~" + column + std::string(part)))
            return true;
    const std::string name = posted_name(column);
    for (const std::string& input : {"\"" + name + "\"", "'" + name + "'", name + " ", name + ">"})
        if (contains_ignore_case(text, "name=" + input))
            return true;
    return false;
}

std::string columns_of(std::string_view text, const std::vector<platform::Column>& columns) {
    std::string list;
    for (const platform::Column& column : columns)
        if (has_column(text, column.name))
            list += (list.empty() ? "" : ",") + column.name;
    return list;
}

// Takes up a posted filter that only this form can say to be allowed.
bool take_filter(const Pro& pro, const std::string& id, std::string_view template_path) {
    if (!pro.sources->contains(id))
        return false;
    const Ref<DbSource> source = pro.sources->get<DbSource>(id);
    if (source->posted_filter.empty())
        return false;
    const auto& columns = source->records().columns();
    const std::string listed = columns_of(read_template(template_path, true), columns);
    for (const std::string& column : source->records().columns_in_filter(source->posted_filter))
        if (!lists_column(listed, column) && !lists_column(pro.filter_columns, column)) {
            platform::Host::current().log(
                request().server_variable("URL") + ": the filter form of " + id +
                " does not have the column " + column +
                ". If visitors may filter by it, set FilterColumns before CreateSource.");
            source->posted_filter.clear();
            return false;
        }
    take_posted_filter(*source, id);
    return true;
}

void fill_buttons(std::string& text, const std::string& id) {
    const auto call = [&](std::string_view command) {
        return "javascript:filter_source('" + id + "','" + std::string(command) + "')";
    };
    fill_tag(text, "#~btn_filter~#", call("filter_source"));
    fill_tag(text, "#~btn_reset_filter~#", call("filter_source_clear"));
    fill_tag(text, "#~grid_name~#", id); // by which a control's link finds its form
}

std::string framed(const std::string& text, const std::string& id, const std::string& anchor) {
    const auto hidden = [&](std::string_view suffix, std::string_view value) {
        return "<input type=\"hidden\" name=\"" + id + std::string(suffix) + "\" value=\"" +
               std::string(value) + "\">\r\n";
    };
    return "<a name='" + id + "_start'></a><form name=\"" + id + "\" method=\"post\">\r\n" +
           hidden("_command", "") + hidden("_params", "") + hidden("_anchor", anchor) + text +
           "</form>\r\n<a name='" + id + "_end'></a>";
}

} // namespace

bool create_filter(Pro& pro, const std::string& source_id, std::string& template_path, bool display) {
    GridState state(session(), source_id);
    state.set("_filterdisplay", display);
    const bool taken = take_filter(pro, source_id, template_path);
    std::string text;
    if (!page_ended() && (display || !state.blank("_showfilter"))) {
        const Ref<DbSource> source = pro.sources->get<DbSource>(source_id);
        const auto& columns = source->records().columns();
        text = pro.read_template(template_path, true, false);
        if (text.empty() || page_ended())
            return taken;
        state.set(kFormColumns, columns_of(text, columns));
        for (const platform::Column& column : columns) {
            fill_column(text, pro, *source, column);
            if (page_ended())
                return taken;
        }
        fill_buttons(text, source_id);
        text = framed(text, source_id, pro.buttons_goto_anchor);
    }
    pro.filter_forms->add(Variant(text), source_id);
    return taken;
}

} // namespace tabrixdb
