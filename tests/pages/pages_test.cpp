// Runs the .steps files of this folder: each is a visit to the pages of site/, which are run by the real page
// runner on a real database. A step is
//
//   > PATH[?QUERY] [FORM]  a request; with FORM (url-encoded, blanks as "+") it is posted
//                          ("name=@" in it is the hidden field of the last page)
//   2> PATH ...            the same from a second browser
//   sql STATEMENT          changes the database
//   TEXT                   what the page writes, blanks at both ends left out, or lines of
//   ~ TEXT                 what it contains
//   !~ TEXT                what it does not contain
//   = FILE                 the file that it equals byte for byte, line breaks taken as LF
//   ? QUERY => ROWS        what the database holds then: "a|b c|d", null as "-"

#include "automation/text.h"
#include "tests/pages/browser.h"

#include <vector>

namespace {

namespace fs = std::filesystem;
using namespace tabrixdb;
using namespace tabrixdb::testing_pages;

std::string trimmed(const std::string& text) {
    const std::size_t first = text.find_first_not_of(" \r\n");
    return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(" \r\n") - first + 1);
}

struct Step {
    int browser = 0;
    std::string path, form;
    std::string sql;
    std::vector<std::string> expected;
    int line = 0;
};

std::vector<Step> steps_of(const fs::path& file) {
    std::vector<Step> steps;
    std::ifstream lines(file);
    int number = 0;
    for (std::string line; std::getline(lines, line);) {
        ++number;
        const bool second = line.starts_with("2> ");
        if (second || line.starts_with("> ")) {
            const std::string request = line.substr(second ? 3 : 2);
            const std::size_t blank = request.find(' ');
            steps.push_back({.browser = second,
                             .path = request.substr(0, blank),
                             .form = blank == std::string::npos ? "" : request.substr(blank + 1),
                             .sql = {},
                             .expected = {},
                             .line = number});
        } else if (line.starts_with("sql ")) {
            steps.push_back({0, {}, {}, line.substr(4), {}, number});
        } else if (!line.empty() && line[0] != '#') {
            steps.back().expected.push_back(line);
        }
    }
    return steps;
}

void check(const SiteCopy& site, const Step& step, const std::string& body) {
    ASSERT_FALSE(step.expected.empty()) << "a step without an expectation";
    for (const std::string& expected : step.expected) {
        if (expected.starts_with("~ "))
            EXPECT_NE(body.find(expected.substr(2)), std::string::npos) << "not in: " << body;
        else if (expected.starts_with("!~ "))
            EXPECT_EQ(body.find(expected.substr(3)), std::string::npos) << "in: " << body;
        else if (expected.starts_with("= "))
            EXPECT_EQ(replace_all(body, "\r\n", "\n"), read_file(kFolder / expected.substr(2)));
        else if (const std::size_t arrow = expected.find(" => "); expected.starts_with("? "))
            EXPECT_EQ(site.query(expected.substr(2, arrow - 2)), expected.substr(arrow + 4));
        else
            EXPECT_EQ(trimmed(body), expected);
    }
}

class Pages : public testing::TestWithParam<fs::path> {};

TEST_P(Pages, AnswerAsExpected) {
    const SiteCopy copy;
    asp::Site site(copy.root(), {}, [](std::string_view) {});
    Browser browsers[] = {Browser(site), Browser(site)};
    for (const Step& step : steps_of(GetParam())) {
        SCOPED_TRACE(GetParam().filename().string() + ":" + std::to_string(step.line) + " " + step.form);
        if (step.sql.empty())
            check(copy, step, browsers[step.browser].ask(step.path, step.form));
        else
            copy.query(step.sql);
    }
}

std::vector<fs::path> cases() {
    std::vector<fs::path> found;
    for (const fs::directory_entry& entry : fs::directory_iterator(kFolder))
        if (entry.path().extension() == ".steps")
            found.push_back(entry.path());
    return found;
}

INSTANTIATE_TEST_SUITE_P(Folder, Pages, testing::ValuesIn(cases()),
                         [](const auto& tested) { return tested.param.stem().string(); });

} // namespace
