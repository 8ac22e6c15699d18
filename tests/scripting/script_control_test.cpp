#include "automation/conversions.h"
#include "automation/error.h"
#include "scripting/script_control.h"

#include <gtest/gtest.h>

namespace tabrixdb::scripting {
namespace {

TEST(ScriptControl, evaluates_as_a_page_asks) {
    const auto control = make_ref<ScriptControl>();
    let(*control, "Language", Variant("VBScript"));
    let(*control, "AllowUI", Variant(false));
    EXPECT_EQ(to_text(get(*control, "Eval", {Variant("UCase(\"a\") & 2 * 3")})).view(), "A6");
    EXPECT_TRUE(control->eval("1 = 1").boolean());
}

std::int32_t error_of(ScriptControl& control, std::string_view expression) {
    try {
        control.eval(expression);
    } catch (const Error& error) {
        return error.number();
    }
    return 0;
}

TEST(ScriptControl, reports_errors_and_goes_on) {
    const auto control = make_ref<ScriptControl>();
    EXPECT_EQ(error_of(*control, "1 +"), 1023);
    EXPECT_EQ(error_of(*control, "1 : 2"), 1025);
    EXPECT_EQ(error_of(*control, "1 / 0"), 11);
    EXPECT_EQ(error_of(*control, "CreateObject(\"Scripting.FileSystemObject\")"), 429);
    EXPECT_EQ(error_of(*control, "Response.Write(1)"), 424);
    EXPECT_EQ(control->eval("2").whole(), 2);
}

TEST(ScriptControl, takes_no_other_language) {
    EXPECT_THROW(make_ref<ScriptControl>()->set_language("JScript"), Error);
}

} // namespace
} // namespace tabrixdb::scripting
