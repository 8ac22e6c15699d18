#include "automation/conversions.h"
#include "automation/error.h"
#include "automation/member.h"
#include "scripting/script_control.h"

#include <functional>

#include <gtest/gtest.h>

// What pages do with the control is in tests/asp/cases/script_control.asp; here is what has to end.
namespace tabrixdb::scripting {
namespace {

std::int32_t error_of(const std::function<void()>& action) {
    try {
        action();
    } catch (const Error& error) {
        return error.number();
    }
    return 0;
}

void execute(ScriptControl& control, const char* statement) {
    get(control, "ExecuteStatement", {Variant(statement)});
}

const char* const kEndless[] = {
    "Do : Loop",
    "While True : On Error Resume Next : Err.Raise 5 : Wend",
    "Sub Again : On Error Resume Next : Do : Again : Loop : End Sub\nAgain",
    "Do : Eval \"Forever()\" : Loop\nFunction Forever : Do : Loop : End Function",
};

TEST(ScriptControl, ends_what_takes_too_long_and_goes_on) {
    const auto control = make_ref<ScriptControl>();
    control->set_timeout(0);
    execute(*control, "kept = 5");
    for (const char* endless : kEndless) {
        EXPECT_EQ(error_of([&] { execute(*control, endless); }), 440) << endless;
        EXPECT_EQ(to_long(get(*get(*control, "Error").object(), "Number")), 440);
        EXPECT_EQ(control->eval("kept").whole(), 5);
    }
}

TEST(ScriptControl, ends_with_the_page) {
    for (const char* endless : kEndless) {
        Interrupt page(Interrupt::Clock::now());
        const Interrupt::Scope scope(page);
        const auto control = make_ref<ScriptControl>();
        control->set_timeout(ScriptControl::kNoTimeout);
        EXPECT_EQ(error_of([&] { execute(*control, endless); }), 0) << endless;
        EXPECT_EQ(page.reason(), Interrupt::Reason::TimedOut);
    }
}

// Controls that call one another take the thread's stack.
TEST(ScriptControl, limits_calls_inside_each_other) {
    const auto chain_of = [](int controls) {
        auto control = make_ref<ScriptControl>();
        execute(*control, "Function F : F = 1 : End Function");
        for (int i = 1; i < controls; ++i) {
            const auto outer = make_ref<ScriptControl>();
            get(*outer, "AddObject", {Variant("inner"), Variant(control)});
            execute(*outer, "Function F : F = inner.Run(\"F\") : End Function");
            control = outer;
        }
        return control;
    };
    EXPECT_EQ(chain_of(90)->eval("F").whole(), 1);
    EXPECT_EQ(error_of([&] { chain_of(500)->eval("F"); }), 28);
}

TEST(ScriptControl, lives_as_long_as_its_script_runs) {
    const auto holder = make_ref<ScriptControl>();
    Ref<Object> object;
    {
        const auto control = make_ref<ScriptControl>();
        get(*holder, "AddObject", {Variant("held"), Variant(control)});
        execute(*control, "Class C\nPublic Sub LetGo(holder) : holder.Reset : x = 1 : End Sub\nEnd Class");
        object = Ref<Object>(control->eval("New C").object());
    }
    get(*object, "LetGo", {Variant(holder)});
    EXPECT_EQ(error_of([&] { get(*object, "LetGo", {Variant(holder)}); }), 440);
}

// Whoever holds whom (the leak checker looks).
TEST(ScriptControl, circles_end_with_the_run) {
    Ref<ScriptControl> kept;
    {
        const ScriptControl::Run run;
        kept = make_ref<ScriptControl>();
        const auto other = make_ref<ScriptControl>();
        get(*kept, "AddObject", {Variant("other"), Variant(other)});
        get(*other, "AddObject", {Variant("kept"), Variant(kept)});
        get(*other, "AddObject", {Variant("self"), Variant(other)});
    }
    EXPECT_TRUE(kept->eval("IsEmpty(other)").boolean());
}

// An object of the control's script is the page's to call: it ends with the page, too.
TEST(ScriptControl, objects_end_with_the_page) {
    Interrupt page(Interrupt::Clock::now());
    const Interrupt::Scope scope(page);
    const auto control = make_ref<ScriptControl>();
    execute(*control, "Class C\nPublic Sub Forever : Do : Loop : End Sub\nEnd Class");
    const Ref<Object> object(control->eval("New C").object());
    get(*object, "Forever");
    EXPECT_EQ(page.reason(), Interrupt::Reason::TimedOut);
}

// Values are variables of the expression, whatever they hold; nothing of them stays.
TEST(ScriptControl, evaluates_with_values) {
    const ScriptControl::Run run; // ends the circle of the control that holds itself
    const auto control = make_ref<ScriptControl>();
    get(*control, "AddObject", {Variant("self"), Variant(control)});
    execute(*control, "Dim rate : rate = 2 : TabrixDb_Value_3 = \"page's\"\n"
                      "Function Twice(x) : Twice = x * rate : x = 0 : End Function\n"
                      "Function Seen : Seen = IsEmpty(TabrixDb_Value_0) : End Function");
    const std::vector<Variant> values = {Variant(21), Variant("\" & Eval(\"1/0\") & \""), Variant::null()};

    const struct {
        const char* expression;
        const char* result;
    } cases[] = {
        {"TabrixDb_Value_0 + 1", "22"},
        {"Twice(tabrixdb_value_0) & TabrixDb_Value_0", "420"}, // by reference, and gone with the expression
        {"TabrixDb_Value_0", "21"},
        {"TabrixDb_Value_1", "\" & Eval(\"1/0\") & \""},
        {"\"a\" & TabrixDb_Value_1 & TabrixDb_Value_2 & \"b\"", "a\" & Eval(\"1/0\") & \"b"},
        {"IsNull(TabrixDb_Value_2)", "True"},
        {"TabrixDb_Value_3 & IsEmpty(TabrixDb_Value_4) & IsEmpty(TabrixDb_Value_00)", "page'sTrueTrue"},
        {"Seen()", "True"},
        {"IsEmpty(Eval(\"TabrixDb_Value_0\"))", "True"},
        {"self.Eval(\"IsEmpty(TabrixDb_Value_0)\") & TabrixDb_Value_0", "True21"},
    };

    for (int time = 1; time <= 2; ++time) // what was compiled is run again
        for (const auto& c : cases)
            EXPECT_EQ(to_text(control->eval_with(c.expression, values)).view(), c.result) << c.expression;
    EXPECT_EQ(values[0].whole(), 21);
    EXPECT_TRUE(control->eval("IsEmpty(TabrixDb_Value_0)").boolean());
    EXPECT_EQ(to_text(control->eval_with("TabrixDb_Value_0", {Variant("other")})).view(), "other");

    const auto error = [&](const char* property) { return get(*get(*control, "Error").object(), property); };
    EXPECT_EQ(error_of([&] { control->eval_with("1 / (TabrixDb_Value_0 - 21)", values); }), 11);
    EXPECT_EQ(to_long(error("Number")), 11);
    EXPECT_EQ(to_text(error("Text")).view(), "1 / (TabrixDb_Value_0 - 21)");
    EXPECT_EQ(error_of([&] { control->eval_with("TabrixDb_Value_0 +", values); }), 1023);
    execute(*control, "Function Forever : Do : Loop : End Function");
    control->set_timeout(0);
    EXPECT_EQ(error_of([&] { control->eval_with("Forever()", values); }), 440);
}

// An object that runs another expression with other values while one is at work.
TEST(ScriptControl, values_of_one_expression_are_not_those_of_another) {
    struct Again final : Object {
        ScriptControl* control = nullptr;
        int depth = 0;

        const ClassInfo& class_info() const override {
            static const ClassInfo info("Again", "", {method<&Again::run>("Run")});
            return info;
        }

        Variant run() {
            if (++depth == 4)
                return Variant("");
            return control->eval_with("TabrixDb_Value_0 & again.Run() & TabrixDb_Value_0", {Variant(depth)});
        }
    };

    const ScriptControl::Run run;
    const auto control = make_ref<ScriptControl>();
    const auto again = make_ref<Again>();
    again->control = control.get();
    get(*control, "AddObject", {Variant("again"), Variant(again)});
    EXPECT_EQ(to_text(again->run()).view(), "123321");
}

} // namespace
} // namespace tabrixdb::scripting
