#include "tests/vbscript/test_environment.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

// Runs the scripts of the folder `cases`.
//
// A .vbs file holds its expectations: the lines that begin with '> are its output, line by line.
// A .errors file is a row of scripts that fail, each under a head line
//   === NUMBER LINE:COLUMN TEXT
// with what the error has to say. A script that wrote something before the error has its output in '> lines.
namespace tabrixdb::vbscript {
namespace {

struct Case {
    std::string name;
    std::string script;
    std::string error; // the head line without its signs; empty: none expected
};

std::ostream& operator<<(std::ostream& out, const Case& shown) {
    return out << shown.name;
}

std::vector<std::string> lines_of(const std::filesystem::path& path) {
    std::ifstream file(path);
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);)
        lines.push_back(line);
    return lines;
}

std::vector<Case> cases() {
    std::vector<Case> all;
    for (const auto& entry : std::filesystem::directory_iterator(TABRIXDB_TEST_CASES "/cases")) {
        const std::string stem = entry.path().stem().string();
        if (entry.path().extension() == ".vbs")
            all.push_back({stem, "", ""});
        for (const std::string& line : lines_of(entry.path())) {
            if (entry.path().extension() == ".errors" && line.starts_with("=== ")) {
                const auto number = std::to_string(std::ranges::count_if(
                    all, [&](const Case& other) { return other.name.starts_with(stem + "_"); }));
                all.push_back({stem + "_" + number, "", line.substr(4)});
            } else {
                all.back().script += line + "\n";
            }
        }
    }
    std::ranges::sort(all, {}, &Case::name);
    return all;
}

std::string expected_output(const std::string& script) {
    std::string expected;
    std::istringstream lines(script);
    for (std::string line; std::getline(lines, line);)
        if (line.starts_with("'>"))
            expected += (line.starts_with("'> ") ? line.substr(3) : line.substr(2)) + "\n";
    return expected;
}

std::string described(const ScriptError& error) {
    return std::to_string(error.number()) + " " + std::to_string(error.position.line) + ":" +
           std::to_string(error.position.column) + " " + error.description();
}

class ScriptCase : public testing::TestWithParam<Case> {};

TEST_P(ScriptCase, behaves) {
    const Case& wanted = GetParam();
    Interrupt interrupt;
    TestEnvironment environment(interrupt);
    std::string error;
    {
        Machine machine(environment, interrupt, {.recursion = 100, .steps = 100000});
        try {
            machine.run(compile(source_of(wanted.script)));
        } catch (const ScriptError& raised) {
            error = described(raised);
        }
    }
    EXPECT_EQ(error, wanted.error);
    EXPECT_EQ(environment.out, expected_output(wanted.script));
    EXPECT_NE(interrupt.reason(), Interrupt::Reason::TimedOut);
}

INSTANTIATE_TEST_SUITE_P(Cases, ScriptCase, testing::ValuesIn(cases()),
                         [](const auto& tested) { return tested.param.name; });

} // namespace
} // namespace tabrixdb::vbscript
