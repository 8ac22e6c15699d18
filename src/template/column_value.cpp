#include "template/column_value.h"

namespace tabrixdb {

namespace {

constexpr std::string_view kBinary = "[Binary Content]";

bool is_long_binary(const platform::Column& column) {
    return (column.attributes & platform::kFieldLong) != 0 &&
           column.type == platform::data_type::kLongVarBinary;
}

} // namespace

ColumnValue::ColumnValue(const DbSource& source, std::size_t column)
    : source_(source),
      column_(column),
      field_(&source.field_of(source.records().columns()[column].name)),
      format_(field_->format),
      binary_(is_long_binary(source.records().columns()[column])) {}

void ColumnValue::append(std::string& out) const {
    if (format_.empty()) {
        append_plain(out);
    } else if (binary_) {
        format_.append(out, Variant(kBinary));
    } else {
        const Variant value = source_.records().value(column_);
        format_.append(out, value.is_null() ? Variant("") : value); // Null is formatted as the empty text
    }
}

void ColumnValue::append_plain(std::string& out) const {
    if (binary_)
        out += kBinary;
    else
        source_.records().append_value(column_, out);
}

} // namespace tabrixdb
