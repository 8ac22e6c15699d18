#include "template/record_content.h"

#include "engine/report.h"
#include "template/offers.h"

namespace tabrixdb {

RecordContent::RecordContent(Pro& pro, const DbSource& source, NestedGrids& nested) {
    if (std::string query = source.records().source(); !buttons_in(query).empty())
        query_ = std::move(query);
    const std::size_t count = source.records().columns().size();
    values_.reserve(count);
    for (std::size_t i = 0; i < count; ++i)
        values_.emplace_back(source, i);
    templates_.resize(count);
    for (std::size_t i = 0; i < count; ++i)
        if (const std::string& content = values_[i].field().content; !content.empty())
            templates_[i].emplace(content, i, values_, pro, nested);
}

void RecordContent::append(std::string& out, std::size_t column, std::int16_t row, HeldValues* held) {
    guard("ParseContent", [&] {
        if (templates_[column])
            templates_[column]->append(out, row, held);
        else
            append_plain(out, column, held);
    });
}

void RecordContent::append_plain(std::string& out, std::size_t column, HeldValues* held) const {
    const ColumnValue& value = values_[column];
    if (!held)
        return value.append(out);
    std::string text;
    value.append(text);
    out += brings_buttons(column) ? held->hold_result(std::move(text), query_)
                                  : held->hold({std::move(text), value.name()});
}

} // namespace tabrixdb
