#include "automation/conversions.h"
#include "automation/display_format.h"

#include <string>

#include <gtest/gtest.h>

namespace tabrixdb {
namespace {

std::string formatted(const Variant& value, const char* format) {
    std::string out;
    DisplayFormat(format).append(out, value);
    return out;
}

TEST(DisplayFormat, NumbersDatesAndText) {
    const Variant evening = Variant::date(date_serial(2026, 3, 5) + time_serial(21, 4, 9));

    const struct {
        Variant value;
        const char* format;
        std::string text;
    } cases[] = {
        {1234.5, "#,##0.00", "1,234.50"},
        {-1234.5, "#,##0.00", "-1,234.50"},
        {-1234.5, "#,##0.00;(#,##0.00)", "(1,234.50)"},
        {0.0, "0.0;-0.0;none", "none"},
        {Variant::null(), "0;0;0;nothing", "nothing"},
        {Variant::null(), "0.00", ""},
        {0.5, "#.##", ".5"},
        {5.0, "#.##", "5."},
        {2.5, "0", "3"}, // halves away from zero
        {0.125, "0.00", "0.13"},
        {0.256, "0.0%", "25.6%"},
        {1234567.0, "0,.0", "1234.6"},
        {7.0, "000", "007"},
        {123456789.0, "000-00-0000", "123-45-6789"},
        {1234.0, "0.00E+00", "1.23E+03"},
        {0.00012, "0.0e-0", "1.2e-4"},
        {12.0, "\\$0 \"pieces\"", "$12 pieces"},
        {Variant::currency(12345678), "Standard", "1,234.57"},
        {-3.0, "Currency", "($3.00)"},
        {0.0, "Yes/No", "No"},
        {true, "On/Off", "On"},
        {"12.5", "0.00", "12.50"},
        {"twelve", "0.00", "twelve"},
        {evening, "dd mmm yyyy", "05 Mar 2026"},
        {evening, "dddd, d mmmm yy", "Thursday, 5 March 26"},
        {evening, "h:mm AM/PM", "9:04 PM"},
        {evening, "hh:nn:ss", "21:04:09"},
        {evening, "m/d", "3/5"},
        {evening, "q w ww y", "1 5 10 64"},
        {evening, "Short Date", "3/5/2026"},
        {evening, "General Date", "3/5/2026 9:04:09 PM"},
        {"2026-03-05", "yyyy\\-mm", "2026-03"},
        {"not a date", "yyyy", "not a date"},
        {Variant::null(), "yyyy", ""},
        {"abc", ">@@@@", " ABC"},
        {"abc", "!@@@@x", "abc x"},
        {"abcde", "@-@@", "abc-de"},
        {"ABC", "<&&&&", "abc"},
        {"5551234", "@@@-@@@@", "555-1234"},
        {"", "@@;empty", "empty"},
        {"plain", "", "plain"},
    };

    for (const auto& [value, format, text] : cases)
        EXPECT_EQ(formatted(value, format), text) << format;
}

TEST(DisplayFormat, FollowsTheLocale) {
    const LocaleScope german(*Locale::find(1031));
    EXPECT_EQ(formatted(-1234.5, "#,##0.00"), "-1.234,50");
    EXPECT_EQ(formatted(Variant::date(date_serial(2026, 3, 5)), "d. mmmm yyyy"), "5. März 2026");
}

} // namespace
} // namespace tabrixdb
