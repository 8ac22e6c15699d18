// Runs each page of cases/ as the server would. Beside NAME.asp stand
//
//   NAME.out       what it writes (line breaks are CR LF or LF, the last one does not count)
//   NAME.headers   the status, then headers that its response has, a line each
//   NAME.query     its query string;   NAME.form  the body that is posted to it
//   NAME.request   headers of the request, a line each

#include "asp/page.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace tabrixdb::asp {
namespace {

namespace fs = std::filesystem;

const fs::path kCases = fs::path(TABRIXDB_TEST_CASES) / "cases";

std::string read_file(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

std::vector<std::string> lines_of(const fs::path& path) {
    std::vector<std::string> lines;
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);)
        lines.push_back(line);
    return lines;
}

std::string comparable(const std::string& text) {
    std::string plain = replace_all(text, "\r\n", "\n");
    while (plain.ends_with('\n'))
        plain.pop_back();
    return plain;
}

class PageCases : public testing::TestWithParam<std::string> {
protected:
    static fs::path file(const char* extension) { return kCases / (GetParam() + extension); }

    static HttpRequest request() {
        HttpRequest request;
        request.path = "/" + GetParam() + ".asp";
        request.query = read_file(file(".query"));
        if (fs::exists(file(".form"))) {
            request.method = "POST";
            request.body = read_file(file(".form"));
        }
        for (const std::string& line : lines_of(file(".request")))
            request.headers.push_back({line.substr(0, line.find(": ")), line.substr(line.find(": ") + 2)});
        return request;
    }
};

TEST_P(PageCases, WriteWhatIsExpected) {
    Site site(kCases, {.tell_visitors = true}, [](std::string_view) {});
    Interrupt interrupt;
    Page page(site, std::make_shared<HttpRequest>(request()), "/" + GetParam() + ".asp", {}, interrupt);
    const HttpResponse response = page.run();

    ASSERT_TRUE(fs::exists(file(".out")) || fs::exists(file(".headers"))) << "a page without an expectation";
    if (fs::exists(file(".out"))) {
        EXPECT_EQ(comparable(response.body), comparable(read_file(file(".out"))));
    }
    std::vector<std::string> headers = {std::to_string(response.status)};
    for (const Header& header : response.headers)
        headers.push_back(header.name + ": " + header.value);
    for (const std::string& expected : lines_of(file(".headers")))
        EXPECT_NE(std::ranges::find(headers, expected), headers.end()) << expected << "\nin\n"
                                                                       << testing::PrintToString(headers);
}

std::vector<std::string> names() {
    std::vector<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(kCases))
        if (entry.path().extension() == ".asp")
            names.push_back(entry.path().stem().string());
    std::ranges::sort(names);
    return names;
}

INSTANTIATE_TEST_SUITE_P(Folder, PageCases, testing::ValuesIn(names()),
                         [](const auto& name) { return name.param; });

} // namespace
} // namespace tabrixdb::asp
