#include "grid/edit_toggle.h"

#include "engine/grid_state.h"
#include "engine/report.h"

namespace tabrixdb {

void process_edit_form_toggle(Pro& pro, std::string& row_template, const std::string& header_template,
                              const std::string& footer_template, const std::string& grid, bool repeated) {
    guard("Process Edit Form Toggle - " + grid, [&] {
        if (row_template.empty() || !pro.single_grid_template || header_template.empty())
            return;
        constexpr std::string_view kMode = "_mode";
        GridState state(session(), grid);
        const GridCommand command = read_command(request(), grid);
        if (command.word == "form_mode" || command.word == "grid_mode")
            state.set(kMode, "");
        const std::string edit = command.word == "edit_source" ? command.part(1) : std::string();
        if (edit == "edit" && !repeated)
            state.set(kMode, state.text(kMode) == "Edit" ? "" : "Edit");
        if (state.text(kMode) == "Edit") {
            pro.grid_edit_mode = "GRID";
            row_template = header_template;
        }
        if (edit == "add") { // last, so that it wins over the edit form
            pro.grid_edit_mode = "ADD";
            row_template = footer_template;
        }
    });
}

} // namespace tabrixdb
