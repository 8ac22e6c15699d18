#include "server/command_line.h"

#include <iostream>
#include <string_view>
#include <vector>

int main(int count, char** values) {
    const std::vector<std::string_view> arguments(values + 1, values + count);
    return tabrixdb::server::run_command(arguments, std::cout, std::cerr);
}
