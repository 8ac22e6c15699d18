#include "grid/create_grid.h"

#include "automation/conversions.h"
#include "automation/text.h"
#include "engine/report.h"
#include "grid/db_grid.h"
#include "grid/grid_renderer.h"
#include "grid/kept_settings.h"

namespace tabrixdb {

void create_grid(Pro& pro, GridRequest grid) {
    // The built-in template sets it for its own grid only.
    struct Restore {
        bool& setting;
        const bool value = setting;

        ~Restore() { setting = value; }
    } restore{pro.single_grid_template};

    // Another grid of the page may have been put in edit mode by its own command.
    pro.grid_edit_mode = pro.chosen_edit_mode;

    GridRenderer(pro, grid).run();
}

void make_grid_again(Pro& pro, const std::string& id) {
    const Ref<DbGrid> made = pro.grids->get<DbGrid>(id);
    std::string source_id = made->fed_by.empty() ? made->source : made->fed_by;
    std::string row_template = made->row_template;
    const KeptSettings kept(pro);
    pro.single_grid_template = made->single_template;
    pro.permit = made->permit;
    create_grid(pro, {.grid_id = id,
                      .source_id = source_id,
                      .row_template = row_template,
                      .header_template = made->header_template,
                      .footer_template = made->footer_template,
                      .rows = to_integer(made->rows),
                      .increment = to_integer(made->row_increment),
                      .from_grid = !made->fed_by.empty(),
                      .grid_mode = made->grid_mode});
}

void make_grids_again(Pro& pro, std::string_view source) {
    for (std::int32_t i = 1; i <= pro.grids->count() && !page_ended(); ++i)
        if (const Ref<DbGrid> grid = pro.grids->get<DbGrid>(i);
            grid->made && equal_ignore_case(grid->source, source))
            make_grid_again(pro, std::string(pro.grids->key(i)));
}

} // namespace tabrixdb
