#include "asp/page.h"
#include "tests/asp/site_folder.h"

#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

namespace tabrixdb::asp {
namespace {

// Pages write files in the site's code page, and read them back.
TEST(TextFiles, AreWrittenByPages) {
    const SiteFolder folder;
    folder.write("write.asp", R"(<%
Set fs = CreateObject("Scripting.FileSystemObject")
Set out = fs.CreateTextFile(Server.MapPath("list.csv"))
out.WriteLine "a;)"
                              "\xFC"
                              R"("
For i = 1 To 20000 : out.Write "12345678" : Next
out.Close
Set out = fs.OpenTextFile(Server.MapPath("LIST.CSV"), 8)
out.WriteLine
out.Write "end"
Set out = Nothing
Set file = fs.OpenTextFile(Server.MapPath("list.csv"))
Response.Write file.ReadLine & "|" & Len(file.ReadLine) & "|" & file.ReadLine & "|" & file.AtEndOfStream & file.Line
On Error Resume Next
fs.CreateTextFile Server.MapPath("list.csv"), False
Response.Write "|" & Err.Number
%>)");
    Site site(folder.path(), {.code_page = 1252}, [](std::string_view) {});
    Interrupt interrupt;
    auto request = std::make_shared<HttpRequest>();
    EXPECT_EQ(Page(site, request, "/write.asp", {}, interrupt).run().body, "a;\xFC|160000|end|True4|58");
    std::ifstream file(folder.path() / "list.csv", std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    EXPECT_TRUE(text.str().starts_with("a;\xFC\r\n1234"));
    EXPECT_TRUE(text.str().ends_with("678\r\nend"));
}

} // namespace
} // namespace tabrixdb::asp
