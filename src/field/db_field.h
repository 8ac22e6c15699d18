#pragma once

#include "automation/object.h"
#include "platform/data.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace tabrixdb {

// How one column is presented: captions, constraints, and for each form mode the HTML of its input control.
// A page creates its own or takes the one that a source made for the column.
class DbField final : public Object {
public:
    static constexpr std::string_view kProgramId = "TabrixDb.DbField";

    const ClassInfo& class_info() const override;

    std::string format;  // display format of values; empty: as they are
    std::string content; // content template; empty: the plain value
    std::string caption; // empty: the column's name
    std::string upload_caption = "Upload";
    std::string upload_db_caption = "Upload";
    Ref<platform::Connection> connection; // for lookup lists
    bool can_be_null = false;
    bool updatable = false;
    std::string name;
    std::string edit_view_type; // the kind of control of each mode
    std::string add_view_type;
    std::string filter_view_type;
    std::string default_value;
    Variant item_list;
    std::string date_caption = "Date";
    Variant check_list;
    std::int16_t required = 0; // 0 no, -1 yes, n: at least n characters
    std::int32_t min = 0;
    std::int32_t max = 0;

    // The control of each mode, still with its placeholders; "NORMAL": none chosen. Assigning a view
    // specification ("TEXT;30;;R,50") renders it at once; the specification itself is not kept.
    const std::string& view_edit() const noexcept { return edit_view_; }

    const std::string& view_add() const noexcept { return add_view_; }

    const std::string& view_filter() const noexcept { return filter_view_; }

    void set_view_edit(const std::string& specification) { set_view("Edit", specification); }

    void set_view_add(const std::string& specification) { set_view("Add", specification); }

    void set_view_filter(const std::string& specification) { set_view("Filter", specification); }

    // Parses a specification, renders it, and stores the control and its kind for the mode ("Edit", "Add",
    // "Filter" in any case; any other mode stores nothing, but rendering has its side effects).
    void set_view(std::string_view mode, std::string_view specification);

    // What the browser posted for this column; `row` 0: a form of one record, else the row's control.
    std::string request_value(std::int16_t& row) const;

private:
    std::string edit_view_ = "NORMAL";
    std::string add_view_ = "NORMAL";
    std::string filter_view_ = "NORMAL";
};

// The name under which a column posts: every blank is "_"; in a form of several rows "_" and the row follow.
std::string posted_name(std::string_view column, std::int16_t row = 0);

} // namespace tabrixdb
