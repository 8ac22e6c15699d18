#include "grid/validation.h"

namespace tabrixdb {

void append_required(std::string& validation, const std::string& grid, const DbField& field,
                     std::int16_t row) {
    if (field.required != 0)
        validation += "document." + grid + "." + posted_name(field.name, row) +
                      ".required=" + std::to_string(field.required) + ";\r\n";
}

std::string validation_script(const std::string& grid, const std::string& validation) {
    return "<script language=javascript>\r\nfunction " + grid + "_validate() {\r\n" + validation +
           "}\r\n</script>\r\n";
}

} // namespace tabrixdb
