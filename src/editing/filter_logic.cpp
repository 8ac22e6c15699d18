#include "editing/filter_logic.h"

#include "engine/report.h"

namespace tabrixdb {

void process_filter_logic(const GridCommand& command, const std::string& grid, const std::string& source) {
    guard("Process Filter Logic - " + grid, [&] {
        const bool sets = command.word == "filter_grid";
        if (sets || command.word == "filter_grid_clear") {
            session().set_value(grid + "_filter", sets);
            session().set_value(grid + "_filterstr", sets ? command.parameters : std::string());
        }
        if (command.word == "filter_grid_source")
            session().set_value(source + "_showfilter", "on");
        if (command.word == "filter_grid_source_clear")
            session().set_value(source + "_showfilter", "");
    });
}

} // namespace tabrixdb
