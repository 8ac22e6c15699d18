#pragma once

#include "automation/object.h"
#include "platform/data.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace tabrixdb {

// What a form is for: each mode has a control of its own.
enum class FormMode : unsigned char { Edit, Add, Filter };

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
    std::string default_value;
    Variant item_list;
    bool open_list = false; // a script of the page adds to its list, choice or boxes: any value may be posted
    std::string date_caption = "Date";
    Variant check_list;
    std::int16_t required = 0; // 0 no, -1 yes, n: at least n characters
    std::int32_t min = 0;
    std::int32_t max = 0;

    // The control of a mode, still with its placeholders; "NORMAL": none chosen.
    const std::string& view(FormMode mode) const noexcept { return control(mode).html; }

    // The kind of that control, as find_view_kind() gives it; "" for none, and for HTML of the page's own.
    const std::string& view_kind(FormMode mode) const noexcept { return control(mode).kind; }

    // Chooses a mode's control by a view specification ("TEXT;30;;R,50"), which is rendered at once and not
    // kept; rendering may set other members.
    void set_view(FormMode mode, std::string_view specification);

    // Takes HTML as the control of a mode, which stays of its kind.
    void keep_view(FormMode mode, std::string html) { control(mode).html = std::move(html); }

    // What the browser posted for this column; `row` 0: a form of one record, else the row's control.
    std::string request_value(std::int16_t& row) const;

private:
    struct Control {
        std::string html = "NORMAL";
        std::string kind;
    };

    Control& control(FormMode mode) noexcept { return controls_[static_cast<std::size_t>(mode)]; }

    const Control& control(FormMode mode) const noexcept { return controls_[static_cast<std::size_t>(mode)]; }

    template <FormMode kMode>
    const std::string& get_view() const {
        return view(kMode);
    }

    template <FormMode kMode>
    void put_view(const std::string& specification) {
        set_view(kMode, specification);
    }

    template <FormMode kMode>
    const std::string& get_kind() const {
        return view_kind(kMode);
    }

    template <FormMode kMode>
    void put_kind(const std::string& kind) {
        control(kMode).kind = kind;
    }

    std::array<Control, 3> controls_;
};

// The name under which a column posts: every blank is "_"; in a form of several rows "_" and the row follow.
std::string posted_name(std::string_view column, std::int16_t row = 0);

} // namespace tabrixdb
