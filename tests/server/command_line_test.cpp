#include "server/command_line.h"
#include "tests/asp/site_folder.h"

#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace tabrixdb::server {
namespace {

struct Result {
    int code;
    std::string out, err;
};

Result tabrixdb(const std::vector<std::string>& words) {
    const std::vector<std::string_view> arguments(words.begin(), words.end());
    std::ostringstream out, err;
    const int code = run_command(arguments, out, err);
    return {code, out.str(), err.str()};
}

TEST(CommandLine, RunsAPageOfTheNearestSite) {
    const SiteFolder folder;
    folder.write("tabrixdb.toml", "[session]\nminutes = 7");
    folder.write("a/b/page.asp",
                 "<%= Request(\"x\") & Request.ServerVariables(\"URL\") & Session.Timeout %>");
    folder.write("a/b/fails.asp", "<% x = 1 / 0 %>");
    const std::string page = (folder.path() / "a/b/page.asp").string();

    const Result plain = tabrixdb({"run", page, "--query", "x=1"});
    EXPECT_EQ(plain.out, "1/a/b/page.asp7");
    EXPECT_EQ(plain.code, kExitOk);
    EXPECT_EQ(tabrixdb({"run", page, "--form", "x=form+field"}).out, "form field/a/b/page.asp7");
    EXPECT_EQ(tabrixdb({"run", page, "--site", (folder.path() / "a").string()}).out, "/b/page.asp20");
    const std::string whole = tabrixdb({"run", page, "--include-headers"}).out;
    EXPECT_TRUE(whole.starts_with("HTTP/1.1 200 OK\r\nContent-Type: text/html; charset=utf-8\r\n")) << whole;

    const Result failed = tabrixdb({"run", (folder.path() / "a/b/fails.asp").string()});
    EXPECT_EQ(failed.code, kExitFailed);
    EXPECT_NE(failed.err.find("Division by zero in /a/b/fails.asp, line 1"), std::string::npos) << failed.err;
    EXPECT_NE(failed.out.find("Division by zero"), std::string::npos) << failed.out;

    // What the engine reports fails a page, too.
    folder.write("report.asp",
                 "<% Set db = Server.CreateObject(\"TabrixDb.Pro\") : db.CreateGrid \"g\", \"s\" %>");
    const Result reported = tabrixdb({"run", (folder.path() / "report.asp").string()});
    EXPECT_EQ(reported.code, kExitFailed);
    EXPECT_NE(reported.out.find("/TabrixDb/tabrixdb_error.htm Not Found"), std::string::npos) << reported.out;
    EXPECT_EQ(reported.out.find(folder.path().string()), std::string::npos) << reported.out;
}

TEST(CommandLine, SaysWhatItDoesNotUnderstand) {
    const SiteFolder folder;
    folder.write("page.asp", "x");
    folder.write("bad/tabrixdb.toml", "[limits]\nspeed = 1");
    const std::string page = (folder.path() / "page.asp").string(), bad = (folder.path() / "bad").string();

    const struct {
        std::vector<std::string> words;
        const char* message;
    } cases[] = {
        {{}, "A command is needed."},
        {{"fly"}, "'fly' is no command."},
        {{"run"}, "'run' needs a page."},
        {{"run", "/no/such.asp"}, "There is no page /no/such.asp."},
        {{"run", page, "--fast"}, "'--fast' is not understood here."},
        {{"run", page, page}, "is not understood here."},
        {{"run", page, "--query"}, "--query needs a value."},
        {{"run", page, "--site", bad}, "limits.speed is no setting."},
        {{"serve", "/no/such/site"}, "/no/such/site is not a folder."},
        {{"serve", bad, "--port", "70000"}, "A port is a number from 0 to 65535."},
        {{"serve", bad}, "limits.speed is no setting."},
    };

    for (const auto& c : cases) {
        const Result result = tabrixdb(c.words);
        EXPECT_EQ(result.code, kExitUsage) << c.message;
        EXPECT_EQ(result.out, "") << c.message;
        EXPECT_NE(result.err.find(c.message), std::string::npos) << result.err;
    }
    EXPECT_EQ(tabrixdb({"--help"}).code, kExitOk);
    EXPECT_TRUE(tabrixdb({"--version"}).out.starts_with("tabrixdb "));
}

TEST(CommandLine, MakesMissingDatabasesOnceAndWhole) {
    const SiteFolder folder;
    folder.write("tabrixdb.toml", "[[database]]\nfile = \"data/shop.db\"\nscript = \"shop.sql\"");
    folder.write("page.asp", R"page(<%
Set shop = Server.CreateObject("ADODB.Connection")
shop.Open "Provider=SQLite;Data Source=" & Server.MapPath("data/shop.db")
Response.Write shop.Execute("select count(*) from items")(0)
shop.Execute "insert into items values (9)" %>)page");
    const std::string page = (folder.path() / "page.asp").string();
    const auto files = [&] {
        int count = 0;
        for (const auto& entry : std::filesystem::directory_iterator(folder.path() / "data"))
            count += entry.is_regular_file();
        return count;
    };

    folder.write("shop.sql",
                 "create table items (n);\ninsert into items values (1);\ninsert into nowhere values (2);");
    const Result failed = tabrixdb({"run", page});
    EXPECT_EQ(failed.code, kExitFailed);
    EXPECT_NE(failed.err.find("shop.sql, line 3: no such table: nowhere"), std::string::npos) << failed.err;
    EXPECT_EQ(files(), 0);

    folder.write("shop.sql",
                 "begin;\ncreate table items (n);\ninsert into items values (1), (2);\ncommit;\n-- end\n");
    EXPECT_EQ(tabrixdb({"run", page}).out, "2");
    EXPECT_EQ(tabrixdb({"run", page}).out, "3"); // the same database: it is not made again
}

} // namespace
} // namespace tabrixdb::server
