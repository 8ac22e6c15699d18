#include "scripting/classes.h"
#include "scripting/pattern.h"
#include "tests/vbscript/test_environment.h"

#include <fstream>

#include <gtest/gtest.h>

namespace tabrixdb::scripting {
namespace {

class ScriptingEnvironment final : public vbscript::TestEnvironment {
public:
    using TestEnvironment::TestEnvironment;

    Ref<Object> new_object(std::string_view name) override { return create_object_named(name); }

private:
    static Ref<Object> create_object_named(std::string_view name) { return scripting::create_object(name); }
};

// The scripts of the folder `cases`: the lines that begin with '> are their output.
class ScriptCase : public testing::TestWithParam<const char*> {};

TEST_P(ScriptCase, behaves) {
    std::ifstream file(std::string(TABRIXDB_TEST_CASES "/cases/") + GetParam() + ".vbs");
    std::string script, expected;
    for (std::string line; std::getline(file, line);) {
        script += line + "\n";
        if (line.starts_with("'>"))
            expected += (line.size() > 3 ? line.substr(3) : "") + "\n";
    }
    Interrupt interrupt;
    ScriptingEnvironment environment(interrupt);
    vbscript::Machine(environment, interrupt).run(vbscript::compile(vbscript::source_of(script)));
    EXPECT_EQ(environment.out, expected);
}

INSTANTIATE_TEST_SUITE_P(Cases, ScriptCase, testing::Values("reg_exp", "reg_exp_own"),
                         [](const auto& tested) { return std::string(tested.param); });

// Each place of the text costs nearly as much as one may.
TEST(PatternSearch, ends_with_the_page) {
    Interrupt page(Interrupt::Clock::now());
    const Interrupt::Scope scope(page);
    const Pattern slow(
        "(?:a|a)(?:a|a)(?:a|a)(?:a|a)(?:a|a)(?:a|a)(?:a|a)(?:a|a)(?:a|a)(?:a|a)(?:a|a)(?:a|a)b", false,
        false);
    const std::string text(1'000'000, 'a');
    EXPECT_FALSE(PatternSearch(slow, text).next());
    EXPECT_EQ(page.reason(), Interrupt::Reason::TimedOut);
}

// What is no character is passed over, byte by byte; half a pair is a character.
TEST(PatternSearch, finds_behind_malformed_text) {
    for (const char* text :
         {"a\xFF", "a\xC0\x80", "a\xE0\x80\x80", "a\xED\xA0\x80", "a\xF0\x80\x80\x80", "a\xF4\x90\x80\x80",
          "a\xF5\x80\x80\x80", "a\xF8\x88\x80\x80\x80", "a\xE2\x82"}) {
        const std::string whole = std::string(text) + "b";
        const Pattern pattern("^a[^b]+b$", false, false);
        PatternSearch search(pattern, whole);
        ASSERT_TRUE(search.next()) << testing::PrintToString(text);
        EXPECT_EQ(search.parts()[0].end, whole.size());
        EXPECT_FALSE(search.next());
    }
}

} // namespace
} // namespace tabrixdb::scripting
