#include "field/db_field.h"

#include "automation/member.h"
#include "automation/text.h"
#include "engine/page.h"
#include "engine/report.h"
#include "field/views.h"

namespace tabrixdb {

const ClassInfo& DbField::class_info() const {
    static const ClassInfo info(
        "DbField", kProgramId,
        {
            field<&DbField::format>("Format"),
            field<&DbField::content>("Content"),
            field<&DbField::caption>("Caption"),
            field<&DbField::upload_caption>("UploadCaption"),
            field<&DbField::upload_db_caption>("UploadDBCaption"),
            field<&DbField::connection>("Connection"),
            field<&DbField::can_be_null>("CanBeNull"),
            field<&DbField::updatable>("Updatable"),
            field<&DbField::name>("Name"),
            field<&DbField::edit_view_type>("EditViewType"),
            field<&DbField::add_view_type>("AddViewType"),
            field<&DbField::filter_view_type>("FilterViewType"),
            field<&DbField::default_value>("Default_value"),
            field<&DbField::item_list>("ItemList"),
            field<&DbField::date_caption>("DateCaption"),
            field<&DbField::check_list>("CheckList"),
            field<&DbField::required>("Required"),
            field<&DbField::min>("Min"),
            field<&DbField::max>("Max"),
            property<&DbField::view_edit, &DbField::set_view_edit>("ViewEdit"),
            property<&DbField::view_add, &DbField::set_view_add>("ViewADD"),
            property<&DbField::view_filter, &DbField::set_view_filter>("ViewFilter"),
            method<&DbField::request_value>("GetRequest_Value", {{"RowIndex", std::int16_t{0}}}),
        });
    return info;
}

namespace {

std::vector<std::string> elements_of(std::string_view specification) {
    std::vector<std::string> elements;
    for (const std::string_view element : split(specification, ';'))
        elements.emplace_back(element);
    elements[0] = upper(elements[0]);
    return elements;
}

} // namespace

void DbField::set_view(std::string_view mode, std::string_view specification) {
    if (specification.empty())
        specification = "NORMAL";
    const std::vector<std::string> elements = elements_of(specification);
    std::string view;
    std::string kind;
    if (const ViewKind* known = find_view_kind(elements)) {
        view = guard("Class DbField - " + std::string(known->label),
                     [&] { return known->render(*this, elements); });
        kind = known->kind;
    } else if (elements[0] == "NORMAL") {
        view = "NORMAL";
    } else if (elements[0] != "SELECT") {
        view = specification; // the page's own HTML control
    }
    if (equal_ignore_case(mode, "EDIT")) {
        edit_view_ = std::move(view);
        edit_view_type = std::move(kind);
    } else if (equal_ignore_case(mode, "ADD")) {
        add_view_ = std::move(view);
        add_view_type = std::move(kind);
    } else if (equal_ignore_case(mode, "FILTER")) {
        filter_view_ = std::move(view);
        filter_view_type = std::move(kind);
    }
}

std::string DbField::request_value(std::int16_t& row) const {
    return request().value(posted_name(name, row));
}

std::string posted_name(std::string_view column, std::int16_t row) {
    std::string posted = replace_all(column, " ", "_");
    if (row != 0)
        posted += "_" + std::to_string(row);
    return posted;
}

} // namespace tabrixdb
