#include "engine/pro.h"

#include "automation/error.h"
#include "automation/text.h"

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
    for (const std::string_view part : split(command.parameters, ';'))
        command.parts.emplace_back(part);
    return command;
}

void Pro::trace(std::string_view text, std::string_view end) const {
    if (debug_mode)
        response().write("<pre> " + std::string(text) + std::string(end) + "</pre><br>");
}

} // namespace tabrixdb
