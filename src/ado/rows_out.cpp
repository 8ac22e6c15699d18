#include "ado/result.h"
#include "ado/values.h"
#include "automation/array.h"
#include "automation/text.h"

#include <algorithm>
#include <array>

// Many rows at once: GetString and GetRows. Both start at the current record and leave the one behind the
// last row they gave current.

namespace tabrixdb::ado {

std::string Result::get_string(std::int32_t rows, std::string_view column_delimiter,
                               std::string_view row_delimiter, std::string_view null_text) {
    std::string out;
    const auto& columns = infos();
    settle();
    for (std::int32_t row = 0; (rows < 0 || row < rows) && place_ == Place::Row; ++row) {
        for (std::size_t i = 0; i < columns.size(); ++i) {
            if (i)
                out.append(column_delimiter);
            const Cell value = cell(i);
            if (value.is_null())
                out.append(null_text);
            else
                append_text(out, value, columns[i].column.type);
        }
        out.append(row_delimiter);
        if (out.size() > kMaxTextBytes)
            throw Error(14);
        move(1);
    }
    return out;
}

Variant Result::get_rows(std::int32_t rows, const std::vector<std::size_t>& wanted) {
    const auto& columns = infos();
    settle();
    if (place_ != Place::Row)
        throw error(Code::NoCurrentRecord, kRecordsetSource);
    std::vector<Variant> values;
    std::int32_t count = 0;
    for (; (rows < 0 || count < rows) && place_ == Place::Row; ++count) {
        for (const std::size_t column : wanted)
            values.push_back(to_variant(cell(column), columns[column].column.type));
        if (values.size() > Array::kMaxElements)
            throw Error(7);
        move(1);
    }
    // The first subscript, the field, varies fastest: the values lie as the array wants them.
    const std::array<std::int32_t, 2> bounds = {static_cast<std::int32_t>(wanted.size()) - 1, count - 1};
    auto array = make_ref<Array>(bounds, false);
    std::ranges::move(values, array->elements().begin());
    return Variant(std::move(array));
}

} // namespace tabrixdb::ado
