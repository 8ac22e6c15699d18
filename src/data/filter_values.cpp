#include "data/filter_values.h"

#include "engine/pro.h"
#include "engine/report.h"

namespace tabrixdb {

namespace {

std::string quoted(const std::string& value, const platform::Column& column) {
    switch (platform::type_class(column.type)) {
    case platform::TypeClass::Text:
        return "'" + value + "'";
    case platform::TypeClass::Date:
        return "#" + value + "#";
    case platform::TypeClass::Number:
        break;
    }
    return value;
}

} // namespace

std::string filter_form_values(const DbSource& source) {
    return guard("Get Filter Form Values", [&] {
        std::string lead, joined;
        for (const platform::Column& column : source.records().columns()) {
            const std::string name = posted_name(column.name);
            const std::string value = read_control(request(), name);
            if (value.empty())
                continue;
            const std::string clause = "[" + column.name + "] " +
                                       read_control(request(), name + "_operator") + " " +
                                       quoted(value, column) + " ";
            if (const std::string connective = read_control(request(), name + "_andor"); connective.empty())
                lead = clause;
            else
                joined += " " + connective + " " + clause;
        }
        return lead + joined;
    });
}

} // namespace tabrixdb
