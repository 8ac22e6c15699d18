#include "template/buttons.h"

#include "automation/array.h"
#include "automation/conversions.h"
#include "data/db_source.h"
#include "engine/fill_tag.h"
#include "engine/report.h"
#include "template/positions.h"
#include "template/split.h"

#include <algorithm>

namespace tabrixdb {

namespace {

void remove_link(std::string& text, std::string_view start) {
    guard("Get Tag", [&] { replace_span(text, start, "</a>", ""); });
}

// --- Header and footer -------------------------------------------------------------------------------

void fill_button_tags(std::string& text, const ButtonContext& context) {
    const Collection& pairs = *context.pro.header_footer_tags;
    for (std::int32_t i = 1; i <= pairs.count(); ++i) {
        const Variant& pair = pairs.item(i);
        if (!pair.is_array() || pair.array()->size() < 2)
            throw Error(kErrorMismatch);
        fill_tag(text, to_text(pair.array()->elements()[0]), to_text(pair.array()->elements()[1]));
    }
    fill_tag(text, "#~source~#", context.state.grid());
    fill_tag(text, "#~page_num~#", context.state.text("_CurrentPage"));
    fill_tag(text, "#~row_count~#", context.state.text("_PageSize"));
}

void remove_edit_buttons(std::string& text, const ButtonContext& context) {
    const auto remove = [&](std::string_view action) {
        remove_link(text, "<a href=\"javascript:edit_source('" + context.state.grid() + "','" +
                              std::string(action) + "')");
    };
    const bool edits_source = context.command.word == "edit_source";
    if (edits_source && context.command.part(1) == "edit") {
        context.pro.grid_edit_mode = "GRID";
        remove("edit");
    } else if (edits_source || context.pro.grid_edit_mode != "GRID") {
        remove("update");
        remove("cancel");
    }
}

struct Counters {
    std::string pages = "0", page = "0", shown = "[0-0]", records = "0";
};

Counters counters_of(const ButtonContext& context) {
    platform::Recordset& records = context.records;
    if (records.is_empty())
        return {};
    const std::int32_t count = records.record_count();
    if (context.offset_grid) {
        const std::string shown = std::to_string(std::int64_t{context.offset_grid->number("_Offset")} + 1);
        return {std::to_string(count), shown, shown, std::to_string(count)};
    }
    const std::int32_t page = records.absolute_page();
    const std::int64_t page_end = std::int64_t{page} * records.page_size();
    return {std::to_string(records.page_count()), std::to_string(page),
            "[" + std::to_string(records.absolute_position()) + "-" +
                std::to_string(std::min<std::int64_t>(count, page_end)) + "]",
            std::to_string(count)};
}

void fill_counters(std::string& text, const ButtonContext& context) {
    const Counters counters = counters_of(context);
    fill_tag(text, "#~page_count~#", counters.pages);
    fill_tag(text, "#~current_page~#", counters.page);
    fill_tag(text, "#~records_shown~#", counters.shown);
    fill_tag(text, "#~record_count~#", counters.records);
}

void fill_toggle(std::string& text, const GridState& state) {
    const std::string_view form = state.blank("_gridmode") ? "form" : "grid";
    fill_tag(text, "#~btn_grid/form~#",
             "javascript:toggle_to_" + std::string(form) + "('" + state.grid() + "')");
}

// --- Captions ------------------------------------------------------------------------------------------

std::string sort_link(const std::string& grid, const std::string& column, std::string_view direction,
                      const std::string& image) {
    return "<a href=\"javascript:grid_sort('" + column + "',' " + std::string(direction) + " ','" + grid +
           "')\">" + image + "</a>";
}

std::string filter_link(const ButtonContext& context, const platform::Column& column) {
    const std::string& grid = context.state.grid();
    if (context.state.flag("_filter"))
        return "<a href=\"javascript:clear_filter('" + grid + "')\">" + context.pro.clear_filter_image +
               "</a>";
    const auto type = static_cast<int>(platform::type_class(column.type));
    return "<a href=\"javascript:filter_field('" + grid + "', '[" + column.name + "]'," +
           std::to_string(type) + ")\">" + context.pro.filter_image + "</a>";
}

std::string caption_of(const ButtonContext& context, const platform::Column& column, const DbField& field) {
    const std::string& grid = context.state.grid();
    std::string caption = field.caption.empty() ? column.name : field.caption;
    if (context.pro.show_sort_icons)
        caption = sort_link(grid, column.name, "DESC", context.pro.sort_down_image) + caption +
                  sort_link(grid, column.name, "ASC", context.pro.sort_up_image);
    if (context.pro.show_filter_icons)
        caption += filter_link(context, column);
    return caption;
}

// --- Rows ----------------------------------------------------------------------------------------------

// Row calls carry the row's zero-based place on the page.
std::string row_index(std::int16_t row) {
    return std::to_string(row - 1);
}

std::string row_tag(std::string_view action) {
    return "#~btn_" + std::string(action) + "_row~#";
}

std::string edit_call(const std::string& index, const std::string& grid, std::string_view action) {
    return "javascript:edit_grid(" + index + ", '" + grid + "','" + std::string(action) + "')";
}

template <class Address>
void replace_record_pointer(std::string& text, Address address) {
    guard("Get Grid Record Pointer", [&] {
        constexpr std::string_view kStart = "#~record_pointer_";
        const std::size_t start = find_short(text, kStart);
        const std::size_t end = start == kNotFound ? kNotFound : find_short(text, "~#", start);
        if (end == kNotFound)
            return;
        const std::string target = text.substr(start + kStart.size(), end - start - kStart.size());
        fill_tag(text, std::string(kStart) + target + "~#", address(target));
    });
}

} // namespace

void parse_header_footer_buttons(std::string& text, const ButtonContext& context) {
    guard("Parse Header Footer Buttons", [&] {
        fill_button_tags(text, context);
        remove_edit_buttons(text, context);
        fill_counters(text, context);
        // An empty grid deliberately keeps the toggle's tag.
        if (!context.records.is_empty())
            fill_toggle(text, context.state);
    });
}

void form_grid_header(std::string& header, const ButtonContext& context, const DbSource& source) {
    guard("FormGridHeader", [&] {
        for (const platform::Column& column : context.records.columns()) {
            const std::string tag = "#~" + column.name + "~#";
            if (contains_ignore_case(header, tag))
                fill_tag(header, tag, caption_of(context, column, source.field_of(column.name)));
        }
        parse_header_footer_buttons(header, context);
    });
}

void parse_row_buttons(std::string& text, const ButtonContext& context, std::int16_t row, bool edited) {
    guard("Parse Grid Update Buttons", [&] {
        const std::string& grid = context.state.grid();
        fill_tag(text, "#~grid_name~#", grid);
        const bool whole_grid = equal_ignore_case(context.pro.grid_edit_mode, "GRID");
        const struct {
            std::string_view action;
            bool applies;
        } buttons[] = {{"update", edited && !whole_grid},
                       {"cancel", edited && !whole_grid},
                       {"edit", !edited && !whole_grid},
                       {"delete", !edited || whole_grid}};
        for (const auto& [action, applies] : buttons)
            if (!applies)
                remove_link(text, "<a href=\"" + row_tag(action));
        for (const auto& [action, applies] : buttons)
            if (applies)
                fill_tag(text, row_tag(action), edit_call(row_index(row), grid, action));
    });
}

void parse_add_buttons(std::string& text, const std::string& grid) {
    guard("Check AddNew Record", [&] {
        fill_tag(text, "#~grid_name~#", grid);
        for (const std::string_view action : {"edit", "delete"})
            remove_link(text, "<a href=\"" + row_tag(action));
        const std::string call = "javascript:edit_source('" + grid + "','";
        for (const std::string_view ending : {"_row~#", "~#"}) {
            fill_tag(text, "#~btn_update" + std::string(ending), call + "addnew')");
            fill_tag(text, "#~btn_cancel" + std::string(ending), call + "canceladd')");
        }
        fill_tag(text, "#~btn_reset~#", "javascript:reset_form('" + grid + "')");
    });
}

void fill_record_pointer(std::string& text, std::int16_t row) {
    replace_record_pointer(text, [&](const std::string& target) {
        return "javascript:grid_pageoffset(" + row_index(row) + ", '" + target + "' )";
    });
}

void drop_record_pointer(std::string& text) {
    replace_record_pointer(text, [](const std::string&) { return "#"; });
}

} // namespace tabrixdb
