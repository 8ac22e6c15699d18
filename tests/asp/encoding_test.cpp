#include "asp/code_page.h"
#include "asp/encoding.h"
#include "automation/error.h"

#include <string>

#include <gtest/gtest.h>

namespace tabrixdb::asp {
namespace {

std::string shown(const Fields& fields) {
    std::string text;
    for (const auto& [name, value] : fields)
        text += '[' + name + '=' + value + ']';
    return text;
}

TEST(Form, DecodesNamesAndValues) {
    const struct {
        const char* body;
        std::uint32_t code_page;
        const char* expected;
    } cases[] = {
        {"", kUtf8, ""},
        {"a=1&b=2&a=3", kUtf8, "[a=1][b=2][a=3]"},
        {"a", kUtf8, "[a=]"},
        {"=x", kUtf8, "[=x]"},
        {"a=&&&b=", kUtf8, "[a=][b=]"},
        {"a=b=c", kUtf8, "[a=b=c]"},
        {"a+b=c+d%2Be", kUtf8, "[a b=c d+e]"},
        {"a=%41%4a%4A", kUtf8, "[a=AJJ]"},
        {"a=100%&b=%4&c=%zz", kUtf8, "[a=100%][b=%4][c=%zz]"},
        {"a=%C3%A4%E2%82%AC%F0%9F%98%80", kUtf8, "[a=ä€😀]"},
        {"a=%FFx%C3&b=%E2%82", kUtf8, "[a=\uFFFDx\uFFFD][b=\uFFFD\uFFFD]"},
        {"a=%C0%AF", kUtf8, "[a=\uFFFD\uFFFD]"},
        {"a=%ED%A0%80", kUtf8, "[a=\uFFFD]"},
        {"a=%E4%80", 1252, "[a=ä€]"},
        {"a=%82%A0", 932, "[a=あ]"},
        {"a=%26%3D", kUtf8, "[a=&=]"},
    };

    for (const auto& c : cases)
        EXPECT_EQ(shown(decode_form(c.body, c.code_page)), c.expected) << c.body;
}

TEST(Form, RefusesMoreFieldsThanAPageMayBeGiven) {
    std::string body;
    for (std::size_t i = 0; i < kMaxFields; ++i)
        body += "a&";
    EXPECT_EQ(decode_form(body, kUtf8).size(), kMaxFields);
    EXPECT_THROW(decode_form(body + "a", kUtf8), Error);
}

TEST(Encoding, WritesAddressesAndHtml) {
    EXPECT_EQ(url_encode("a b.c_d/é~9"), "a+b%2Ec%5Fd%2F%C3%A9%7E9");
    EXPECT_EQ(html_encode("<a href=\"x\">Tom & 'Jé€😀'"),
              "&lt;a href=&quot;x&quot;&gt;Tom &amp; 'J&#233;&#8364;&#128512;'");
    EXPECT_EQ(encode_location("/a b/é?x=%41&y=\"\r\nSet-Cookie: z"),
              "/a%20b/%C3%A9?x=%41&y=%22%0D%0ASet-Cookie:%20z");
}

TEST(CodePage, ReadsFilesByMarkThenByValidityThenByPage) {
    EXPECT_EQ(decode_file("\xEF\xBB\xBFä", kUtf8), "ä");
    EXPECT_EQ(decode_file("gr\xFC\xDF", kUtf8), "grüß");
    EXPECT_EQ(decode_file("grüß", kUtf8), "grüß");
    EXPECT_EQ(decode_file(std::string("\xFF\xFEg\0r\0", 6), 1252), "gr");
    EXPECT_EQ(decode_file("\xE4", 1251), "д");
    EXPECT_EQ(encode_text("ä€д😀!", 1252), "\xE4\x80?"
                                          "?!");
}

} // namespace
} // namespace tabrixdb::asp
