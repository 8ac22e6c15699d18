#include "classes/clean_up.h"

#include "data/db_source.h"
#include "grid/db_grid.h"

namespace tabrixdb {

namespace {

// Takes the items out from the last to the first, after `release` has seen each.
template <class T, class Release>
void empty_out(Collection& items, Release release) {
    for (std::int32_t i = items.count(); i >= 1; --i) {
        release(*items.get<T>(i));
        items.remove(i);
    }
}

} // namespace

void clean_up(Pro& pro) {
    empty_out<DbGrid>(*pro.grids, [](DbGrid& grid) { grid.content = Text(); });
    pro.grids = make_ref<Collection>();
    empty_out<DbSource>(*pro.sources, [](DbSource& source) {
        // A dynamic source is closed between renderings; any other that is closed is a failure of the page's.
        if (!source.dynamic || source.dynamic_source_open)
            source.records().close();
        source.recordset = {};
        if (source.fields)
            empty_out<DbField>(*source.fields, [](DbField&) {});
        source.fields = {};
    });
    pro.sources = make_ref<Collection>();
    empty_out<platform::Connection>(*pro.connections, [](platform::Connection& connection) {
        if (connection.state() == platform::kStateOpen)
            connection.close();
    });
}

} // namespace tabrixdb
