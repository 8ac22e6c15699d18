#include "engine/pro.h"

#include "automation/error.h"

#include <algorithm>

namespace tabrixdb {

const std::string& GridCommand::part(std::size_t index) const {
    if (index >= parts.size())
        throw Error(kErrorSubscript);
    return parts[index];
}

GridCommand read_command(platform::Request& request, std::string_view grid) {
    GridCommand command;
    command.word = request.value(std::string(grid) + "_command");
    command.parameters = request.value(std::string(grid) + "_params");
    const std::string_view text = command.parameters;
    for (std::size_t at = 0; !text.empty() && at <= text.size();) {
        const std::size_t end = std::min(text.find(';', at), text.size());
        command.parts.emplace_back(text.substr(at, end - at));
        at = end + 1;
    }
    return command;
}

void Pro::trace(std::string_view text) const {
    if (debug_mode)
        response().write("<pre> " + std::string(text) + " </pre><br>");
}

} // namespace tabrixdb
