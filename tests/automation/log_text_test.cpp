#include "automation/log_text.h"

#include <string>

#include <gtest/gtest.h>

namespace tabrixdb {
namespace {

TEST(LogText, HasNoPasswords) {
    const struct {
        const char* text;
        const char* expected;
    } cases[] = {
        {"Provider=x;Password=se'c\"ret;Data Source=y", "Provider=x;Password=***;Data Source=y"},
        {"PWD = a b ; uid=c", "PWD = ***; uid=c"},
        {"Pwd=last", "Pwd=***"},
        {"Pwd=;Uid=Admin", "Pwd=;Uid=Admin"},
        {"Pwd=\"\";x", "Pwd=***;x"},
        {"Password='a;b';x", "Password=***;x"},
        {"Password=\"a\"\";b\";x", "Password=***;x"},
        {"Password={a;b}};c};x", "Password=***;x"},
        {"db.Open \"Password=\"\"a;b\"\";x\"", "db.Open \"Password=***;x\""},
        {"Password=\"a;b", "Password=***"},
        {"Jet:Database Password=a\nnext line", "Jet:Database Password=***\nnext line"},
        {"Password=\"a;b\nnext", "Password=***\nnext"},
        {"Pwd=a;Pwd=b", "Pwd=***;Pwd=***"},
        {"Password", "Password"},
        {"Password=", "Password="},
        {"The password is pp", "The password is pp"},
    };

    for (const auto& c : cases)
        EXPECT_EQ(without_passwords(c.text), c.expected) << c.text;
}

TEST(LogText, StandsInOneLine) {
    EXPECT_EQ(one_line("a\r\n\x1B[1m\x7F\xC2\x85\xE2\x80\xA9é"), "a   [1m   é");
    EXPECT_EQ(quoted_line("\"\\\n", 3), "\"\\\"\\\\ \"");
    EXPECT_EQ(quoted_line("aéb", 2), "\"a\"...");
    EXPECT_EQ(shortened("aéb", 3), "aé...");
    EXPECT_EQ(shortened("aéb", 4), "aéb");
}

} // namespace
} // namespace tabrixdb
