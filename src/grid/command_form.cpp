#include "grid/command_form.h"

#include "engine/report.h"

namespace tabrixdb {

std::string command_form(Pro& pro, const std::string& grid) {
    return guard("Get GridCommand Form", [&] {
        if (pro.submit_handler.empty())
            pro.submit_handler = "verify_form(this);";
        const auto hidden = [&](std::string_view suffix, std::string_view value) {
            return "<input type=\"hidden\" name=\"" + grid + std::string(suffix) + "\" value=\"" +
                   std::string(value) + "\">\r\n";
        };
        return "\r\n<script language='javascript'>\r\nuploadhandler = '" + pro.upload_handler +
               "' ;\r\n</script>\r\n" + "<form name=\"" + grid + "\" method=\"post\"  >\r\n" +
               hidden("_command", "") + hidden("_params", "") + hidden("_anchor", pro.buttons_goto_anchor);
    });
}

} // namespace tabrixdb
