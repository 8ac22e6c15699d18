// Runs the .steps files of this folder: each is a visit to the pages of site/, which are run by the real page
// runner on a real database. A step is
//
//   > PATH[?QUERY] [FORM]  a request; with FORM (url-encoded, blanks as "+") it is posted
//                          ("name=@" in it is the hidden field of the last page)
//   2> PATH ...            the same from a second browser
//   sql STATEMENT          changes the database
//   site WORDS             the site's settings, before any request: "log" for visitors who are not told of
//   failures,
//                          "changes" for a log of changes, "share" for exports that are everybody's
//   TEXT                   what the page writes, blanks at both ends left out, or lines of
//   ~ TEXT                 what it contains
//   !~ TEXT                what it does not contain
//   = FILE                 the file that it equals byte for byte, line breaks taken as LF
//   ? QUERY => ROWS        what the database holds then: "a|b c|d", null as "-"
//   % STATUS               the status of the answer
//   @ TEXT                 what the request's lines in the log contain
//   !@ TEXT                what they do not contain

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
    int status = 0; // 0: any
    std::vector<std::string> expected;
    int line = 0;
};

constexpr std::string_view kSite = "site ";

asp::PageSettings settings_of(const fs::path& file) {
    const std::string text = "\n" + read_file(file);
    const std::size_t at = text.find("\n" + std::string(kSite));
    const std::string words = at == std::string::npos ? "" : text.substr(at, text.find('\n', at + 1) - at);
    return {.tell_visitors = words.find(" log") == std::string::npos,
            .log_changes = words.find(" changes") != std::string::npos,
            .share_exports = words.find(" share") != std::string::npos};
}

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
            steps.push_back({.path = {}, .form = {}, .sql = line.substr(4), .expected = {}, .line = number});
        } else if (line.starts_with("% ")) {
            steps.back().status = std::stoi(line.substr(2));
        } else if (!line.empty() && line[0] != '#' && !line.starts_with(kSite)) {
            steps.back().expected.push_back(line);
        }
    }
    return steps;
}

void check(const SiteCopy& site, const Step& step, const std::string& body, const std::string& log) {
    ASSERT_FALSE(step.expected.empty()) << "a step without an expectation";
    for (const std::string& expected : step.expected) {
        if (expected.starts_with("~ "))
            EXPECT_NE(body.find(expected.substr(2)), std::string::npos) << "not in: " << body;
        else if (expected.starts_with("!~ "))
            EXPECT_EQ(body.find(expected.substr(3)), std::string::npos) << "in: " << body;
        else if (expected.starts_with("@ "))
            EXPECT_NE(log.find(expected.substr(2)), std::string::npos) << "not in the log: " << log;
        else if (expected.starts_with("!@ "))
            EXPECT_EQ(log.find(expected.substr(3)), std::string::npos) << "in the log: " << log;
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
    std::string log;
    asp::Site site(copy.root(), settings_of(GetParam()),
                   [&](std::string_view line) { log.append(line).append("\n"); });
    Browser browsers[] = {Browser(site), Browser(site)};
    for (const Step& step : steps_of(GetParam())) {
        SCOPED_TRACE(GetParam().filename().string() + ":" + std::to_string(step.line) + " " + step.form);
        log.clear();
        if (!step.sql.empty()) {
            copy.query(step.sql);
            continue;
        }
        Browser& browser = browsers[step.browser];
        check(copy, step, browser.ask(step.path, step.form), log);
        EXPECT_TRUE(step.status == 0 || browser.status() == step.status) << browser.status();
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
