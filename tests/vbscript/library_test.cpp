#include "automation/array.h"
#include "automation/collection.h"
#include "automation/locale.h"
#include "tests/automation/describe.h"
#include "vbscript/library.h"

#include <algorithm>
#include <limits>
#include <random>
#include <vector>

#include <gtest/gtest.h>

namespace tabrixdb::vbscript {
namespace {

const Variant kNull = Variant::null(), kNothing = Variant::nothing(), kMissing = Variant::missing(), kEmpty;
const auto date = Variant::date;
const auto byte = Variant::byte;

// Calls as the machine does: it checks the number of arguments, the function everything else.
Variant call(std::string_view name, std::vector<Variant> arguments) {
    const LibraryFunction* function = find_library_function(name);
    if (!function)
        throw Error(500);
    const auto count = static_cast<int>(arguments.size());
    if (count < function->least || (function->most >= 0 && count > function->most))
        throw Error(kErrorArguments);
    std::vector<Variant*> pointers;
    for (Variant& argument : arguments)
        pointers.push_back(&argument);
    return function->call(pointers);
}

struct Case {
    const char* function;
    std::vector<Variant> arguments;
    std::string expected;
};

void check(const std::vector<Case>& cases) {
    for (const Case& c : cases) {
        std::string label = c.function;
        for (const Variant& argument : c.arguments)
            label += ' ' + testing::describe(argument);
        EXPECT_EQ(testing::outcome([&] { return call(c.function, c.arguments); }), c.expected) << label;
    }
}

Variant i(int value) {
    return static_cast<std::int16_t>(value);
}

Variant list(std::vector<Variant> elements) {
    return make_ref<Array>(std::move(elements));
}

TEST(Library, Strings) {
    check({
        {"Len", {"abc"}, "Long 3"},
        {"Len", {"äöü"}, "Long 3"},
        {"Len", {"😀"}, "Long 2"},
        {"Len", {kNull}, "Null"},
        {"Len", {kEmpty}, "Long 0"},
        {"Len", {123}, "Long 3"},
        {"Len", {Text::bytes("abcd")}, "Long 2"},
        {"Len", {list({})}, "Error 13"},
        {"Len", {kNothing}, "Error 91"},
        {"Left", {"abc", 2}, "String ab"},
        {"Left", {"abc", 5}, "String abc"},
        {"Left", {"äöü", 2}, "String äö"},
        {"Left", {kNull, 1}, "Null"},
        {"Left", {"abc", -1}, "Error 5"},
        {"Left", {"abc", kNull}, "Error 94"},
        {"Left", {"abc"}, "Error 450"},
        {"Right", {"abc", 2}, "String bc"},
        {"Right", {"äöü", 1}, "String ü"},
        {"Right", {"abc", 9}, "String abc"},
        {"Right", {kNull, 1}, "Null"},
        {"Mid", {"abcdef", 2, 3}, "String bcd"},
        {"Mid", {"abcdef", 4}, "String def"},
        {"Mid", {"abcdef", 2, kMissing}, "String bcdef"},
        {"Mid", {"abc", 9}, "String "},
        {"Mid", {"abc", 0}, "Error 5"},
        {"Mid", {"abc", 1, -1}, "Error 5"},
        {"Mid", {12345, 2, 2}, "String 23"},
        {"Mid", {"a😀b", 2, 2}, "String 😀"},
        {"Mid", {"abc", 1, std::numeric_limits<std::int32_t>::max()}, "String abc"},
        {"UCase", {"aßäé"}, "String AßÄÉ"},
        {"LCase", {"ÄÉ"}, "String äé"},
        {"LCase", {kNull}, "Null"},
        {"Trim", {"  a b\t "}, "String a b\t"},
        {"LTrim", {"  a "}, "String a "},
        {"RTrim", {"  a "}, "String   a"},
        {"Trim", {"   "}, "String "},
        {"Trim", {kNull}, "Null"},
        {"Space", {3}, "String    "},
        {"Space", {-1}, "Error 5"},
        {"Space", {std::numeric_limits<std::int32_t>::max()}, "Error 14"},
        {"String", {3, "ab"}, "String aaa"},
        {"String", {3, 65}, "String AAA"},
        {"String", {3, 321}, "String AAA"},
        {"String", {2, "é"}, "String éé"},
        {"String", {0, "x"}, "String "},
        {"String", {3, ""}, "Error 5"},
        {"String", {3, kNull}, "Null"},
        {"String", {400'000'000, "é"}, "Error 14"},
        {"StrReverse", {"abc"}, "String cba"},
        {"StrReverse", {"aé€"}, "String €éa"},
        {"StrReverse", {kNull}, "Error 94"},
        {"Asc", {"A"}, "Integer 65"},
        {"Asc", {"€"}, "Integer 128"},
        {"Asc", {"é"}, "Integer 233"},
        {"Asc", {"Ж"}, "Integer 63"},
        {"Asc", {""}, "Error 5"},
        {"AscW", {"€"}, "Integer 8364"},
        {"AscW", {"\uFFFF"}, "Integer -1"},
        {"AscW", {"😀"}, "Integer -10179"},
        {"Chr", {65}, "String A"},
        {"Chr", {128}, "String €"},
        {"Chr", {256}, "Error 5"},
        {"ChrW", {8364}, "String €"},
        {"ChrW", {-1}, "String \uFFFF"},
        {"ChrW", {65536}, "Error 5"},
        {"Escape", {"a b+é€/"}, "String a%20b+%E9%u20AC/"},
        {"Unescape", {"a%20b%E9%u20AC"}, "String a bé€"},
        {"Unescape", {"%uD83D%uDE00"}, "String 😀"},
        {"Unescape", {"100%"}, "String 100%"},
        {"Unescape", {"%zz%u12"}, "String %zz%u12"},
    });
}

TEST(Library, SearchingAndSplitting) {
    check({
        {"InStr", {"abcabc", "c"}, "Long 3"},
        {"InStr", {4, "abcabc", "c"}, "Long 6"},
        {"InStr", {"abc", "C"}, "Long 0"},
        {"InStr", {1, "abc", "C", 1}, "Long 3"},
        {"InStr", {1, "abc", "C", 2}, "Error 5"},
        {"InStr", {"", ""}, "Long 0"},
        {"InStr", {2, "abc", ""}, "Long 2"},
        {"InStr", {9, "abc", "a"}, "Long 0"},
        {"InStr", {0, "abc", "a"}, "Error 5"},
        {"InStr", {"äöü", "ü"}, "Long 3"},
        {"InStr", {3, "😀😀", "😀"}, "Long 3"},
        {"InStr", {kNull, "a"}, "Null"},
        {"InStr", {"a", kNull}, "Null"},
        {"InStr", {kNull, "a", "a"}, "Error 94"},
        {"InStr", {123, 3}, "Long 3"},
        {"InStrRev", {"abcabc", "c"}, "Long 6"},
        {"InStrRev", {"abcabc", "c", 5}, "Long 3"},
        {"InStrRev", {"abcabc", "bc", 5}, "Long 2"}, // the whole match lies before 5
        {"InStrRev", {"abc", "", 2}, "Long 2"},
        {"InStrRev", {"abc", "a", 9}, "Long 0"},
        {"InStrRev", {"abc", "a", 0}, "Error 5"},
        {"InStrRev", {"ABC", "b", -1, 1}, "Long 2"},
        {"InStrRev", {kNull, "b"}, "Null"},
        {"StrComp", {"a", "B"}, "Integer 1"},
        {"StrComp", {"a", "B", 1}, "Integer -1"},
        {"StrComp", {"a", kNull}, "Null"},
        {"StrComp", {1, "1"}, "Integer 0"},
        {"Replace", {"aXbxc", "x", "-"}, "String aXb-c"},
        {"Replace", {"aXbxc", "x", "-", 1, -1, 1}, "String a-b-c"},
        {"Replace", {"abcabc", "b", "", 3}, "String cac"}, // begins at 3
        {"Replace", {"aaa", "a", "b", 1, 2}, "String bba"},
        {"Replace", {"aaa", "a", "b", 1, 0}, "String aaa"},
        {"Replace", {"aaa", "", "b"}, "String aaa"},
        {"Replace", {"aaa", "aa", "a"}, "String aa"},
        {"Replace", {"aaa", "a", "b", 9}, "String "},
        {"Replace", {"aaa", "a", "b", 0}, "Error 5"},
        {"Replace", {kNull, "a", "b"}, "Error 94"},
        {"Split", {"a,b,,c", ","}, "Array(String a, String b, String , String c)"},
        {"Split", {"a b"}, "Array(String a, String b)"},
        {"Split", {""}, "Array()"},
        {"Split", {"a,b,c", ",", 2}, "Array(String a, String b,c)"},
        {"Split", {"a,b,c", ",", 0}, "Array()"},
        {"Split", {"a,b", ""}, "Array(String a,b)"},
        {"Split", {"aXbxc", "x", -1, 1}, "Array(String a, String b, String c)"},
        {"Split", {"a,b", ",", -2}, "Error 5"},
        {"Split", {kNull}, "Error 94"},
        {"Join", {list({1, "b", 2.5})}, "String 1 b 2.5"},
        {"Join", {list({1, kNull, "c"}), ", "}, "String 1, , c"},
        {"Join", {list({})}, "String "},
        {"Join", {make_ref<Array>()}, "String "},
        {"Join", {"abc"}, "Error 13"},
        {"Join", {make_ref<Array>(std::vector<std::int32_t>{1, 1}, false)}, "Error 13"},
        {"Filter", {list({"ab", "b", "c"}), "b"}, "Array(String ab, String b)"},
        {"Filter", {list({"ab", "b", "c"}), "b", false}, "Array(String c)"},
        {"Filter", {list({"ab", "c"}), "B", true, 1}, "Array(String ab)"},
        {"Filter", {list({}), "b"}, "Array()"},
    });
}

TEST(Library, ByteStrings) {
    check({
        {"LenB", {"aé"}, "Long 4"},
        {"LenB", {Text::bytes("abc")}, "Long 3"},
        {"LenB", {Variant::byte_array("abc")}, "Long 3"},
        {"LenB", {kNull}, "Null"},
        {"LeftB", {"ab", 2}, "String a"},
        {"LeftB", {"ab", 1}, "String b\"61\""},
        {"RightB", {"aé", 2}, "String é"},
        {"MidB", {Variant::byte_array("abcd"), 2, 2}, "String b\"6263\""},
        {"MidB", {Variant::byte_array("abcd"), 9}, "String b\"\""},
        {"MidB", {"abc", 3}, "String bc"},
        {"MidB", {"abc", 0}, "Error 5"},
        {"AscB", {Text::bytes("\xFF")}, "Integer 255"},
        {"AscB", {""}, "Error 5"},
        {"ChrB", {200}, "String b\"C8\""},
        {"ChrB", {256}, "Error 5"},
        {"InStrB", {Text::bytes("abcabc"), Text::bytes("bc")}, "Long 2"},
        {"InStrB", {3, Text::bytes("abcabc"), Text::bytes("bc")}, "Long 5"},
        {"InStrB", {"abc", "b"}, "Long 3"},
        {"InStrB", {"abc", kNull}, "Null"},
    });
}

TEST(Library, Numbers) {
    check({
        {"Abs", {i(-32768)}, "Long 32768"},
        {"Abs", {-2.5}, "Double 2.5"},
        {"Abs", {"-3"}, "Double 3"},
        {"Abs", {true}, "Integer 1"},
        {"Abs", {kNull}, "Null"},
        {"Abs", {Variant::currency(-15000)}, "Currency 1.5"},
        {"Abs", {"x"}, "Error 13"},
        {"Abs", {Variant::byte_array("1")}, "Error 13"},
        {"Sgn", {-0.5}, "Integer -1"},
        {"Sgn", {kEmpty}, "Integer 0"},
        {"Sgn", {kNull}, "Error 94"},
        {"Int", {-2.5}, "Double -3"},
        {"Fix", {-2.5}, "Double -2"},
        {"Int", {"2.7"}, "Double 2"},
        {"Int", {i(7)}, "Integer 7"},
        {"Int", {Variant::currency(-15000)}, "Currency -2"},
        {"Fix", {Variant::currency(-15000)}, "Currency -1"},
        {"Int", {date(43831.5)}, "Date 1/1/2020"},
        {"Int", {kNull}, "Null"},
        {"Round", {2.5}, "Double 2"},
        {"Round", {3.5}, "Double 4"},
        {"Round", {0.125, 2}, "Double 0.12"},
        {"Round", {-1.55, 1}, "Double -1.6"},
        {"Round", {Variant::currency(12345), 2}, "Currency 1.23"},
        {"Round", {Variant::currency(12350), 2}, "Currency 1.24"},
        {"Round", {i(7), 2}, "Integer 7"},
        {"Round", {1e300, 22}, "Double 1E+300"},
        {"Round", {1.5, -1}, "Error 5"},
        {"Round", {1.5, 23}, "Error 5"},
        {"Round", {kNull}, "Null"},
        {"Sqr", {9}, "Double 3"},
        {"Sqr", {-1}, "Error 5"},
        {"Log", {0}, "Error 5"},
        {"Exp", {0}, "Double 1"},
        {"Exp", {1000}, "Error 6"},
        {"Atn", {1}, "Double 0.785398163397448"},
        {"Sin", {1}, "Double 0.841470984807897"},
        {"Cos", {1}, "Double 0.54030230586814"},
        {"Tan", {1}, "Double 1.5574077246549"},
        {"Hex", {255}, "String FF"},
        {"Hex", {i(-1)}, "String FFFF"},
        {"Hex", {-1}, "String FFFFFFFF"},
        {"Hex", {-1.0}, "String FFFFFFFF"},
        {"Hex", {kEmpty}, "String 0"},
        {"Hex", {kNull}, "Null"},
        {"Hex", {"&H1F"}, "String 1F"},
        {"Hex", {3e9}, "Error 6"},
        {"Oct", {8}, "String 10"},
        {"Oct", {i(-1)}, "String 177777"},
        {"RGB", {255, 128, 0}, "Long 33023"},
        {"RGB", {999, 0, 0}, "Long 255"},
        {"RGB", {-1, 0, 0}, "Error 5"},
    });
}

TEST(Library, RandomNumbersFollowThePublishedSequence) {
    reset_random();
    check({
        {"Rnd", {}, "Single 0.7055475"},
        {"Rnd", {}, "Single 0.533424"},
        {"Rnd", {0}, "Single 0.533424"},
        {"Rnd", {1}, "Single 0.5795186"},
        {"Rnd", {-1}, "Single 0.224007"},
    });
    const auto after_randomize = [](double number) {
        call("Rnd", {-1});
        call("Randomize", {number});
        return testing::describe(call("Rnd", {}));
    };
    EXPECT_EQ(after_randomize(7), after_randomize(7));
    EXPECT_NE(after_randomize(7), after_randomize(8));
    EXPECT_EQ(testing::outcome([] { return call("Randomize", {kNull}); }), "Error 94");
}

TEST(Library, Dates) {
    const Variant moment = date(43861.75); // 2020-01-31 18:00, a Friday
    check({
        {"Year", {moment}, "Integer 2020"},
        {"Month", {"2020-02-03"}, "Integer 2"},
        {"Day", {moment}, "Integer 31"},
        {"Hour", {moment}, "Integer 18"},
        {"Minute", {"10:20:30"}, "Integer 20"},
        {"Second", {"10:20:30"}, "Integer 30"},
        {"Year", {kNull}, "Null"},
        {"Year", {"x"}, "Error 13"},
        {"Weekday", {moment}, "Integer 6"},
        {"Weekday", {moment, 2}, "Integer 5"},
        {"Weekday", {moment, 8}, "Error 5"},
        {"WeekdayName", {6}, "String Friday"},
        {"WeekdayName", {1, true, 2}, "String Mon"},
        {"WeekdayName", {0}, "Error 5"},
        {"MonthName", {2}, "String February"},
        {"MonthName", {2, true}, "String Feb"},
        {"MonthName", {13}, "Error 5"},
        {"DateSerial", {2020, 2, 30}, "Date 3/1/2020"},
        {"DateSerial", {29, 1, 1}, "Date 1/1/2029"},
        {"DateSerial", {30, 1, 1}, "Date 1/1/1930"},
        {"DateSerial", {10000, 1, 1}, "Error 5"},
        {"DateSerial", {40000, 1, 1}, "Error 6"},
        {"TimeSerial", {1, 90, 0}, "Date 2:30:00 AM"},
        {"DateValue", {"3/4/2020 10:30"}, "Date 3/4/2020"},
        {"DateValue", {kNull}, "Error 94"},
        {"TimeValue", {"3/4/2020 10:30"}, "Date 10:30:00 AM"},
        {"DateAdd", {"m", 1, moment}, "Date 2/29/2020 6:00:00 PM"},
        {"DateAdd", {"yyyy", 1, date(43890)}, "Date 2/28/2021"}, // from 29 February
        {"DateAdd", {"q", -1, moment}, "Date 10/31/2019 6:00:00 PM"},
        {"DateAdd", {"d", 1, moment}, "Date 2/1/2020 6:00:00 PM"},
        {"DateAdd", {"ww", 2, moment}, "Date 2/14/2020 6:00:00 PM"},
        {"DateAdd", {"h", 6, moment}, "Date 2/1/2020"},
        {"DateAdd", {"n", -1, date(0)}, "Date 12/29/1899 11:59:00 PM"},
        {"DateAdd", {"s", 1, date(2958465.99999)}, "Error 5"},
        {"DateAdd", {"yyyy", 9000, moment}, "Error 5"},
        {"DateAdd", {"x", 1, moment}, "Error 5"},
        {"DateAdd", {"m", 1, "9999-11-30"}, "Date 12/30/9999"},
        {"DateDiff", {"yyyy", "2019-12-31", "2020-01-01"}, "Long 1"},
        {"DateDiff", {"q", "2019-12-31", "2020-04-01"}, "Long 2"},
        {"DateDiff", {"m", "2020-03-01", "2020-01-31"}, "Long -2"},
        {"DateDiff", {"d", "2020-01-01 23:59:59", "2020-01-02"}, "Long 1"},
        {"DateDiff", {"w", "2020-01-01", "2020-01-14"}, "Long 1"},
        {"DateDiff", {"ww", "2020-01-04", "2020-01-05"}, "Long 1"}, // Saturday, Sunday
        {"DateDiff", {"ww", "2020-01-04", "2020-01-05", 2}, "Long 0"},
        {"DateDiff", {"h", "10:59:59", "11:00"}, "Long 1"},
        {"DateDiff", {"n", "1899-12-29 12:00", "1899-12-30"}, "Long 720"},
        {"DateDiff", {"s", "2000-01-01", "2000-01-02"}, "Long 86400"},
        {"DateDiff", {"s", "1900-01-01", "2000-01-02"}, "Error 6"},
        {"DateDiff", {"d", kNull, "2000-01-02"}, "Null"},
        {"DatePart", {"q", moment}, "Integer 1"},
        {"DatePart", {"y", "2020-12-31"}, "Integer 366"},
        {"DatePart", {"w", moment, 2}, "Integer 5"},
        {"DatePart", {"ww", "2020-01-05"}, "Integer 2"},
        {"DatePart", {"ww", "2021-01-03", 2, 2}, "Integer 53"},
        {"DatePart", {"ww", "2018-12-31", 2, 2}, "Integer 1"},
        {"DatePart", {"ww", "2020-01-05", 1, 3}, "Integer 1"},
        {"DatePart", {"ww", "2020-01-04", 1, 3}, "Integer 52"},
        {"DatePart", {"h", moment}, "Integer 18"},
        {"DatePart", {"h", kNull}, "Null"},
        {"DatePart", {"h", moment, 9}, "Error 5"},
    });
    const double before = to_double(call("Now", {}));
    EXPECT_LE(before, to_double(call("Date", {})) + 1);
    EXPECT_LT(to_double(call("Time", {})), 1);
    EXPECT_LT(to_double(call("Timer", {})), 86400);
}

TEST(Library, ConversionAndTypes) {
    const auto items = make_ref<Collection>();
    check({
        {"CInt", {"2.5"}, "Integer 2"},
        {"CInt", {kNull}, "Error 94"},
        {"CInt", {kNothing}, "Error 91"},
        {"CBool", {""}, "Error 13"},
        {"CByte", {256}, "Error 6"},
        {"CLng", {"&HFFFFFFFF"}, "Long -1"},
        {"CSng", {0.1}, "Single 0.1"},
        {"CDbl", {"1e3"}, "Double 1000"},
        {"CCur", {1.23456}, "Currency 1.2346"},
        {"CDate", {"2020-01-31"}, "Date 1/31/2020"},
        {"CStr", {1.5}, "String 1.5"},
        {"CStr", {date(43861)}, "String 1/31/2020"},
        {"CStr", {kNull}, "Error 94"},
        {"CStr", {}, "Error 450"},
        {"IsArray", {list({})}, "Boolean True"},
        {"IsArray", {Variant::byte_array("")}, "Boolean True"},
        {"IsArray", {1}, "Boolean False"},
        {"IsDate", {"2020-01-31"}, "Boolean True"},
        {"IsDate", {kNull}, "Boolean False"},
        {"IsEmpty", {kEmpty}, "Boolean True"},
        {"IsEmpty", {""}, "Boolean False"},
        {"IsEmpty", {kNothing}, "Boolean False"},
        {"IsNull", {kNull}, "Boolean True"},
        {"IsNull", {items}, "Boolean False"}, // its default member asks for an argument
        {"IsNumeric", {"1,000.5"}, "Boolean True"},
        {"IsNumeric", {"abc"}, "Boolean False"},
        {"IsNumeric", {kNull}, "Boolean False"},
        {"IsNumeric", {items}, "Boolean False"},
        {"IsObject", {kNothing}, "Boolean True"},
        {"IsObject", {items}, "Boolean True"},
        {"IsObject", {1}, "Boolean False"},
        {"TypeName", {kNothing}, "String Nothing"},
        {"TypeName", {items}, "String Collection"},
        {"TypeName", {list({})}, "String Variant()"},
        {"TypeName", {byte(1)}, "String Byte"},
        {"TypeName", {Variant::byte_array("")}, "String Byte()"},
        {"TypeName", {kMissing}, "String Error"},
        {"VarType", {list({})}, "Integer 8204"},
        {"VarType", {"x"}, "Integer 8"},
        {"VarType", {kNothing}, "Integer 9"},
        {"VarType", {items}, "Integer 9"},
        {"Array", {}, "Array()"},
        {"Array", {1, "b", kNull}, "Array(Long 1, String b, Null)"},
        {"UBound", {list({1, 2})}, "Long 1"},
        {"UBound", {list({})}, "Long -1"},
        {"UBound", {make_ref<Array>(std::vector<std::int32_t>{1, 5}, false), 2}, "Long 5"},
        {"UBound", {list({1}), 2}, "Error 9"},
        {"UBound", {list({1}), 0}, "Error 9"},
        {"UBound", {make_ref<Array>()}, "Error 9"},
        {"UBound", {"abc"}, "Error 13"},
        {"UBound", {Variant::byte_array("abc")}, "Long 2"},
        {"LBound", {list({})}, "Long 0"},
        {"LBound", {kEmpty}, "Error 13"},
    });
}

TEST(Library, Formatting) {
    check({
        {"FormatNumber", {1234.567}, "String 1,234.57"},
        {"FormatNumber", {2.5, 0}, "String 3"},
        {"FormatNumber", {0.125, 2}, "String 0.13"},
        {"FormatNumber", {1.005, 2}, "String 1.01"},
        {"FormatNumber", {999.995, 2}, "String 1,000.00"},
        {"FormatNumber", {-0.001, 2}, "String 0.00"},
        {"FormatNumber", {0.0567, 1}, "String 0.1"},
        {"FormatNumber", {-1234.5, 1, -2, -1}, "String (1,234.5)"},
        {"FormatNumber", {0.5, 2, 0}, "String .50"},
        {"FormatNumber", {0.2, 0, 0}, "String 0"},
        {"FormatNumber", {1234567, 0, -2, -2, 0}, "String 1234567"},
        {"FormatNumber", {123456, 0}, "String 123,456"},
        {"FormatNumber", {"1e3"}, "String 1,000.00"},
        {"FormatNumber", {true}, "String -1.00"},
        {"FormatNumber", {kEmpty}, "String 0.00"},
        {"FormatNumber", {1e15, 0}, "String 1,000,000,000,000,000"},
        {"FormatNumber", {kNull}, "Error 13"},
        {"FormatNumber", {"x"}, "Error 13"},
        {"FormatNumber", {1, 256}, "Error 5"},
        {"FormatNumber", {1, 1, 5}, "Error 5"},
        {"FormatNumber", {Variant::longlong(9007199254740993), 0}, "String 9,007,199,254,740,993"},
        {"FormatCurrency", {-1234.5}, "String ($1,234.50)"},
        {"FormatCurrency", {-1234.5, 0, -2, 0}, "String -$1,235"},
        {"FormatCurrency", {Variant::currency(9223372036854775807), 4}, "String $922,337,203,685,477.5807"},
        {"FormatPercent", {0.12345}, "String 12.35%"},
        {"FormatPercent", {1, 0}, "String 100%"},
        {"FormatPercent", {0}, "String 0.00%"},
        {"FormatDateTime", {date(43861.75)}, "String 1/31/2020 6:00:00 PM"},
        {"FormatDateTime", {date(43861.75), 1}, "String Friday, January 31, 2020"},
        {"FormatDateTime", {date(43861.75), 2}, "String 1/31/2020"},
        {"FormatDateTime", {date(43861.75), 3}, "String 6:00:00 PM"},
        {"FormatDateTime", {date(43861.75), 4}, "String 18:00"},
        {"FormatDateTime", {date(43861.75), 5}, "Error 5"},
        {"FormatDateTime", {kNull}, "Error 13"},
    });
    const LocaleScope german(*Locale::find(1031));
    check({
        {"FormatCurrency", {-1234.5}, "String -1.234,50\u00A0€"},
        {"FormatDateTime", {date(43861), 1}, "String Freitag, 31. Januar 2020"},
        {"MonthName", {3}, "String März"},
        {"WeekdayName", {1, false, 0}, "String Montag"},
        {"CDbl", {"1.234,5"}, "Double 1234,5"},
    });
}

TEST(Library, LocaleAndEngine) {
    const LocaleScope scope(Locale::current());
    check({
        {"GetLocale", {}, "Long 1033"},
        {"SetLocale", {"de"}, "Long 1033"},
        {"CStr", {1.5}, "String 1,5"},
        {"SetLocale", {2057}, "Long 1031"},
        {"SetLocale", {}, "Long 2057"},
        {"SetLocale", {4711}, "Error 447"},
        {"SetLocale", {"xx"}, "Error 447"},
        {"GetLocale", {}, "Long 1033"},
        {"ScriptEngine", {}, "String TabrixScript"},
        {"ScriptEngineMajorVersion", {}, "Long 5"},
    });
}

TEST(Library, NamesIgnoreCaseAndConstantsHaveTheirTypes) {
    EXPECT_NE(find_library_function("INSTRREV"), nullptr);
    EXPECT_EQ(find_library_function("InStrRe"), nullptr);
    const auto constant = [](const char* name) {
        const Variant* value = find_library_constant(name);
        return value ? testing::describe(*value) : "none";
    };
    EXPECT_EQ(constant("VBCRLF"), "String \r\n");
    EXPECT_EQ(constant("vbNullChar").size(), std::string("String ").size() + 1);
    EXPECT_EQ(constant("vbTrue"), "Integer -1");
    EXPECT_EQ(constant("vbObjectError"), "Long -2147221504");
    EXPECT_EQ(constant("vbBlue"), "Long 16711680");
    EXPECT_EQ(constant("vbArray"), "Integer 8192");
    EXPECT_EQ(constant("vbNothingLikeIt"), "none");
}

// Mid, Left, Right, InStr, InStrRev and StrReverse on random texts against the same on arrays of units.
TEST(Library, PositionsAreUtf16Units) {
    std::mt19937 random(42);
    const auto pick = [&random](std::size_t below) { return static_cast<std::size_t>(random() % below); };
    const std::string_view alphabet[] = {"a", "b", "é", "€", "😀"};
    const auto utf8 = [](std::u16string_view units) {
        std::string out;
        append_utf16(out, {reinterpret_cast<const char*>(units.data()), units.size() * 2});
        return out;
    };
    for (int round = 0; round < 3000; ++round) {
        std::string text;
        for (std::size_t n = pick(12); n > 0; --n)
            text += alphabet[pick(round % 3 ? 5 : 2)];
        const std::string bytes = to_utf16(text);
        std::u16string units(bytes.size() / 2, u' ');
        std::copy(bytes.begin(), bytes.end(), reinterpret_cast<char*>(units.data()));
        const std::size_t start = pick(units.size() + 2), count = pick(units.size() + 2);
        const auto whole = [](std::size_t value) { return Variant(static_cast<std::int32_t>(value)); };
        const auto from = std::min(start, units.size());
        EXPECT_EQ(to_text(call("Mid", {text, whole(start + 1), whole(count)})).view(),
                  utf8(units.substr(from, count)));
        EXPECT_EQ(to_text(call("Left", {text, whole(count)})).view(), utf8(units.substr(0, count)));
        const std::size_t kept = std::min(count, units.size());
        EXPECT_EQ(to_text(call("Right", {text, whole(count)})).view(),
                  utf8(units.substr(units.size() - kept)));
        EXPECT_EQ(to_text(call("StrReverse", {text})).view(),
                  utf8(std::u16string(units.rbegin(), units.rend())));

        const std::string wanted(alphabet[pick(5)]);
        const std::string wanted_bytes = to_utf16(wanted);
        std::u16string wanted_units(wanted_bytes.size() / 2, u' ');
        std::copy(wanted_bytes.begin(), wanted_bytes.end(), reinterpret_cast<char*>(wanted_units.data()));
        EXPECT_EQ(to_long(call("InStr", {whole(start + 1), text, wanted})),
                  static_cast<std::int32_t>(start < units.size() ? units.find(wanted_units, start) + 1 : 0));
        EXPECT_EQ(to_long(call("InStrRev", {text, wanted})),
                  static_cast<std::int32_t>(units.rfind(wanted_units) + 1));
        // What was cut apart comes together again.
        const Variant left = call("Left", {text, whole(from)}), right = call("Mid", {text, whole(from + 1)});
        Text joined = left.text();
        joined.append(right.text());
        EXPECT_EQ(joined.view(), text);
        EXPECT_EQ(joined.units(), units.size());
    }
}

} // namespace
} // namespace tabrixdb::vbscript
