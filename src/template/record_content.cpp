#include "template/record_content.h"

#include "engine/report.h"

namespace tabrixdb {

RecordContent::RecordContent(Pro& pro, const DbSource& source, NestedGrids& nested) {
    const std::size_t count = source.records().columns().size();
    values_.reserve(count);
    for (std::size_t i = 0; i < count; ++i)
        values_.emplace_back(source, i);
    templates_.resize(count);
    for (std::size_t i = 0; i < count; ++i)
        if (const std::string& content = values_[i].field().content; !content.empty())
            templates_[i].emplace(content, i, values_, pro, nested);
}

void RecordContent::append(std::string& out, std::size_t column, std::int16_t row) {
    guard("ParseContent", [&] {
        if (templates_[column])
            templates_[column]->append(out, row);
        else
            values_[column].append(out);
    });
}

} // namespace tabrixdb
