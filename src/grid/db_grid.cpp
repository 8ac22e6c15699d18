#include "grid/db_grid.h"

#include "automation/member.h"

namespace tabrixdb {

const ClassInfo& DbGrid::class_info() const {
    static const ClassInfo info("DbGrid", kProgramId,
                                {
                                    field<&DbGrid::content>("Content").as_default(),
                                    field<&DbGrid::rows>("ROW"),
                                    field<&DbGrid::row_increment>("RowInc"),
                                    field<&DbGrid::sort>("Sort"),
                                    field<&DbGrid::sort_order>("SortOrder"),
                                    field<&DbGrid::source>("Source"),
                                    field<&DbGrid::row_template>("Template"),
                                    field<&DbGrid::header_template>("Header_Template"),
                                    field<&DbGrid::footer_template>("Footer_Template"),
                                    field<&DbGrid::grid_mode>("GridMode"),
                                });
    return info;
}

} // namespace tabrixdb
