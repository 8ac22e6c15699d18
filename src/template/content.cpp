#include "template/content.h"

#include "engine/report.h"

namespace tabrixdb {

void parse_content(const DbSource& source, std::size_t column, std::string& out) {
    guard("ParseContent", [&] {
        const platform::Column& shape = source.records().columns()[column];
        if ((shape.attributes & platform::kFieldLong) != 0 &&
            shape.type == platform::data_type::kLongVarBinary)
            out += "[Binary Content]";
        else
            source.records().append_value(column, out);
    });
}

} // namespace tabrixdb
