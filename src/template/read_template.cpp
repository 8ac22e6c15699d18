#include "template/read_template.h"

#include "automation/text.h"
#include "engine/report.h"
#include "platform/host.h"

namespace tabrixdb {

void strip_body(std::string& text) {
    const std::size_t tag = find_ignore_case(text, "<body");
    const std::size_t end = tag == std::string::npos ? tag : text.find('>', tag);
    if (end == std::string::npos)
        return; // without an opening tag the closing one means nothing
    text.erase(0, end + 1);
    if (const std::size_t close = find_ignore_case(text, "</body>"); close != std::string::npos)
        text.resize(close);
}

std::string read_template(std::string_view path, bool strip) {
    return guard("Read Template Function", [&]() -> std::string {
        platform::FileSystem& files = platform::Host::current().file_system();
        if (!files.file_exists(path)) {
            report({"", "File " + html_encode(path) + " Not Found", "", "ReadTemplate"});
            return {};
        }
        std::string text = files.read_text(path);
        if (strip)
            strip_body(text);
        return text;
    });
}

} // namespace tabrixdb
