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
    const std::string name = std::string(grid) + "_command", parameters = std::string(grid) + "_params";
    GridCommand command;
    command.word = request.form_value(name).value_or("");
    command.posted = !command.word.empty();
    if (!command.posted)
        command.word = request.query_value(name).value_or("");
    if (!command.word.empty())
        command.parameters =
            (command.posted ? request.form_value(parameters) : request.query_value(parameters)).value_or("");
    for (const std::string_view part : split(command.parameters, ';'))
        command.parts.emplace_back(part);
    return command;
}

std::string read_command_word(platform::Request& request, std::string_view grid) {
    return read_command(request, grid).word;
}

std::string read_control(platform::Request& request, std::string_view name) {
    const std::optional<std::string> posted = request.form_value(name);
    return posted ? *posted : request.query_value(name).value_or("");
}

void Pro::trace(std::string_view text, std::string_view end) const {
    if (debug_mode)
        response().write("<pre> " + std::string(text) + std::string(end) + "</pre><br>");
}

} // namespace tabrixdb
