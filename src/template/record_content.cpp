#include "template/record_content.h"

#include "engine/report.h"
#include "template/offers.h"

namespace tabrixdb {

namespace {

// The texts between the quotes of a query that have buttons in them.
std::vector<std::string> literals_with_buttons(std::string_view query) {
    std::vector<std::string> found;
    for (std::size_t at = 0; (at = query.find_first_of("'\"", at)) < query.size();) {
        const char quote = query[at++];
        std::string text;
        while (at < query.size() &&
               (query[at] != quote || (at + 1 < query.size() && query[at + 1] == quote))) {
            at += query[at] == quote;
            text += query[at++];
        }
        ++at;
        if (!buttons_in(text).empty())
            found.push_back(std::move(text));
    }
    return found;
}

} // namespace

RecordContent::RecordContent(Pro& pro, const DbSource& source, NestedGrids& nested) {
    if (const std::string query = source.records().source(); !buttons_in(query).empty())
        literals_ = literals_with_buttons(query);
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
    out += brings_buttons(column) ? held->hold_result(text, code_in(text))
                                  : held->hold({std::move(text), value.name()});
}

// The query's own texts that stand whole in a value which it has made; none where a stored value of the
// record could have brought them.
std::string RecordContent::code_in(std::string_view text) const {
    std::string stored;
    for (const ColumnValue& value : values_)
        if (!value.is_computed())
            value.append_plain(stored);
    std::string code;
    if (HeldValues::has_signs(stored))
        return code;
    for (const std::string& literal : literals_)
        if (text.find(literal) != text.npos)
            code += literal;
    return code;
}

} // namespace tabrixdb
