// A grid over one record, through the real page runner: its template, the content and the control of a
// column, that column's value, the posted command with its parameters, and what else is posted, url-encoded.
// The input is these seven, separated by lines of "====".
#include "asp/encoding.h"
#include "asp/page.h"

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include <sqlite3.h>
#include <unistd.h>

namespace {

using namespace tabrixdb;
namespace fs = std::filesystem;

constexpr std::string_view kPage = R"(<%
Dim db, template, file
Set db = Server.CreateObject("TabrixDb.Pro")
template = Server.MapPath("/template.htm")
Set file = Server.CreateObject("Scripting.FileSystemObject").CreateTextFile(template, True)
file.Write Request.Form("template")
file.Close
db.CreateConnection "c", "Provider=SQLite;Data Source=" & Server.MapPath("/data.db")
db.BarGraph = True
db.CreateSource "s", "select id, a, a_b, ""the c"" from t", "c"
db.CreateSource "lines", "select id from t where id = #~id~#", "c", 3, 3, True
Set file = Server.CreateObject("TabrixDb.DbGrid")
file.Source = "lines"
db.Grid.Add file, "lines"
With db.Source("s").Fields("a")
    .Content = Request.Form("content")
    .ViewEdit = Request.Form("view")
    .ViewADD = Request.Form("view")
End With
db.Source("s").Fields("the c").Default_value = Request.Form("view")
db.GridEditMode = Request.Form("mode")
db.CreateGrid "g", "s", template, "", "", 3
Response.Write db.Grid("g")
db.CleanUp
%>)";

// The site's folder, gone at the end.
class Folder {
public:
    Folder() {
        std::string name = (fs::temp_directory_path() / "tabrixdb-fuzz-XXXXXX").string();
        root = mkdtemp(name.data());
        std::ofstream(root / "grid.asp") << kPage;
        sqlite3_open((root / "data.db").c_str(), &database);
        sqlite3_exec(
            database,
            "create table t (id integer primary key, a varchar(9), a_b integer, \"the c\" text not null)",
            nullptr, nullptr, nullptr);
    }

    ~Folder() {
        sqlite3_close(database);
        fs::remove_all(root);
    }

    // The records as each run finds them.
    void reset(const std::string& value) const {
        sqlite3_exec(database,
                     "delete from t; insert into t values (1, '', 'b#~the c~#', 'x,y~z'), (2, null, 5, 'c')",
                     nullptr, nullptr, nullptr);
        sqlite3_stmt* statement = nullptr;
        sqlite3_prepare_v2(database, "update t set a = ? where id = 1", -1, &statement, nullptr);
        sqlite3_bind_text(statement, 1, value.data(), static_cast<int>(value.size()), SQLITE_TRANSIENT);
        sqlite3_step(statement);
        sqlite3_finalize(statement);
    }

    fs::path root;
    sqlite3* database = nullptr;
};

std::string taken(std::string_view& input) {
    constexpr std::string_view kLine = "\n====\n";
    const std::size_t end = std::min(input.find(kLine), input.size());
    std::string part(input.substr(0, end));
    input.remove_prefix(std::min(end + kLine.size(), input.size()));
    return part;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Folder folder;
    static asp::Site site(folder.root, {.script_seconds = 5, .tell_visitors = true, .log_changes = true},
                          [](std::string_view) {});

    std::string_view input(reinterpret_cast<const char*>(data), size);
    auto request = std::make_shared<asp::HttpRequest>();
    request->path = "/grid.asp";
    request->method = "POST";
    request->headers = {{"Host", "site.test"}, {"Content-Type", "application/x-www-form-urlencoded"}};
    for (const char* const name : {"template", "content", "view", "value", "g_command", "g_params"}) {
        const std::string part = taken(input);
        request->body += std::string(name) + "=" + asp::url_encode(part) + "&";
        if (std::string_view(name) == "value")
            folder.reset(part);
    }
    request->body += size % 2 == 0 ? "mode=GRID&" : "mode=row&";
    request->body += taken(input);
    Interrupt interrupt;
    const asp::HttpResponse response = asp::Page(site, request, request->path, {}, interrupt).run();
    if (response.status != 200 && response.status != 500)
        std::abort();
    return 0;
}
