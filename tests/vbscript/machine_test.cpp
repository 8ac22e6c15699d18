#include "tests/vbscript/test_environment.h"

#include <functional>

#include <gtest/gtest.h>

namespace tabrixdb::vbscript {
namespace {

// A page: text with <% %> and <%= %>, as its host would cut it, with each piece's own position.
Source page(const std::string& text) {
    Source source = source_of(text, "page.asp");
    source.pieces.clear();
    const std::string_view all = *source.texts.back();
    Position position;
    const auto add = [&](Piece::Kind kind, std::string_view part, std::string_view skipped) {
        const auto move = [&](std::string_view over) {
            for (const char c : over) {
                position.column = c == '\n' ? 1 : position.column + 1;
                position.line += c == '\n';
            }
        };
        source.pieces.push_back({kind, part, position});
        move(part);
        move(skipped);
    };
    std::size_t at = 0;
    for (std::size_t open; (open = all.find("<%", at)) != std::string_view::npos;) {
        const bool writes = all[open + 2] == '=';
        const std::size_t begin = open + 2 + writes;
        const std::size_t end = all.find("%>", begin);
        add(Piece::Kind::Literal, all.substr(at, open - at), all.substr(open, begin - open));
        add(writes ? Piece::Kind::Expression : Piece::Kind::Code, all.substr(begin, end - begin), "%>");
        at = end + 2;
    }
    add(Piece::Kind::Literal, all.substr(at), {});
    return source;
}

class MachineTest : public testing::Test {
protected:
    std::string error_of(const std::function<void()>& action) {
        try {
            action();
        } catch (const ScriptError& error) {
            return error.file + " " + std::to_string(error.number()) + " " +
                   std::to_string(error.position.line) + ":" + std::to_string(error.position.column) + " <" +
                   error.source_line + "> " + error.source() + (error.compile_error ? ", compiling" : "");
        }
        return {};
    }

    Outcome run(const std::string& script) { return machine.run(compile(source_of(script))); }

