#include "grid/nested_grid.h"

#include "automation/conversions.h"
#include "automation/error.h"
#include "data/sources.h"
#include "engine/grid_state.h"
#include "engine/report.h"
#include "grid/create_grid.h"
#include "grid/db_grid.h"
#include "grid/kept_settings.h"

namespace tabrixdb {

namespace {

// ROW and RowInc are texts in a DbGrid; one that was left out is CreateGrid's own default.
std::int16_t number_or(const std::string& text, std::int16_t otherwise) {
    return text.empty() ? otherwise : to_integer(text);
}

} // namespace

Ref<DbSource> NestedGrid::source_of(const std::string& grid) {
    return pro_.sources->get<DbSource>(pro_.grids->get<DbGrid>(grid)->source);
}

std::string NestedGrid::render(const std::string& grid, std::int16_t row) {
    return guard("Get Dynamic Grid", [&]() -> std::string {
        if (depth_ >= kMaxDepth)
            throw Error(kErrorCall, "Grids are nested deeper than " + std::to_string(kMaxDepth));
        const std::string instance = grid + "_" + std::to_string(row + 1);
        std::string html = render_instance(grid, instance);
        if (page_ended())
            return {};
        GridState state(session(), instance);
        if (state.blank("_DynamicCreated")) {
            html.insert(0, "<form name=\"" + grid + "_1\" method=post></form>");
            state.set("_DynamicCreated", "True");
        }
        return html;
    });
}

std::string NestedGrid::render_instance(const std::string& grid, const std::string& instance) {
    const Ref<DbGrid> shape = pro_.grids->get<DbGrid>(grid);
    const Ref<DbSource> source = source_of(grid);
    std::string source_id = shape->source;
    std::string row_template = shape->row_template;
    if (source->dynamic)
        open_dynamic_source(pro_, source_id);
    if (page_ended())
        return {};
    const KeptSettings kept(pro_);
    create_grid(pro_, {.grid_id = instance,
                       .source_id = source_id,
                       .row_template = row_template,
                       .header_template = shape->header_template,
                       .footer_template = shape->footer_template,
                       .rows = number_or(shape->rows, 10),
                       .increment = number_or(shape->row_increment, 5),
                       .depth = depth_ + 1});
    if (page_ended())
        return {};
    std::string html = pro_.grids->get<DbGrid>(instance)->content.str();
    pro_.grids->remove(instance);
    if (source->dynamic)
        close_dynamic_source(pro_, source_id);
    return html;
}

} // namespace tabrixdb
