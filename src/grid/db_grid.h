#pragma once

#include "automation/object.h"
#include "editing/save.h"

#include <string>

namespace tabrixdb {

// A rendered grid and what it was made from. Its Content is the default member, so that a page writes it by
// `Response.Write db.Grid("orders")`.
class DbGrid final : public Object {
public:
    static constexpr std::string_view kProgramId = "TabrixDb.DbGrid";

    const ClassInfo& class_info() const override;

    Text content;
    std::string rows;
    std::string row_increment;
    bool sort = false;
    std::string sort_order;
    std::string source;
    std::string row_template;
    std::string header_template;
    std::string footer_template;
    bool grid_mode = false;

    // What it takes to make it again, and pages do not see.
    std::string fed_by; // the grid whose source it shares; "": it has its own
    bool single_template = false;
    bool made = false; // else a page has added it as a shape for others
    std::string permit;
    EditResult edited; // what came of its command in this request
};

} // namespace tabrixdb