    Interrupt interrupt;
    TestEnvironment environment{interrupt};
    Machine machine{environment, interrupt};
};

TEST_F(MachineTest, a_block_spans_pieces) {
    machine.run(
        compile(page("<ul><% Option Explicit\nDim i\nFor i = 1 To 2 %><li><%= i %></li><% Next %></ul>"
                     "<% Select Case i %>\n <% Case 3 %>three<% Case Else %>other<% End Select %>"
                     "<% Sub Card(text) %>[<%= text %>]<% End Sub : Card \"a\" : Card 2 %>!")));
    EXPECT_EQ(environment.out, "<ul><li>1</li><li>2</li></ul>three[a][2]!");
}

TEST_F(MachineTest, an_error_says_where_in_the_page) {
    EXPECT_EQ(error_of([&] { machine.run(compile(page("<p>\n <% x = 1\n   y = 1 / 0 %>"))); }),
              "page.asp 11 3:4 <   y = 1 / 0 %>> TabrixDb VBScript runtime error");
    EXPECT_EQ(error_of([&] { machine.run(compile(page("<p>\n<%= 1 + %></p>"))); }),
              "page.asp 1023 2:9 <<%= 1 + %></p>> TabrixDb VBScript compilation error, compiling");
    EXPECT_EQ(error_of([&] { machine.run(compile(page("<%= 1, 2 %>"))); }),
              "page.asp 1025 1:6 <<%= 1, 2 %>> TabrixDb VBScript compilation error, compiling");
}

TEST_F(MachineTest, columns_count_characters_and_lines_end_in_any_way) {
    EXPECT_EQ(error_of([&] { compile(source_of("x = 1\r\ny = 2\rz = \"\u00e4\U0001F600\" $\r\n")); }),
              "test.vbs 1032 3:11 <z = \"\u00e4\U0001F600\" $> TabrixDb VBScript compilation error, "
              "compiling");
}

TEST_F(MachineTest, a_stop_is_no_error_to_hold) {
    EXPECT_EQ(run("On Error Resume Next\nSub S : CreateObject(\"Test.Thing\").End : Print 1 : End Sub\n"
                  "S\nPrint 2"),
              Outcome::Stopped);
    EXPECT_EQ(environment.out, "");
}

TEST_F(MachineTest, an_endless_loop_ends_at_its_deadline) {
    for (const char* loop : {"Do : Loop", "While True : Wend", "For i = 1 To 2 Step 0 : Next",
                             "Sub S : On Error Resume Next : Do : S : Loop : End Sub\nS"}) {
        Interrupt passed(Interrupt::Clock::now());
        Machine endless(environment, passed);
        EXPECT_EQ(endless.run(compile(source_of(loop))), Outcome::Stopped) << loop;
        EXPECT_EQ(passed.reason(), Interrupt::Reason::TimedOut);
    }
}

TEST_F(MachineTest, units_share_their_names) {
    run("Option Explicit\nDim total\nConst kRate = 2\nFunction Scaled(x) : Scaled = x * kRate : End "
        "Function");
    run("total = Scaled(21)\nPrint total\nDim list(1)\nlist(1) = 5");
    EXPECT_EQ(environment.out, "42\n");
    EXPECT_EQ(to_text(machine.eval("total + list(1) + Scaled(1)")).view(), "49");
    EXPECT_EQ(error_of([&] { run("kRate = 3"); }),
              "test.vbs 501 1:1 <kRate = 3> TabrixDb VBScript runtime error");
    run("Function Scaled(x) : Scaled = \"last\" : End Function");
    run("Print Scaled(1)");
    EXPECT_EQ(environment.out, "42\nlast\n");
}

TEST_F(MachineTest, a_program_is_shared_by_machines) {
    const auto program = compile(source_of("n = n + 1 : Print n"));
    machine.run(program);
    machine.run(program); // names stay from one run to the next
    Machine other(environment, interrupt);
    other.run(program);
    EXPECT_EQ(environment.out, "1\n2\n1\n");
}

TEST_F(MachineTest, a_host_calls_procedures) {
    run("Function Grow(a, ByVal b) : a = a + b : b = 0 : Grow = a * 10 : End Function\nSub Fails : x = 1 / 0 "
        ": "
        "End Sub");
    Variant a(std::int16_t{1}), b(std::int16_t{2});
    Variant* const arguments[] = {&a, &b};
    EXPECT_EQ(machine.call("GROW", arguments)->whole(), 30);
    EXPECT_EQ(a.whole(), 3);
    EXPECT_EQ(b.whole(), 2);
    EXPECT_TRUE(machine.has_procedure("grow"));
    EXPECT_FALSE(machine.has_procedure("print"));
    EXPECT_FALSE(machine.call("Nobody", {}).has_value());
    EXPECT_THROW(machine.call("Grow", {}), Error);
    EXPECT_EQ(error_of([&] { machine.call("Fails", {}); }),
              "test.vbs 11 2:13 <Sub Fails : x = 1 / 0 : End Sub> TabrixDb VBScript runtime error");
}

TEST_F(MachineTest, objects_outlive_their_machine_without_its_script) {
    Ref<Object> kept;
    {
        Machine other(environment, interrupt);
        other.run(compile(source_of(
            "Class C\nPublic Me2, Name\nSub Class_Terminate : Print \"end \" & Name : End Sub\nEnd Class\n"
            "Set a = New C : a.Name = \"kept\" : Set a.Me2 = a\nSet b = New C : Set b.Me2 = b : b.Name = "
            "\"cycle\"\n"
            "Set d = New C : d.Name = \"last\" : Set b = Nothing")));
        kept = Ref<Object>(other.eval("a").object());
        EXPECT_EQ(to_text(get(*kept, "Name")).view(), "kept");
    }
    EXPECT_EQ(environment.out, "end last\n"); // objects in cycles end without a word
    EXPECT_THROW(get(*kept, "Name"), Error);
}

// A list is taken apart node by node, not one inside the other.
TEST_F(MachineTest, long_chains_of_objects_end) {
    run("Class Node\nPublic Following\nSub Class_Terminate : ended = ended + 1 : End Sub\nEnd Class\nDim "
        "ended, i, n\n"
        "For i = 1 To 20000\nSet n = New Node\nIf i > 1 Then Set n.Following = first\nSet first = n\nNext\n"
        "Set n = Nothing : Set first = Nothing\nPrint ended");
    EXPECT_EQ(environment.out, "20000\n");
}

TEST_F(MachineTest, a_default_member_may_change_what_is_being_read) {
    run("Class Evil\nPublic Default Property Get Value\ns = \"gone\" : Erase list : Value = 2\nEnd Property\n"
        "End Class\nDim list(), e\nSet e = New Evil : s = String(50, \"x\") : ReDim list(1)\n"
        "list(0) = String(50, \"a\") : list(1) = \"b\"\nPrint Mid(s, e, 2) & s & UBound(Split(Join(Array(1, "
        "2), e), e))\n"
        "ReDim list(1) : list(0) = String(50, \"a\") : list(1) = \"b\" : Print Len(Join(list, e))");
    EXPECT_EQ(environment.out, "xxgone2\n52\n");
}

// What nests without end is refused; what is only long is not.
TEST_F(MachineTest, nesting_is_limited) {
    const auto repeated = [](std::string_view text, int times) {
        std::string result;
        for (int i = 0; i < times; ++i)
            result += text;
        return result;
    };
    const int many = 100000;
    for (const std::string& deep :
         {"x = " + repeated("(", many), "x = " + repeated("-", many) + "1", "x = " + repeated("Not ", many),
          "x = " + repeated("a(", many), repeated("If x Then\n", many), repeated("If x Then ", many),
          repeated("With x\n", many), "x = a" + repeated(".b", many), "x = a" + repeated("(1)", many),
          repeated("Do\n", many), "x = " + repeated("a ^ (", many), "x" + repeated("(1)", many) + " = 1",
          "x = " + repeated("1 Imp (2 Or (3 & (", many)})
        EXPECT_TRUE(error_of([&] { compile(source_of(deep)); }).starts_with("test.vbs 1001 "))
            << deep.substr(0, 20);
    EXPECT_EQ(run("x = 1" + repeated(" + 1", 20000) + " : Print x"), Outcome::Finished);
    EXPECT_EQ(run("y = 1 : x = \"\"" + repeated(" & y", 20000) + " : Print Len(x)"), Outcome::Finished);
    EXPECT_EQ(run(repeated("If False Then\nElseIf False Then\nEnd If\n", 5000)), Outcome::Finished);
    EXPECT_EQ(environment.out, "20001\n20000\n");
}

} // namespace
} // namespace tabrixdb::vbscript
