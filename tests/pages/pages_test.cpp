// Runs the .steps files of this folder: each is one browser's visit to the pages of site/, which are run by
// the real page runner on a real database. A step is
//
//   > PATH[?QUERY] [FORM]  a request; with FORM (url-encoded, blanks as "+") it is posted
//   TEXT               what the page writes, blanks at both ends left out, or lines of
//   ~ TEXT             what it contains
//   !~ TEXT            what it does not contain
//   = FILE             the file that it equals byte for byte (line breaks are CR LF in the page, LF in the
//   file)

#include "asp/page.h"

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <sqlite3.h>

namespace {

namespace fs = std::filesystem;
using namespace tabrixdb;

const fs::path kFolder = TABRIXDB_TEST_CASES;

std::string read_file(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

std::string trimmed(const std::string& text) {
    const std::size_t first = text.find_first_not_of(" \r\n");
    return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(" \r\n") - first + 1);
}

// A copy of the site with a database of its own, gone at the end.
class SiteCopy {
public:
    SiteCopy() {
        std::string name = (fs::temp_directory_path() / "tabrixdb-pages-XXXXXX").string();
        root_ = mkdtemp(name.data());
        fs::copy(kFolder / "site", root_, fs::copy_options::recursive);
        sqlite3* database = nullptr;
        EXPECT_EQ(sqlite3_open((root_ / "shop.db").c_str(), &database), SQLITE_OK);
        char* message = nullptr;
        sqlite3_exec(database, read_file(kFolder / "shop.sql").c_str(), nullptr, nullptr, &message);
        EXPECT_EQ(message, nullptr) << message;
        sqlite3_free(message);
        sqlite3_close(database);
    }

    ~SiteCopy() { fs::remove_all(root_); }

    const fs::path& root() const { return root_; }

private:
    fs::path root_;
};

// One browser: keeps the session's cookie.
class Browser {
public:
    explicit Browser(asp::Site& site) : site_(site) {}

    std::string ask(const std::string& path, const std::string& form) {
        auto request = std::make_shared<asp::HttpRequest>();
        request->path = path.substr(0, path.find('?'));
        if (request->path.size() < path.size())
            request->query = path.substr(request->path.size() + 1);
        request->headers = {{"Host", "site.test"}};
        if (!session_.empty())
            request->headers.push_back({"Cookie", std::string(asp::kSessionCookie) + "=" + session_});
        if (!form.empty()) {
            request->method = "POST";
            request->headers.push_back({"Content-Type", "application/x-www-form-urlencoded"});
            request->body = form;
        }
        Interrupt interrupt;
        asp::HttpResponse response = asp::Page(site_, request, request->path, lease(), interrupt).run();
        keep_cookie(response);
        return response.body;
    }

private:
    asp::SessionLease lease() {
        const auto session = session_.empty() ? nullptr : site_.sessions.find(session_);
        if (!session)
            return {};
        session->turnstile.enter([] {});
        return asp::SessionLease(site_.sessions, session);
    }

    void keep_cookie(const asp::HttpResponse& response) {
        const std::string start = std::string(asp::kSessionCookie) + "=";
        for (const asp::Header& header : response.headers)
            if (header.value.starts_with(start))
                session_ = header.value.substr(start.size(), header.value.find(';') - start.size());
    }

    asp::Site& site_;
    std::string session_;
};

struct Step {
    std::string path, form;
    std::vector<std::string> expected;
    int line = 0;
};

std::vector<Step> steps_of(const fs::path& file) {
    std::vector<Step> steps;
    std::ifstream lines(file);
    int number = 0;
    for (std::string line; std::getline(lines, line);) {
        ++number;
        if (line.starts_with("> ")) {
            const std::size_t blank = line.find(' ', 2);
            steps.push_back({line.substr(2, blank - 2),
                             blank == std::string::npos ? "" : line.substr(blank + 1),
                             {},
                             number});
        } else if (!line.empty() && line[0] != '#') {
            steps.back().expected.push_back(line);
        }
    }
    return steps;
}

void check(const Step& step, const std::string& body) {
    ASSERT_FALSE(step.expected.empty()) << "a step without an expectation";
    for (const std::string& expected : step.expected) {
        if (expected.starts_with("~ "))
            EXPECT_NE(body.find(expected.substr(2)), std::string::npos) << "not in: " << body;
        else if (expected.starts_with("!~ "))
            EXPECT_EQ(body.find(expected.substr(3)), std::string::npos) << "in: " << body;
        else if (expected.starts_with("= "))
            EXPECT_EQ(replace_all(body, "\r\n", "\n"), read_file(kFolder / expected.substr(2)));
        else
            EXPECT_EQ(trimmed(body), expected);
    }
}

class Pages : public testing::TestWithParam<fs::path> {};

TEST_P(Pages, AnswerAsExpected) {
    const SiteCopy copy;
    asp::Site site(copy.root(), {}, [](std::string_view) {});
    Browser browser(site);
    for (const Step& step : steps_of(GetParam())) {
        SCOPED_TRACE(GetParam().filename().string() + ":" + std::to_string(step.line) + " " + step.form);
        check(step, browser.ask(step.path, step.form));
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
