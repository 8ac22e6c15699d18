#include "automation/collection.h"
#include "automation/operators.h"
#include "tests/automation/describe.h"

#include <climits>
#include <cmath>
#include <limits>
#include <random>

#include <gtest/gtest.h>

namespace tabrixdb {
namespace {

using testing::describe;
using testing::outcome;
using Binary = Variant (*)(const Variant&, const Variant&);

Variant i(int value) {
    return static_cast<std::int16_t>(value);
}

Variant l(std::int32_t value) {
    return value;
}

Variant ll(std::int64_t value) {
    return Variant::longlong(value);
}

Variant s(double value) {
    return Variant::single(static_cast<float>(value));
}

Variant cy(double value) {
    return Variant::currency(std::llround(value * 10000));
}

const Variant kEmpty, kNull = Variant::null(), kNothing = Variant::nothing();
const auto byte = Variant::byte;
const auto date = Variant::date;
constexpr auto kMaxCurrency = std::numeric_limits<std::int64_t>::max();

Variant join(const Variant& a, const Variant& b) {
    return concatenate(a, b);
}

struct Case {
    Binary operation;
    Variant a, b;
    std::string expected;
};

TEST(Operators, GiveTheLanguagesTypesAndValues) {
    const Case cases[] = {
        {add, i(2), i(3), "Integer 5"},
        {add, i(32767), i(1), "Long 32768"},
        {add, i(1), l(1), "Long 2"},
        {add, l(INT_MAX), i(1), "Double 2147483648"},
        {add, byte(200), byte(55), "Byte 255"},
        {add, byte(200), byte(56), "Integer 256"},
        {add, true, true, "Integer -2"},
        {add, kEmpty, kEmpty, "Integer 0"},
        {add, kEmpty, "x", "String x"},
        {add, "1", "2", "String 12"},
        {add, "1", i(2), "Double 3"},
        {add, "x", i(2), "Error 13"},
        {add, "", i(2), "Error 13"},
        {add, kNull, "x", "Null"},
        {add, s(0.5), i(1), "Single 1.5"},
        {add, s(0.5), l(1), "Double 1.5"},
        {add, s(3e38), s(3e38), "Double 6.00000001099551E+38"},
        {add, cy(1.5), i(2), "Currency 3.5"},
        {add, cy(1.5), 0.25, "Double 1.75"},
        {add, Variant::currency(kMaxCurrency), cy(1), "Error 6"},
        {add, date(43831), i(1), "Date 1/2/2020"},
        {add, date(2958465), i(1), "Double 2958466"},
        {add, ll(9007199254740993), i(1), "LongLong 9007199254740994"},
        {add, ll(INT64_MAX), i(1), "Double 9.22337203685478E+18"},
        {add, 1e308, 1e308, "Error 6"},
        {add, kNothing, i(1), "Error 91"},
        {add, Variant::missing(), i(1), "Error 13"},
        {subtract, i(-32768), i(1), "Long -32769"},
        {subtract, byte(1), byte(2), "Integer -1"},
        {subtract, date(43832), date(43831), "Double 1"},
        {subtract, date(43832), i(1), "Date 1/1/2020"},
        {subtract, "5", "3", "Double 2"},
        {multiply, i(200), i(200), "Long 40000"},
        {multiply, l(100000), l(100000), "Double 10000000000"},
        {multiply, byte(16), byte(16), "Integer 256"},
        {multiply, cy(0.0001), cy(0.5), "Currency 0"}, // 0.00005 goes to the even neighbour
        {multiply, cy(0.0003), cy(0.5), "Currency 0.0002"},
        {multiply, cy(-0.0003), cy(0.5), "Currency -0.0002"},
        {multiply, cy(922337203685477), i(10), "Error 6"},
        {multiply, ll(3037000500), ll(3037000500), "Double 9.22337203700025E+18"},
        {multiply, date(1.5), i(2), "Double 3"},
        {divide, i(6), i(3), "Double 2"},
        {divide, s(1), s(4), "Single 0.25"},
        {divide, s(1), l(4), "Double 0.25"},
        {divide, cy(1), cy(4), "Double 0.25"},
        {divide, i(1), i(0), "Error 11"},
        {divide, kNull, i(0), "Null"},
        {integer_divide, 7.5, i(2), "Long 4"},
        {integer_divide, 6.5, i(2), "Long 3"}, // 6.5 rounds to 6
        {integer_divide, i(-7), i(2), "Integer -3"},
        {integer_divide, byte(7), byte(2), "Byte 3"},
        {integer_divide, i(7), 0.4, "Error 11"},
        {integer_divide, 3e9, i(2), "Error 6"},
        {integer_divide, ll(INT64_MIN), i(-1), "Double 9.22337203685478E+18"},
        {integer_divide, i(-32768), i(-1), "Long 32768"},
        {modulo, i(-7), i(3), "Integer -1"},
        {modulo, "10", "4", "Long 2"},
        {modulo, ll(INT64_MIN), i(-1), "LongLong 0"},
        {modulo, i(7), kEmpty, "Error 11"},
        {power, i(2), i(10), "Double 1024"},
        {power, i(-8), 1.0 / 3, "Error 5"},
        {power, i(0), i(-1), "Error 5"},
        {power, i(10), i(400), "Error 6"},
        {join, "a", i(5), "String a5"},
        {join, kNull, "b", "String b"},
        {join, kNull, kNull, "Null"},
        {join, kEmpty, kEmpty, "String "},
        {join, true, 1.5, "String True1.5"},
        {join, "a", Variant::error(5), "Error 13"},
        {join, Text::bytes("A"), Text::bytes("B"), "String b\"4142\""},
        {join, "é", Text::bytes("B"), "String b\"E90042\""},
        {logical_and, true, false, "Boolean False"},
        {logical_and, i(12), i(10), "Integer 8"},
        {logical_and, "5", "3", "Long 1"},
        {logical_and, "abc", i(1), "Error 13"},
        {logical_and, kEmpty, kEmpty, "Long 0"},
        {logical_and, i(0), kNull, "Integer 0"},
        {logical_and, true, kNull, "Null"},
        {logical_and, byte(7), true, "Integer 7"},
        {logical_and, 3e9, i(1), "Error 6"},
        {logical_or, i(-1), kNull, "Integer -1"},
        {logical_or, false, kNull, "Null"},
        {logical_or, byte(1), byte(2), "Byte 3"},
        {logical_xor, true, true, "Boolean False"},
        {logical_xor, i(6), l(3), "Long 5"},
        {logical_xor, kNull, i(1), "Null"},
        {logical_eqv, true, false, "Boolean False"},
        {logical_eqv, i(6), i(6), "Integer -1"},
        {logical_eqv, byte(1), byte(1), "Byte 255"},
        {logical_imp, true, false, "Boolean False"},
        {logical_imp, false, kNull, "Boolean True"},
        {logical_imp, kNull, true, "Boolean True"},
        {logical_imp, kNull, false, "Null"},
        {logical_imp, kNull, kNull, "Null"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(outcome([&] { return c.operation(c.a, c.b); }), c.expected)
            << describe(c.a) << " with " << describe(c.b);
}

TEST(Operators, OfOneOperand) {
    const struct {
        Variant (*operation)(const Variant&);
        Variant value;
        std::string expected;
    } cases[] = {
        {negate, i(-32768), "Long 32768"},
        {negate, l(INT_MIN), "Double 2147483648"},
        {negate, byte(5), "Integer -5"},
        {negate, true, "Integer 1"},
        {negate, "2.5", "Double -2.5"},
        {negate, cy(2.5), "Currency -2.5"},
        {negate, kNull, "Null"},
        {negate, kEmpty, "Integer 0"},
        {negate, "x", "Error 13"},
        {logical_not, i(5), "Integer -6"},
        {logical_not, byte(1), "Byte 254"},
        {logical_not, true, "Boolean False"},
        {logical_not, "True", "Boolean False"},
        {logical_not, kEmpty, "Long -1"},
        {logical_not, kNull, "Null"},
        {logical_not, 2.5, "Long -3"},
    };

    for (const auto& c : cases)
        EXPECT_EQ(outcome([&] { return c.operation(c.value); }), c.expected) << describe(c.value);
}

TEST(Operators, Compare) {
    constexpr Literals none, left{true, false}, right{false, true}, both{true, true};

    const struct {
        Variant a, b;
        Literals literals;
        std::string expected; // one of < = > ? or the error
    } cases[] = {
        {i(1), l(2), none, "<"},
        {"10", i(9), none, ">"}, // any text beside a number that is no literal
        {"abc", i(9), none, ">"},
        {i(9), "10", none, "<"},
        {"010", i(10), right, "="},
        {"010", i(10), left, "<"}, // as texts
        {"10", byte(5), left, "<"},
        {"010", i(10), both, "="},
        {"&hff", i(255), right, "="},
        {" 5", i(5), right, "="},
        {"", i(5), right, "Error 13"},
        {"abc", i(5), right, "Error 13"},
        {i(5), "abc", left, "Error 13"},
        {"abc", i(5), left, ">"},
        {"1", true, right, "<"},
        {"true", true, right, ">"}, // "true" and "True" differ
        {"True", true, right, "="},
        {"1/2/2020", date(43832), right, "="},
        {"x", date(43832), right, "Error 13"},
        {kEmpty, i(0), none, "="},
        {kEmpty, "", none, "="},
        {"a", kEmpty, none, ">"},
        {kEmpty, false, none, "="},
        {kNull, kNull, none, "?"},
        {kNull, i(1), none, "?"},
        {"B", "a", none, "<"},
        {"a", "ab", none, "<"},
        {"", "a", none, "<"},
        {"\U0001F600", "\uFF21", none, "<"}, // by UTF-16 units, not by code points
        {"\uFF21", "\U0001F600", none, ">"},
        {cy(0.1), ll(0), none, ">"},
        {ll(9007199254740993), ll(9007199254740992), none, ">"},
        {Variant::currency(kMaxCurrency), ll(922337203685477), none, ">"},
        {true, i(-1), none, "="},
        {date(2.5), 2.5, none, "="},
        {kNothing, i(1), none, "Error 91"},
        {Text::bytes(std::string_view("a\0", 2)), "a", none, "="},
        {Variant::byte_array("a"), "a", none, "Error 13"},
    };

    for (const auto& c : cases) {
        std::string found;
        try {
            found = "<=>?"[static_cast<int>(compare(c.a, c.b, c.literals)) + 1];
        } catch (const Error& error) {
            found = "Error " + std::to_string(error.number());
        }
        EXPECT_EQ(found, c.expected) << describe(c.a) << " with " << describe(c.b);
    }
    EXPECT_EQ(compare("Größe", "GRÖSSE"), Order::Greater);
    EXPECT_EQ(compare("Größe", "GRÖßE", {}, true), Order::Equal);
}

TEST(Operators, ConditionsAreNullSafe) {
    EXPECT_FALSE(is_true(kNull));
    EXPECT_FALSE(is_true(kEmpty));
    EXPECT_TRUE(is_true(0.5));
    EXPECT_TRUE(is_true("true"));
    EXPECT_TRUE(is_true("-3"));
    EXPECT_THROW(is_true("abc"), Error);
    EXPECT_THROW(is_true(kNothing), Error);
}

TEST(Operators, ConcatenationGrowsTheTextInPlace) {
    Variant text("start");
    text = concatenate(std::move(text), std::string(1000, 'x'));
    text = concatenate(std::move(text), "y");
    const char* const grown = text.text().view().data();
    text = concatenate(std::move(text), "y"); // within the doubled room
    EXPECT_EQ(text.text().view().data(), grown);
    const Variant other = text;
    text = concatenate(std::move(text), "z"); // another holder keeps its own
    EXPECT_EQ(other.text().size() + 1, text.text().size());
    text = concatenate(text, text);
    EXPECT_EQ(text.text().size(), 2 * (other.text().size() + 1));
}

// Arithmetic on random whole numbers against the exact result in a wider type.
TEST(Operators, WholeArithmeticIsExactOrGrows) {
    std::mt19937 random(20240131);
    std::uniform_int_distribution<std::int32_t> pick(INT_MIN, INT_MAX);
    for (int round = 0; round < 2000; ++round) {
        const std::int32_t a = pick(random) >> (round % 20), b = pick(random) >> (round % 13);
        EXPECT_EQ(to_double(add(a, b)), static_cast<double>(std::int64_t{a} + b));
        EXPECT_EQ(to_double(subtract(a, b)), static_cast<double>(std::int64_t{a} - b));
        EXPECT_EQ(to_double(multiply(a, b)), static_cast<double>(std::int64_t{a} * b));
        if (b == 0)
            continue;
        const Variant quotient = integer_divide(a, b), rest = modulo(a, b);
        EXPECT_EQ(to_double(quotient) * b + to_double(rest), a);
    }
}

} // namespace
} // namespace tabrixdb
