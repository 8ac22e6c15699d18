#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

namespace fs = std::filesystem;

// The folders of src/ from the ground floor to the hosts. A folder may include its own files and those of
// the folders before it.
const std::vector<std::string> kOrder = {"automation", "platform", "web",     "engine",   "field",
                                         "data",       "blob",     "graph",   "template", "editing",
                                         "grid",       "calendar", "classes", "vbscript", "ado",
                                         "scripting",  "mail",     "asp",     "server",   "com"};

// What a folder may not include although it stands before it.
const std::vector<std::pair<std::string, std::string>> kForbidden = {
    {"vbscript", "platform"}, {"vbscript", "engine"}, {"vbscript", "classes"}, {"ado", "vbscript"},
    {"ado", "engine"},        {"ado", "classes"},     {"scripting", "ado"},    {"scripting", "engine"},
    {"mail", "ado"},          {"mail", "vbscript"},   {"mail", "engine"},      {"mail", "scripting"}};

// Headers of the outside world that have one room each.
const std::vector<std::pair<std::string, std::string>> kOnlyIn = {
    {"windows.h", "com"},       {"sql.h", "ado/odbc"},   {"sqlite3.h", "ado/sqlite"},
    {"microhttpd.h", "server"}, {"curl/curl.h", "mail"}, {"pcre2.h", "scripting"},
    {"sys/socket.h", "server"}};

// What a line includes, or "".
std::string included_by(const std::string& line) {
    constexpr std::string_view kInclude = "#include ";
    if (!line.starts_with(kInclude))
        return {};
    const std::size_t end = line.find_first_of("\">", kInclude.size() + 1);
    return end == std::string::npos ? "" : line.substr(kInclude.size() + 1, end - kInclude.size() - 1);
}

std::ptrdiff_t floor_of(const std::string& folder) {
    return std::find(kOrder.begin(), kOrder.end(), folder) - kOrder.begin();
}

std::string violation(const std::string& file, const std::string& included) {
    for (const auto& [header, room] : kOnlyIn)
        if (included == header && !file.starts_with(room + "/"))
            return "only " + room + "/ may include " + header;
    const std::size_t slash = included.find('/');
    const std::string from = file.substr(0, file.find('/'));
    const std::string to = included.substr(0, slash);
    if (slash == std::string::npos || floor_of(to) == std::ssize(kOrder))
        return {};
    if (floor_of(from) == std::ssize(kOrder))
        return file.find('/') == std::string::npos ? "" : "unknown folder";
    if (floor_of(to) > floor_of(from))
        return "points up";
    if (std::ranges::find(kForbidden, std::pair(from, to)) != kForbidden.end())
        return "must not know " + to + "/";
    return {};
}

TEST(Structure, IncludesPointDown) {
    const fs::path source = TABRIXDB_SOURCE_DIR;
    std::size_t seen = 0;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(source)) {
        if (entry.path().extension() != ".h" && entry.path().extension() != ".cpp")
            continue;
        const std::string file = fs::relative(entry.path(), source).generic_string();
        std::ifstream lines(entry.path());
        for (std::string line; std::getline(lines, line);) {
            const std::string included = included_by(line);
            if (included.empty())
                continue;
            ++seen;
            const std::string why = violation(file, included);
            EXPECT_TRUE(why.empty()) << file << " includes " << included << ": " << why;
        }
    }
    EXPECT_GT(seen, 100u) << "the walk found no sources";
}

} // namespace
