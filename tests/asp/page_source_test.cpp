#include "asp/asp_error.h"
#include "asp/page_source.h"

#include <map>
#include <string>

#include <gtest/gtest.h>

namespace tabrixdb::asp {
namespace {

class TextFiles final : public PageFiles {
public:
    std::map<std::string, std::string, std::less<>> texts;

    std::optional<File> read(std::string_view plain) override {
        const auto found = texts.find(plain);
        if (found == texts.end())
            return std::nullopt;
        return File{found->second, {found->first, {}}};
    }
};

// The pieces as text: L literal, C code, E expression, each with its place.
std::string shown(const PageSource& page) {
    std::string text;
    for (const vbscript::Piece& piece : page.source.pieces) {
        text += "LCE"[piece.kind == vbscript::Piece::Kind::Literal ? 0
                      : piece.kind == vbscript::Piece::Kind::Code  ? 1
                                                                   : 2];
        text += page.source.files.size() > 1 ? page.source.files[piece.at.file] : "";
        text += std::to_string(piece.at.line) + ':' + std::to_string(piece.at.column) + '{' +
                std::string(piece.text) + "} ";
    }
    return text;
}

std::string taken_apart(TextFiles files, const std::string& text) {
    files.texts["/p/page.asp"] = text;
    try {
        return shown(read_page(files, "/p/page.asp", 65001).value());
    } catch (const PageError& error) {
        return "ASP " + std::to_string(error.code) + ' ' + error.file + ':' + std::to_string(error.line);
    }
}

TEST(PageSource, TakesPagesApart) {
    TextFiles files;
    files.texts["/p/inc/a.inc"] = "A<!-- #include file=\"b.inc\" -->";
    files.texts["/p/inc/b.inc"] = "<%b%>";
    files.texts["/top.inc"] = "top";
    files.texts["/code.vbs"] = "Sub S\nEnd Sub";
    files.texts["/self.inc"] = "<!-- #include virtual='/self.inc' -->";
    files.texts["/p/back.inc"] = "<!--#include file='page.asp'-->";

    const struct {
        const char* page;
        const char* expected;
    } cases[] = {
        {"plain <b>html</b> <!-- comment -->", "L1:1{plain <b>html</b> <!-- comment -->} "},
        {"a\r\n<% x %>\nb", "L1:1{a\r\n} C2:3{ x } L2:8{\nb} "},
        {"<%=1%><% = x+1 %><%\n=2%>", "E1:4{1} E1:11{ x+1 } E2:2{2} "},
        {"<%%><%  %>", ""},
        {"ä€😀<% x %>", "L1:1{ä€😀} C1:7{ x } "},
        {"<% s = \"%>\" %>", "C1:3{ s = \"} L1:11{\" %>} "},
        {"<% x ", "ASP 116 /p/page.asp:1"},
        {"a\r\rb\n<% x", "ASP 116 /p/page.asp:4"},
        {"<%@ Language=\"VBScript\" LCID=1031 CodePage=1252 %>x", "L1:51{x} "},
        {"<%@ language=javascript %>", "ASP 129 /p/page.asp:1"},
        {"<%@ colour=red %>", "ASP 221 /p/page.asp:1"},
        {"<%@ codepage=1 %>", "ASP 221 /p/page.asp:1"},
        {"<%@%>\n<%@%>", "ASP 141 /p/page.asp:2"},
        {"1<!-- #include file=\"inc/a.inc\" -->2",
         "L/p/page.asp1:1{1} L/p/inc/a.inc1:1{A} C/p/inc/b.inc1:3{b} L/p/page.asp1:36{2} "},
        {"<!--#INCLUDE VIRTUAL='/top.inc'-->", "L/top.inc1:1{top} "},
        {"<!-- #include file='..\\top.inc' -->", "L/top.inc1:1{top} "},
        {"\n<!-- #include file=\"/top.inc\" -->", "ASP 130 /p/page.asp:2"},
        {"<!-- #include file=\"none.inc\" -->", "ASP 126 /p/page.asp:1"},
        {"<!-- #include file=\"../../x\" -->", "ASP 126 /p/page.asp:1"},
        {"<!-- #include nothing -->", "ASP 128 /p/page.asp:1"},
        {"<!-- #include file=\"x\" ", "ASP 127 /p/page.asp:1"},
        {"<!-- #include virtual=\"/self.inc\" -->", "ASP 132 /self.inc:1"},
        {"<!-- #include file=\"back.inc\" -->", "ASP 132 /p/back.inc:1"},
        {"<script runat=server>x</script><%y%>", "C1:34{y} C1:22{x} "},
        {"<SCRIPT Language='vbscript' RUNAT=\"Server\">\nx</SCRIPT >z", "L2:12{z} C1:44{\nx} "},
        {"<script runat=server src='/code.vbs'></script>z",
         "L/p/page.asp1:47{z} C/code.vbs1:1{Sub S\nEnd Sub} "},
        {"<script>var a = '<%=1%>';</script>", "L1:1{<script>var a = '} E1:21{1} L1:24{';</script>} "},
        {"<script runat=server language=jscript>x</script>", "ASP 129 /p/page.asp:1"},
        {"<script runat=server>x", "ASP 117 /p/page.asp:1"},
        {"<scripts runat=server>", "L1:1{<scripts runat=server>} "},
    };

    for (const auto& c : cases)
        EXPECT_EQ(taken_apart(files, c.page), c.expected) << c.page;
}

TEST(PageSource, BoundsIncludes) {
    TextFiles doubling; // each file twice the next: 2^20 without a bound
    for (int i = 0; i < 20; ++i) {
        const std::string next = "<!-- #include virtual=\"/" + std::to_string(i + 1) + "\" -->";
        doubling.texts["/" + std::to_string(i)] = next + next;
    }
    doubling.texts["/20"] = "x";
    EXPECT_TRUE(taken_apart(doubling, "<!-- #include virtual=\"/0\" -->").starts_with("ASP 132"));
    TextFiles deep;
    for (int i = 0; i < 40; ++i)
        deep.texts["/" + std::to_string(i)] = "<!-- #include virtual=\"/" + std::to_string(i + 1) + "\" -->";
    EXPECT_TRUE(taken_apart(deep, "<!-- #include virtual=\"/0\" -->").starts_with("ASP 132"));
}

TEST(PageSource, ReadsDirectivesAndCodePage) {
    TextFiles files;
    files.texts["/a.asp"] = "<%@ LCID=1031 CODEPAGE=1251 EnableSessionState=False %>\xE4";
    const PageSource page = read_page(files, "/a.asp", 65001).value();
    EXPECT_EQ(page.directives.lcid, 1031U);
    EXPECT_EQ(page.directives.code_page, 1251U);
    EXPECT_FALSE(page.directives.session);
    EXPECT_EQ(page.source.pieces.at(0).text, "д");
    EXPECT_FALSE(read_page(files, "/none.asp", 65001));
}

} // namespace
} // namespace tabrixdb::asp
