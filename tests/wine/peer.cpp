#include "tests/wine/peer.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace tabrixdb {

std::vector<std::string> ask_peer(const std::string& program, const std::vector<std::string>& lines) {
    // with-wine gives each run a folder of its own.
    const char* const home = std::getenv("WINEPREFIX");
    if (!home)
        throw std::runtime_error("tests of Wine run within tests/wine/with-wine");
    const std::string questions = std::string(home) + "/questions", answers = std::string(home) + "/answers";
    std::ofstream out(questions, std::ios::binary);
    for (const std::string& line : lines)
        out << line << '\n';
    out.close();
    const std::string command =
        "wine " TABRIXDB_WINE_PEERS "/" + program + " <'" + questions + "' >'" + answers + "'";
    const int status = std::system(command.c_str());
    std::vector<std::string> answered;
    std::ifstream in(answers, std::ios::binary);
    for (std::string line; answered.size() < lines.size() && std::getline(in, line);)
        answered.push_back(line);
    if (status != 0 || answered.size() != lines.size())
        throw std::runtime_error(program + " failed after line " + std::to_string(answered.size()) + ": " +
                                 lines[std::min(answered.size(), lines.size() - 1)]);
    return answered;
}

} // namespace tabrixdb
