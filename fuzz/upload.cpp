// Posts a form to the page that takes uploads. The input is the query string, a line, the content type, a
// line, and the body.
#include "asp/page.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>

#include <unistd.h>

namespace {

using namespace tabrixdb;
namespace fs = std::filesystem;

constexpr std::string_view kHandler = "/TabrixDb/file_upload.asp";

void check(bool holds) {
    if (!holds)
        std::abort();
}

// The site's folder, gone at the end.
class Folder {
public:
    Folder() {
        std::string name = (fs::temp_directory_path() / "tabrixdb-fuzz-XXXXXX").string();
        root = mkdtemp(name.data());
        fs::create_directory(root / "TabrixDb");
        for (const char* page : {"file_upload.asp", "upload_settings.asp", "files.asp"})
            fs::copy_file(fs::path(TABRIXDB_SITE) / "TabrixDb" / page, root / "TabrixDb" / page);
    }

    ~Folder() { fs::remove_all(root); }

    fs::path root;
};

// Files beside the three pages; they are checked and deleted.
std::size_t take_files(const fs::path& root) {
    std::vector<fs::path> found;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root))
        if (entry.is_regular_file() && entry.path().extension() != ".asp")
            found.push_back(entry.path());
    for (const fs::path& path : found) {
        const std::string folder = path.parent_path().string().substr(root.string().size());
        const std::string name = path.filename().string();
        const auto is_safe = [](unsigned char c) {
            return c < 0x80 && (std::isalnum(c) || c == '-' || c == '_' || c == '.');
        };
        check(folder == "/TabrixDb/temp" || folder == "/uploads" || folder.starts_with("/uploads/"));
        check(std::ranges::all_of(name, is_safe) && name.size() < 150 && name[0] != '.');
        check(std::ranges::count(name, '.') == (folder == "/TabrixDb/temp" ? 2 : 1));
        fs::remove(path);
    }
    return found.size();
}

std::string next_line(std::string_view& text) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    std::string line(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
    return line;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Folder folder;
    static asp::Site site(folder.root, {}, [](std::string_view) {});
    std::string_view input(reinterpret_cast<const char*>(data), size);
    auto request = std::make_shared<asp::HttpRequest>();
    request->method = "POST";
    request->path = kHandler;
    request->query = next_line(input);
    request->headers = {{"Content-Type", next_line(input)}, {"X-TabrixDb", "upload"}};
    request->body = input;
    Interrupt interrupt;
    const asp::HttpResponse answer = asp::Page(site, request, std::string(kHandler), {}, interrupt).run();
    check(answer.status != 500 && answer.body.starts_with('{') && answer.body.ends_with('}'));
    check(take_files(folder.root) == (answer.body.starts_with("{\"file\"") ? 1U : 0U));
    return 0;
}
