#pragma once

#include "engine/pro.h"
#include "template/nested_grids.h"

#include <cstdint>
#include <string>

namespace tabrixdb {

// Renders the grids that stand inside a grid's contents, one instance a row. The grid that the page has put
// under the tag's name in the Grid collection says what each is made from; an instance is a grid of its own,
// named by that name, "_" and the row from 1, with its own state in the session.
class NestedGrid final : public NestedGrids {
public:
    // Grids within grids within grids, at most so many.
    static constexpr int kMaxDepth = 8;

    // `depth`: of the grid whose contents these are; the outermost is 0.
    NestedGrid(Pro& pro, int depth) : pro_(pro), depth_(depth) {}

    Ref<DbSource> source_of(const std::string& grid) override;
    // Failures are reported as "Get Dynamic Grid"; being nested deeper than kMaxDepth is one.
    std::string render(const std::string& grid, std::int16_t row) override;

private:
    std::string render_instance(const std::string& grid, const std::string& instance);

    Pro& pro_;
    int depth_;
};

} // namespace tabrixdb
