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
            property<&DbField::get_kind<FormMode::Edit>, &DbField::put_kind<FormMode::Edit>>("EditViewType"),
            property<&DbField::get_kind<FormMode::Add>, &DbField::put_kind<FormMode::Add>>("AddViewType"),
            property<&DbField::get_kind<FormMode::Filter>, &DbField::put_kind<FormMode::Filter>>(
                "FilterViewType"),
            field<&DbField::default_value>("Default_value"),
            field<&DbField::item_list>("ItemList"),
            field<&DbField::open_list>("OpenList"),
            field<&DbField::date_caption>("DateCaption"),
            field<&DbField::check_list>("CheckList"),
            field<&DbField::required>("Required"),
            field<&DbField::min>("Min"),
            field<&DbField::max>("Max"),
            property<&DbField::get_view<FormMode::Edit>, &DbField::put_view<FormMode::Edit>>("ViewEdit"),
            property<&DbField::get_view<FormMode::Add>, &DbField::put_view<FormMode::Add>>("ViewADD"),
            property<&DbField::get_view<FormMode::Filter>, &DbField::put_view<FormMode::Filter>>(
                "ViewFilter"),
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

void DbField::set_view(FormMode mode, std::string_view specification) {
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
    control(mode) = {std::move(view), std::move(kind)};
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
