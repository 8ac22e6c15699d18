#include "grid/grid_renderer.h"

#include "automation/conversions.h"
#include "automation/error.h"
#include "automation/text.h"
#include "blob/download.h"
#include "data/sources.h"
#include "editing/filter_logic.h"
#include "engine/report.h"
#include "grid/db_grid.h"
#include "grid/edit_toggle.h"
#include "grid/paging.h"
#include "grid/plain_template.h"
#include "template/view_tags.h"

#include <utility>

namespace tabrixdb {

namespace {

// A grid's output is a list of parts indexed by 16-bit numbers, of which this many frame the rows.
constexpr std::int32_t kFrameParts = 4;

} // namespace

void GridRenderer::run() {
    using Step = void (GridRenderer::*)();
    for (const Step step :
         {&GridRenderer::toggle_edit_form, &GridRenderer::find_source_grid, &GridRenderer::carry_selection,
          &GridRenderer::read_grid_command, &GridRenderer::find_source, &GridRenderer::sort_and_filter,
          &GridRenderer::read_templates, &GridRenderer::judge_change, &GridRenderer::add_record,
          &GridRenderer::edit_row_of_page, &GridRenderer::page, &GridRenderer::edit_positioned,
          &GridRenderer::write_download, &GridRenderer::render, &GridRenderer::select_row,
          &GridRenderer::switch_grid_mode, &GridRenderer::store}) {
        (this->*step)();
        if (page_ended())
            return;
    }
}

void GridRenderer::toggle_edit_form() {
    pro_.trace("Declare Variables in Grid");
    pro_.trace("Grid Start");
    list_template_ = grid_.row_template;
    repeated_ = !request().claim("grid " + fold(grid_.grid_id));
    // The toggle itself knows no way out of the edit template but "edit" once more.
    if (read_command(request(), grid_.grid_id).is("edit_source", "cancel"))
        state_.set("_mode", "");
    process_edit_form_toggle(pro_, grid_.row_template, grid_.header_template, grid_.footer_template,
                             grid_.grid_id, repeated_);
    pro_.trace("Process_EditFormToggle Called");
}

void GridRenderer::find_source_grid() {
    if (!grid_.from_grid)
        return;
    source_state_.emplace(session(), grid_.source_id);
    grid_.source_id = pro_.grids->get<DbGrid>(grid_.source_id)->source;
    state_.set("_command_target", source_state_->grid());
}

// A grid that this one feeds was switched back to the list: this one shows the page of the record that was
// selected there.
void GridRenderer::carry_selection() {
    constexpr std::string_view kCommand = "_command";
    for (const auto& [name, value] : request().form_fields()) {
        if (value != "grid_mode" || name.size() <= kCommand.size() ||
            !equal_ignore_case(name.substr(name.size() - kCommand.size()), kCommand))
            continue;
        const GridState other(session(), name.substr(0, name.size() - kCommand.size()));
        if (!equal_ignore_case(other.text("_command_target"), grid_.grid_id))
            continue;
        const std::int16_t row = to_short(std::int64_t{other.number("_Offset")} + 1);
        const std::int32_t size = state_.blank("_PageSize") ? grid_.rows : state_.number("_PageSize");
        if (size == 0)
            throw Error(11);
        state_.set("_CurrentPage", to_short(std::int64_t{row} / size + (row % size != 0 ? 1 : 0)));
        state_.set("_Offset", std::int16_t{0});
        break;
    }
    pro_.trace("Ik in Request Form Passed", ""); // deliberately without the blank
}

void GridRenderer::read_grid_command() {
    command_ = read_command(request(), grid_.grid_id);
    posted_ = ShownRows::posted(grid_.grid_id);
    pro_.trace("GetGridCommand Called");
}

void GridRenderer::find_source() {
    source_ = pro_.sources->get<DbSource>(grid_.source_id);
    if (source_->dynamic && !source_->dynamic_source_open) {
        opens_source_ = true;
        open_dynamic_source(pro_, grid_.source_id);
    }
    held_records_ = source_->recordset;
}

void GridRenderer::sort_and_filter() {
    process_sort_logic(command_, grid_.grid_id);
    if (page_ended())
        return;
    judge_sort();
    if (takes_posted_filter())
        process_filter_logic(command_, grid_.grid_id, grid_.source_id);
    if (page_ended())
        return;
    pro_.trace("Sort & filter Logic Called");
    apply_sort();
    if (!page_ended())
        apply_filter();
    if (page_ended())
        return;
    pro_.trace("Sort & filter Set");
}

void GridRenderer::apply_sort() {
    if (!state_.blank("_Sort"))
        guard(
            "CreateGrid - " + grid_.grid_id, [&] { records().set_sort(state_.text("_Sort")); },
            post_button(grid_.grid_id, "sort", grid_.grid_id + ";", "Show unsorted"));
}

void GridRenderer::apply_filter() {
    // A source of the grid's own name was opened with the filter that is being cleared.
    const bool cleared = command_.word == "filter_grid_clear";
    const bool filtered = state_.flag("_filter") && !state_.blank("_filterstr");
    if (!filtered && !cleared)
        return;
    const GridState& holder = filtered ? state_ : GridState(session(), grid_.source_id);
    guard(
        "CreateGrid - " + grid_.grid_id, [&] { records().set_filter(holder.text("_filterstr")); },
        post_button(grid_.grid_id, "filter_grid_clear", "", "Show all records"));
}

void GridRenderer::read_templates() {
    pro_.trace("Reading Grid Template");
    pro_.trace("Template = " + grid_.row_template);
    std::string text = read_row_template();
    if (page_ended())
        return;
    pro_.trace("Grid Template Loaded");
    parse_view_tags(text, *source_);
    if (page_ended())
        return;
    pro_.trace("Caling Split HeaderFooter");
    TemplateParts parts = guard("Split Header Footer", [&] { return split_template(text); });
    if (page_ended())
        return;
    pro_.trace("Split HeaderFooter Called");
    // With a single template the other two are the edit and the add form.
    if (pro_.single_grid_template || (grid_.header_template.empty() && grid_.footer_template.empty()))
        layout_ = layout_of_template(std::move(parts), pro_.combine_grid_templates);
    else
        join_templates(std::move(parts));
    if (!page_ended())
        pro_.trace("Passed Getting Templates ");
}

// Without a template the built-in one, which counts as a single template for the rest of the call.
std::string GridRenderer::read_row_template() {
    if (!grid_.row_template.empty())
        return pro_.read_template(grid_.row_template, true, false);
    pro_.trace("Read Template Called");
    pro_.single_grid_template = true;
    return plain_template(records());
}

void GridRenderer::join_templates(TemplateParts parts) {
    const auto read = [&](std::string path) {
        return path.empty() || page_ended() ? std::string() : pro_.read_template(path, true, false);
    };
    std::string header = read(grid_.header_template);
    std::string footer = read(grid_.footer_template);
    if (page_ended())
        return;
    layout_ = guard("GetTableTag", [&] {
        return layout_of_parts(std::move(parts), std::move(header), std::move(footer),
                               pro_.combine_grid_templates);
    });
}

// A selection beyond the records shows the first or the last of them.
void GridRenderer::stand_on_a_record() {
    if (records().is_empty())
        return;
    if (records().bof())
        records().move_first();
    else if (records().eof())
        records().move(-1);
}

void GridRenderer::page() {
    const GridCommand none;
    const GridCommand& turn = repeated_ ? none : command_;
    if (grid_.from_grid) {
        process_page_logic_for_form(pro_, turn, source_state_->grid(), records(), grid_.grid_mode,
                                    grid_.grid_id);
        if (page_ended())
            return;
        stand_on_a_record();
        rows_ = grid_.rows;
    } else {
        process_page_logic(turn, state_, records(), grid_.rows, grid_.increment);
        if (page_ended())
            return;
        // ROW deliberately bounds only the first display: afterwards the page size has what the user chose.
        rows_ = to_integer(state_.value("_PageSize"));
        // Positioned before the header is made, so that its counters speak of the page that is shown.
        if (!records().is_empty())
            records().set_absolute_page(state_.number("_CurrentPage"));
    }
    if (rows_ + kFrameParts > INT16_MAX)
        throw Error(kErrorOverflow);
}

void GridRenderer::write_download() {
    if (std::exchange(pro_.download, false)) // for this grid only
        process_download(records(), {&layout_.header, &layout_.footer}, pro_.download_format);
}

void GridRenderer::select_row() {
    if (!grid_.from_grid)
        process_offset_logic(command_, state_, records());
}

// A grid that another one feeds is hidden while the source grid's list is shown.
void GridRenderer::switch_grid_mode() {
    if (!grid_.grid_mode || !grid_.from_grid)
        return;
    constexpr std::string_view kGridMode = "_gridmode";
    if (state_.blank(kGridMode))
        state_.set(kGridMode, true);
    const std::string acted = read_command_word(request(), source_state_->grid());
    if (acted == "form_mode" || acted == "grid_offset")
        state_.set(kGridMode, false);
    if (command_.word == "grid_mode")
        state_.set(kGridMode, true);
    if (state_.flag(kGridMode))
        out_.clear();
}

void GridRenderer::store() {
    if (!pro_.grids->contains(grid_.grid_id))
        pro_.grids->add(make_ref<DbGrid>(), grid_.grid_id);
    const Ref<DbGrid> stored = pro_.grids->get<DbGrid>(grid_.grid_id);
    stored->content = Text(out_);
    stored->source = grid_.source_id;
    stored->rows = std::to_string(grid_.rows);
    stored->row_increment = std::to_string(grid_.increment);
    stored->row_template = grid_.row_template;
    stored->header_template = grid_.header_template;
    stored->footer_template = grid_.footer_template;
    stored->grid_mode = grid_.grid_mode;
    stored->sort = !state_.blank("_Sort");
    stored->sort_order = state_.text("_Sort");
    stored->fed_by = grid_.from_grid ? source_state_->grid() : "";
    stored->single_template = pro_.single_grid_template;
    stored->made = true;
    stored->permit = pro_.permit;
    stored->edited = edited_;
    if (opens_source_)
        close_dynamic_source(pro_, grid_.source_id);
}

} // namespace tabrixdb
