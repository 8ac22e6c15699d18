#include "automation/conversions.h"
#include "automation/error.h"
#include "automation/text.h"
#include "template/bound_code.h"

#include <gtest/gtest.h>

namespace tabrixdb {
namespace {

// "{value}" in the code is a value, "{!value}" one that the query has made. The result with its values behind
// it.
template <class Bind>
std::string bound(std::string_view code, Bind bind) {
    HeldValues held(false);
    std::string marked;
    for (std::size_t at = 0; at < code.size();) {
        if (code[at] != '{') {
            marked += code[at++];
            continue;
        }
        const bool computed = code[at + 1] == '!';
        const std::size_t from = at + (computed ? 2 : 1), end = code.find('}', at);
        marked += held.hold({std::string(code.substr(from, end - from)), "c", computed});
        at = end + 1;
    }
    try {
        const BoundCode result = bind(marked, held);
        std::string text = result.text;
        for (const Variant& value : result.values)
            text += "|" + to_text(value).str();
        return text;
    } catch (const Error& error) {
        return error.description().find("TrustValues") != std::string::npos ? "refused" : "?";
    }
}

struct Case {
    std::string_view code, expected;
};

TEST(BoundCode, OfQueries) {
    constexpr Case kCases[] = {
        {"a = '{x}'", "a = ?|x"},
        {"a = 'O''{x'; drop}''s' and b = 'plain'", "a = ? and b = 'plain'|O'x'; drop's"},
        {"a like '%{x}%' and b = N'{y}'", "a like ? and b = ?|%x%|y"},
        {"un'{x}' ", "un? |x"},
        {"a = \"{x\"}\"", "a = ?|x\""},
        {"a = '{!O''Neil}' and b = '{O''Neil}'", "a = ? and b = ?|O'Neil|O''Neil"},
        {"a = '{!it's}' and b = '{!''''}'", "a = ? and b = ?|it's|''"},
        {"a = {12} and b in ({1, -2,3.5e2})", "a = 12 and b in (1, -2,3.5e2)"},
        {"a = 5-{-1}", "a = 5- -1"},
        {"a = {True} or b = #{2026-03-05}# or c = {5/3/2026}",
         "a = True or b = #2026-03-05# or c = 5/3/2026"},
        {"a = {}", "a = "},
        {"[it's {4}] = '{x}'", "[it's 4] = ?|x"},
        {"a -- {x\n} '\n= '{y}' /* {x*/} ' */", "a --  '\n= ? /*  ' */|y"},
        {"a = '{x}", "a = ?|x"},
        {"a = {1 or 1=1}", "refused"},
        {"a = {1;}", "refused"},
        {"order by {name}", "refused"},
        {"[{name}] = 1", "refused"},
        {"a = #{x# or 1=1}#", "refused"},
        {"a in ({1,})", "refused"},
        {"a = {--1}", "refused"},
    };
    for (const Case& tested : kCases)
        EXPECT_EQ(bound(tested.code, bind_query), tested.expected) << tested.code;
}

TEST(BoundCode, OfExpressions) {
    constexpr Case kCases[] = {
        {"UCase(\"{x}\")", "UCase( TabrixDb_Value_0 )|x"},
        {"\"a\"\"{\"& 1}\"&\"b\"", " TabrixDb_Value_0 &\"b\"|a\"\"& 1"},
        {"\"{!a\"\"b}\"", " TabrixDb_Value_0 |a\"b"},
        {"{7} * 2 + {40000} + {1.50}",
         " TabrixDb_Value_0  * 2 +  TabrixDb_Value_1  +  TabrixDb_Value_2 |7|40000|1.5"},
        {"{-2}^2 & x{3} & {4}{5} & &{6}", "-2^2 & x3 & 45 & &6"},
        {"{True} And Year(#{2 Jan 2026}#)", "True And Year(#2 Jan 2026#)"},
        {"1 ' {x\n} \"", "1 '  \""},
        {"{1,234}", "refused"},
        {"{x}", "refused"},
        {"{1:Stop}", "refused"},
        {"#{1\n2}#", "refused"},
    };
    for (const Case& tested : kCases)
        EXPECT_EQ(bound(tested.code, bind_expression), tested.expected) << tested.code;
}

} // namespace
} // namespace tabrixdb
