#include "automation/conversions.h"
#include "automation/text.h"
#include "data/column_list.h"
#include "data/sources.h"
#include "editing/refusal.h"
#include "engine/report.h"
#include "grid/db_grid.h"
#include "grid/grid_renderer.h"
#include "grid/paging.h"

#include <algorithm>
#include <utility>

// What a visitor may do with a grid: change what it offers to change, sort and filter by what it shows.
namespace tabrixdb {

namespace {

// Grids in rows offer nothing for the row around them.
class NoNestedGrids final : public NestedGrids {
public:
    Ref<DbSource> source_of(const std::string&) override { return make_ref<DbSource>(); }

    std::string render(const std::string&, std::int16_t) override { return {}; }
};

// A field that no script takes for one of the grid's own form.
std::string carried(std::string_view name, std::string_view value) {
    return "<textarea name=\"" + html_encode(name) + "\" hidden>" + html_encode(value) + "</textarea>";
}

// Whether a posted name is that of a column's control, in whatever row.
bool is_control_of(std::string_view name, std::string_view column) {
    const std::string posted = posted_name(column);
    if (!equal_ignore_case(name.substr(0, posted.size()), posted))
        return false;
    const std::string_view row = name.substr(std::min(posted.size(), name.size()));
    return row.empty() ||
           (row.size() > 1 && row[0] == '_' && row.find_first_not_of("0123456789", 1) == row.npos);
}

// The call of a button of a grid in a row, where no form of its own can stand.
std::string call_of(const GridCommand& command, const std::string& grid) {
    const std::string action = "'" + grid + "','" + command.part(1) + "')";
    if (command.word != "edit_grid")
        return "javascript:edit_source(" + action;
    return "javascript:edit_grid(" + std::to_string(to_integer(command.part(2))) + ", " + action;
}

} // namespace

const GridText& GridRenderer::text() {
    if (!text_) {
        const bool adds = pro_.single_grid_template && !list_template_.empty();
        const std::string_view footer = adds ? std::string_view() : grid_.footer_template;
        text_.emplace(pro_, *source_,
                      std::initializer_list<std::string_view>{list_template_, grid_.header_template, footer},
                      adds ? std::string_view(grid_.footer_template) : std::string_view());
    }
    return *text_;
}

// --- Changes -------------------------------------------------------------------------------------------

GridRenderer::Permission GridRenderer::permission(Change change) {
    if (platform::Host::current().permits_any_command())
        return Permission::Granted;
    if (!pro_.permit.empty())
        return permitted_changes(pro_.permit).has(change) ? Permission::Granted : Permission::Denied;
    const bool templates = pro_.single_grid_template && !list_template_.empty();
    const bool edits =
        equal_ignore_case(pro_.chosen_edit_mode, "GRID") || (templates && !grid_.header_template.empty());
    const bool adds = pro_.chosen_edit_mode == "ADD" || (templates && !grid_.footer_template.empty());
    if ((change == Change::EditPage && edits) || (change == Change::AddRecord && adds) ||
        text().offers().has(change))
        return Permission::Granted;
    if (!text().code_offers().has(change))
        return Permission::Denied;
    return change == Change::EditPage || change == Change::AddRecord ? Permission::Granted
                                                                     : Permission::ByRecord;
}

// Before anything is changed. What is denied, or asked for by an address only, is no command any more.
void GridRenderer::judge_change() {
    if (repeated_) {
        if (pro_.grids->contains(grid_.grid_id))
            edited_ = pro_.grids->get<DbGrid>(grid_.grid_id)->edited;
        return;
    }
    const std::optional<Change> change = change_of(command_);
    if (!change)
        return;
    const Permission granted = permission(*change);
    if (page_ended())
        return;
    if (granted == Permission::Denied)
        return deny(*change);
    if (granted == Permission::ByRecord)
        by_record_ = change;
    if (!command_.posted)
        asked_ = std::exchange(command_, {});
}

void GridRenderer::deny(Change change) {
    const ChangeWords& words = words_of(change);
    const FormMode mode = change == Change::AddRecord ? FormMode::Add : FormMode::Edit;
    edited_.refusal = not_offered(change, command_, *source_, PostedForm(*source_, posted_, mode),
                                  std::max(grid_.rows, posted_.count()));
    const std::string line = (pro_.permit.empty() ? "" : pro_.permit + ", ") + std::string(words.permit);
    platform::Host::current().log(request().server_variable("URL") + ": grid " + grid_.grid_id +
                                  " does not offer to " + std::string(words.action) +
                                  ". If it should, set Permit = \"" + line + "\" before CreateGrid.");
    command_ = {};
}

// Whether the current record's own row offers the change.
void GridRenderer::check_record(Change change) {
    NoNestedGrids nested;
    GridRows rows(buttons(), *source_, nested, {grid_.from_grid, grid_.grid_mode});
    const Offers offers(rows.page_text(layout_));
    if (page_ended() || !offers.has(change))
        throw Refusal{
            .message = not_offered(change, {}, *source_, PostedForm(*source_, posted_, FormMode::Edit), 0)};
}

// The question whether to make a change that an address has asked for, with a button that posts it. "" when
// none has.
std::string GridRenderer::question() const {
    const std::optional<Change> change = change_of(asked_);
    if (!change)
        return {};
    const ChangeWords& words = words_of(*change);
    const std::string start =
        "class=\"tabrixdb-message\" role=\"alert\">" + std::string(words.question) + " ";
    if (grid_.depth > 0)
        return "<div " + start + "<a href=\"" + call_of(asked_, grid_.grid_id) + "\">" +
               std::string(words.button) + "</a></div>\r\n";
    const std::string& id = grid_.grid_id;
    std::string fields = carried(id + "_params", asked_.parameters) + carried(id + "_shown", shown_.text());
    std::string address = "?";
    const auto is_control = [&](std::string_view name) {
        return std::ranges::any_of(records().columns(), [&](const platform::Column& column) {
            return is_control_of(name, column.name);
        });
    };
    for (const auto& [name, value] : request().query_parameters()) {
        if (is_control(name))
            fields += carried(name, value);
        else if (!equal_ignore_case(name, id + "_command") && !equal_ignore_case(name, id + "_params"))
            address += (address.size() > 1 ? "&" : "") + server().url_encode(name) + "=" +
                       server().url_encode(value);
    }
    return "<form method=\"post\" action=\"" + html_encode(address) + "\" " + start + fields +
           "<button name=\"" + html_encode(id) + "_command\" value=\"" + html_encode(asked_.word) + "\">" +
           std::string(words.button) + "</button></form>\r\n";
}

// --- Sort and filter -----------------------------------------------------------------------------------

// The first of the columns that neither the grid nor the filter form of its source shows; "" when there is
// none.
std::string GridRenderer::hidden_column(const std::vector<std::string>& columns) {
    const std::string form = GridState(session(), grid_.source_id).text(kFormColumns);
    for (const std::string& column : columns)
        if (!lists_column(form, column) && !text().has_column(column))
            return column;
    return {};
}

bool GridRenderer::may_name(const std::vector<std::string>& columns) {
    const std::string column = hidden_column(columns);
    if (column.empty())
        return true;
    edited_.refusal = "This page can not be sorted or searched by " + html_encode(column) + ".";
    platform::Host::current().log(request().server_variable("URL") + ": grid " + grid_.grid_id +
                                  " does not show the column " + column +
                                  ". If visitors may sort and filter by it, add it to FilterColumns.");
    return false;
}

void GridRenderer::judge_sort() {
    const std::string posted = state_.text(kPostedSort);
    if (posted.empty())
        return;
    state_.set(kPostedSort, "");
    if (posted == state_.text("_Sort") && !may_name(records().columns_in_sort(posted)))
        state_.set("_Sort", "");
}

// Whether the posted filter of this grid is taken up; takes up that of its source, where only this grid can
// say that it may be.
bool GridRenderer::takes_posted_filter() {
    if (!source_->posted_filter.empty() &&
        hidden_column(records().columns_in_filter(source_->posted_filter)).empty())
        take_posted_filter(*source_, grid_.source_id);
    return command_.word != "filter_grid" || may_name(records().columns_in_filter(command_.parameters));
}

} // namespace tabrixdb
