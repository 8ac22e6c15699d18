#include "grid/create_grid.h"

#include "grid/grid_renderer.h"

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

} // namespace tabrixdb
