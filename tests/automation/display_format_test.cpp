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

Variant days(int year, int month, int day) {
    return Variant::date(date_serial(year, month, day));
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
        {0.5, "0", "1"},
        {0.256, "0.0%", "25.6%"},
        {0.256, "%0", "%26"},
        {12.5, ".00", "12.50"},
        {-5.0, "$0.00", "-$5.00"},
        {-5.0, "\"any\"", "any"},
        {1234.5, "0.0.0", "1234.5.0"},
        {0.0, "00E+0", "00E+0"},
        {1e9, "0.0E+#", "1.0E+9"},
        {-0.001, "Currency", "($0.00)"},
        {Variant(), "0.0", "0.0"},
        {Variant::null(), "0;;;nil", "nil"},
        {true, "General Number", "-1"},
        {evening, "0.00", "46086.88"},
        {"2026-03-05", "0.00", "2026-03-05"}, // no number
        {1e300, "Short Date", "1E+300"},      // no date
        {1234567.0, "0,.0", "1234.6"},
        {1234567.0, "#,##0,", "1,235"},
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
        {evening, "AM/PM h", "PM 9"},
        {evening, "h:nn a/p", "9:04 p"},
        {evening, "h/m s m", "21/4 9 3"}, // minutes right after hours only
        {evening, "m/d", "3/5"},
        {evening, "yyy mmmmm;d", "2664 March3"}, // the longest placeholder first; one section
        {days(2005, 1, 1), "ww w", "1 7"},
        {days(2005, 1, 2), "ww w", "2 1"},
        {days(2006, 12, 31), "ww y", "53 365"},
        {days(2000, 12, 31), "ww y", "54 366"}, // a leap year that starts on a Saturday
        {days(1899, 12, 29), "Long Time", "12:00:00 AM"},
        {days(1899, 12, 29), "Medium Date", "29-Dec-99"},
        {days(100, 1, 1), "yyyy/m/d", "100/1/1"},
        {evening, "q w ww y", "1 5 10 64"},
        {evening, "Short Date", "3/5/2026"},
        {evening, "General Date", "3/5/2026 9:04:09 PM"},
        {"2026-03-05", "yyyy\\-mm", "2026-03"},
        {"39697.11", "hh:mm", "02:38"},
        {"not a date", "yyyy", "not a date"},
        {"", "yyyy", ""},
        {Variant::null(), "yyyy", ""},
        {"abc", ">@@@@", " ABC"},
        {"abc", "!@@@@x", "abc x"},
        {"abcde", "@-@@", "a-bcde"}, // what finds no place follows
        {"abc", "&&-&&", "a-bc"},
        {"abc", "!&&&&x", "abcx"},
        {"Abc", "@@@@", " Abc"},
        {"éa", ">@<@", "éa"},
        {"éa", ">", "ÉA"},
        {Variant::null(), "@@", ""},
        {Variant::null(), "@@;none", "none"},
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
