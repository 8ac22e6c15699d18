#include "template/content.h"

#include "engine/report.h"

namespace tabrixdb {

namespace {

bool is_long_binary(const platform::Column& column) {
    return (column.attributes & platform::kFieldLong) != 0 &&
           column.type == platform::data_type::kLongVarBinary;
}

} // namespace

ColumnContent::ColumnContent(const DbSource& source, std::size_t column)
    : source_(source),
      column_(column),
      field_(source.field_of(source.records().columns()[column].name)),
      format_(field_.format),
      binary_(is_long_binary(source.records().columns()[column])) {}

void ColumnContent::append(std::string& out) const {
    guard("ParseContent", [&] {
        platform::Recordset& records = source_.records();
        if (binary_) {
            format_.append(out, Variant("[Binary Content]"));
        } else if (format_.empty()) {
            records.append_value(column_, out);
        } else {
            const Variant value = records.value(column_);
            format_.append(out, value.is_null() ? Variant("") : value); // Null is formatted as the empty text
        }
    });
}

} // namespace tabrixdb
