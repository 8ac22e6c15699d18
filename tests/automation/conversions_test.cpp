#include "automation/collection.h"
#include "automation/conversions.h"
#include "automation/locale.h"
#include "tests/automation/describe.h"

#include <chrono>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>

#include <gtest/gtest.h>

namespace tabrixdb {
namespace {

using testing::describe;
using testing::outcome;

const Variant kNull = Variant::null();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(Conversions, FollowTheLanguagesRules) {
    const struct {
        Type type;
        Variant value;
        std::string expected;
    } cases[] = {
        {Type::Integer, 2.5, "Integer 2"},
        {Type::Integer, 3.5, "Integer 4"},
        {Type::Integer, -2.5, "Integer -2"},
        {Type::Integer, "2.5", "Integer 2"},
        {Type::Integer, 32767.4, "Integer 32767"},
        {Type::Integer, 32767.5, "Error 6"},
        {Type::Integer, "&HFFFF", "Integer -1"},
        {Type::Integer, true, "Integer -1"},
        {Type::Integer, "", "Error 13"},
        {Type::Integer, Variant(), "Integer 0"},
        {Type::Integer, kNull, "Error 94"},
        {Type::Integer, Variant::nothing(), "Error 91"},
        {Type::Integer, Variant::missing(), "Error 13"},
        {Type::Integer, Variant::byte_array("1"), "Error 13"},
        {Type::Integer, "1e400", "Error 6"},
        {Type::Byte, 255.5, "Error 6"},
        {Type::Byte, -1, "Error 6"},
        {Type::Byte, true, "Byte 255"},
        {Type::Long, "&HFFFF", "Long 65535"},
        {Type::Long, "&HFFFFFFFF", "Long -1"},
        {Type::Long, "&H100000000", "Error 6"},
        {Type::Long, "&O17", "Long 15"},
        {Type::Long, "&H8000&", "Long 32768"},
        {Type::Long, "1,234", "Long 1234"},
        {Type::Long, Variant::currency(25000), "Long 2"},
        {Type::Long, Variant::currency(-35000), "Long -4"},
        {Type::Long, Variant::currency(25001), "Long 3"},
        {Type::LongLong, "9223372036854775807", "LongLong 9223372036854775807"},
        {Type::LongLong, 9.3e18, "Error 6"},
        {Type::Single, 1e39, "Error 6"},
        {Type::Single, 0.1, "Single 0.1"},
        {Type::Double, Variant::date(1.5), "Double 1.5"},
        {Type::Double, "1e5", "Double 100000"},
        {Type::Double, "1D2", "Double 100"},
        {Type::Double, " -1,000.5 ", "Double -1000.5"},
        {Type::Double, "($1,000)", "Double -1000"},
        {Type::Double, "5-", "Double -5"},
        {Type::Double, "+5", "Double 5"},
        {Type::Double, ".5", "Double 0.5"},
        {Type::Double, "5.", "Double 5"},
        {Type::Double, "1e-400", "Double 0"},
        {Type::Double, "0.0e999", "Double 0"},
        {Type::Double, "-(5)", "Error 13"},
        {Type::Double, "--5", "Error 13"},
        {Type::Double, "(5", "Error 13"},
        {Type::Double, ",5", "Error 13"},
        {Type::Double, ".", "Error 13"},
        {Type::Double, "1e", "Error 13"},
        {Type::Double, "5 5", "Error 13"},
        {Type::Double, "&H", "Error 13"},
        {Type::Double, "&", "Error 13"},
        {Type::Double, "inf", "Error 13"},
        {Type::Double, "nan", "Error 13"},
        {Type::Currency, "922337203685477.5807", "Currency 922337203685477.5807"},
        {Type::Currency, "-922337203685477.5808", "Currency -922337203685477.5808"},
        {Type::Currency, "922337203685477.5808", "Error 6"},
        {Type::Currency, "1.00005", "Currency 1"}, // to even
        {Type::Currency, "1.00015", "Currency 1.0002"},
        {Type::Currency, "1.000050001", "Currency 1.0001"},
        {Type::Currency, "1e3", "Currency 1000"},
        {Type::Currency, "99999999999999999999999999", "Error 6"},
        {Type::Currency, 1e15, "Error 6"},
        {Type::Boolean, "TRUE", "Boolean True"},
        {Type::Boolean, "0", "Boolean False"},
        {Type::Boolean, 0.1, "Boolean True"},
        {Type::Boolean, "", "Error 13"},
        {Type::Date, 1, "Date 12/31/1899"},
        {Type::Date, 3e6, "Error 6"},
        {Type::Date, "x", "Error 13"},
        {Type::String, true, "String True"},
        {Type::String, kNull, "Error 94"},
        {Type::String, Variant::error(3), "Error 13"},
        {Type::String, Variant::byte_array("ab"), "String b\"6162\""},
        {Type::VariantArray, 1, "Error 13"},
    };

    for (const auto& c : cases)
        EXPECT_EQ(outcome([&] {
                      Variant result = convert(c.value, c.type);
                      return result.is_byte_array() ? Variant(result.text()) : result;
                  }),
                  c.expected)
            << describe(c.value);
}

TEST(Conversions, NumbersAsText) {
    const struct {
        double value;
        int digits;
        std::string expected;
    } cases[] = {
        {0, 15, "0"},
        {-0.0, 15, "0"},
        {0.1 + 0.2, 15, "0.3"},
        {-1.5, 15, "-1.5"},
        {1.0 / 3, 15, "0.333333333333333"},
        {1.0 / 30, 15, "3.33333333333333E-02"},
        {0.00001, 15, "0.00001"},
        {1.234567e-9, 15, "0.000000001234567"},
        {1.2345678e-9, 15, "1.2345678E-09"},
        {5e-15, 15, "0.000000000000005"},
        {5e-16, 15, "5E-16"},
        {123456789012345, 15, "123456789012345"},
        {999999999999999.9, 15, "1E+15"},
        {1e15, 15, "1E+15"},
        {-1.25e100, 15, "-1.25E+100"},
        {1.7976931348623157e308, 15, "1.79769313486232E+308"},
        {4.9e-324, 15, "4.94065645841247E-324"},
        {static_cast<double>(0.1f), 7, "0.1"},
        {16777216, 7, "1.677722E+07"},
        {static_cast<double>(1.0f / 3), 7, "0.3333333"},
        {kInfinity, 15, "1.#INF"},
    };

    for (const auto& c : cases)
        EXPECT_EQ(number_text(c.value, c.digits), c.expected);
    EXPECT_EQ(currency_text(std::numeric_limits<std::int64_t>::min()), "-922337203685477.5808");
    EXPECT_EQ(currency_text(-5), "-0.0005");
    EXPECT_EQ(currency_text(12500), "1.25");
}

// Every text must read back as the value that C's own 15-digit formatting gives.
TEST(Conversions, RandomNumbersKeepFifteenDigits) {
    std::mt19937_64 random(7);
    for (int round = 0; round < 3000; ++round) {
        const std::uint64_t bits = random();
        double value = 0;
        std::memcpy(&value, &bits, sizeof value);
        if (round % 2)
            value = std::ldexp(static_cast<double>(bits >> 11), static_cast<int>(bits % 120) - 100);
        if (!std::isfinite(value))
            continue;
        char expected[64];
        std::snprintf(expected, sizeof expected, "%.15g", value);
        const std::string text = number_text(value);
        EXPECT_EQ(parse_number(text).value_or(NAN), std::strtod(expected, nullptr)) << text;
    }
}

TEST(Conversions, RoundHalfToEven) {
    EXPECT_EQ(round_half_even(0.5), 0);
    EXPECT_EQ(round_half_even(1.5), 2);
    EXPECT_EQ(round_half_even(-0.5), 0);
    EXPECT_EQ(round_half_even(-1.5), -2);
    EXPECT_EQ(round_half_even(2.4999), 2);
}

TEST(Conversions, AppendTextTakesWhatPagesWrite) {
    std::string out;
    for (const Variant& value :
         {Variant("a"), kNull, Variant(), Variant::missing(), Variant(7), Variant(1.5),
          Variant(Text::bytes(std::string_view("x\0", 2))), Variant::longlong(INT64_MIN)})
        append_text(out, value);
    EXPECT_EQ(out, "a71.5x-9223372036854775808");
    EXPECT_THROW(append_text(out, Variant::nothing()), Error);
    EXPECT_THROW(append_text(out, Variant(make_ref<Array>())), Error);
}

TEST(Conversions, WhatIsNumericAndWhatIsADate) {
    EXPECT_TRUE(is_numeric("1,000"));
    EXPECT_TRUE(is_numeric(Variant()));
    EXPECT_TRUE(is_numeric(true));
    EXPECT_TRUE(is_numeric("&HFF"));
    EXPECT_FALSE(is_numeric(""));
    EXPECT_FALSE(is_numeric(kNull));
    EXPECT_FALSE(is_numeric(Variant::date(1)));
    EXPECT_FALSE(is_numeric("1e999"));
    EXPECT_FALSE(is_numeric(Variant::nothing()));
    EXPECT_TRUE(is_date(Variant::date(1)));
    EXPECT_TRUE(is_date("2020-01-01"));
    EXPECT_FALSE(is_date(1));
    EXPECT_FALSE(is_date(Variant::nothing()));
}

// --- Dates -----------------------------------------------------------------------------------------

TEST(Dates, AsText) {
    const struct {
        std::uint32_t lcid;
        double days;
        std::string expected;
    } cases[] = {
        {1033, 0, "12:00:00 AM"},
        {1033, 0.5, "12:00:00 PM"},
        {1033, 43831, "1/1/2020"},
        {1033, 43831.75, "1/1/2020 6:00:00 PM"},
        {1033, -1.75, "12/29/1899 6:00:00 PM"},
        {1033, 43830.999999, "1/1/2020"}, // rounds up to midnight
        {2057, 43831.75, "01/01/2020 18:00:00"},
        {1031, 43834.25, "04.01.2020 06:00:00"},
        {1053, 43834, "2020-01-04"},
        {1043, 43834, "4-1-2020"},
        {1031, 0, "00:00:00"},
    };

    for (const auto& c : cases) {
        const LocaleScope scope(*Locale::find(c.lcid));
        EXPECT_EQ(date_text(c.days), c.expected);
    }
    EXPECT_THROW(date_text(3e6), Error);
    EXPECT_THROW(date_text(NAN), Error);
    EXPECT_THROW(date_text(2958465.999999), Error);
}

TEST(Dates, AreRead) {
    const struct {
        std::uint32_t lcid;
        const char* text;
        const char* expected; // in ISO form, or empty for no date
    } cases[] = {
        {1033, "3/4/2020", "2020-03-04"},
        {2057, "3/4/2020", "2020-04-03"},
        {1033, "13/4/2020", "2020-04-13"},
        {2057, "4/13/2020", "2020-04-13"},
        {1053, "20-04-13", "2020-04-13"},
        {1033, "2020-03-04", "2020-03-04"},
        {2057, "2020-03-04", "2020-03-04"},
        {2057, "2020/3/4", "2020-03-04"},
        {1033, "2020-03-04T05:06:07", "2020-03-04 05:06:07"},
        {1033, "2020-03-04 05:06:07.25", "2020-03-04 05:06:07"},
        {1033, "1/2/29", "2029-01-02"},
        {1033, "1/2/30", "1930-01-02"},
        {1033, "March 4, 2020", "2020-03-04"},
        {1033, "4-Mar-2020", "2020-03-04"},
        {1033, "4 mar. 2020 5:06 pm", "2020-03-04 17:06:00"},
        {1033, "Wednesday, March 4, 2020", "2020-03-04"},
        {1033, "March 2020", "2020-03-01"},
        {1033, "3/2020", "2020-03-01"},
        {1033, "12:30 AM 3/4/2020", "2020-03-04 00:30:00"},
        {1031, "4. März 2020", "2020-03-04"},
        {1031, "Mittwoch, 4. März 2020", "2020-03-04"},
        {1031, "4.3.2020", "2020-03-04"},
        {1031, "4 March 2020", "2020-03-04"},
        {3082, "miércoles, 4 de marzo de 2020", "2020-03-04"},
        {1053, "den 4 mars 2020", "2020-03-04"},
        {1036, "4 févr. 2020", "2020-02-04"},
        {1033, "10:30", "1899-12-30 10:30:00"},
        {1033, "5 PM", "1899-12-30 17:00:00"},
        {1033, "12 am", "1899-12-30 00:00:00"},
        {1033, "1/1/100", "0100-01-01"},
        {1033, "12/31/9999 23:59:59", "9999-12-31 23:59:59"},
        {1033, "", ""},
        {1033, "2/30/2020", ""},
        {1033, "2020-02-30", ""},
        {1033, "2020-02-03 24:00:00", ""},
        {1033, "1900-02-29", ""},
        {1033, "13/13/2020", ""},
        {1033, "1.5", ""},
        {1033, "5", ""},
        {1033, "1/2/3/4", ""},
        {1033, "1//2", ""},
        {1033, "1/2/", ""},
        {1033, "/1/2", ""},
        {1033, "March", ""},
        {1033, "March April 5", ""},
        {1033, "25:00", ""},
        {1033, "13:00 PM", ""},
        {1033, "10:60", ""},
        {1033, "10:30:", ""},
        {1033, "10:30 10:31", ""},
        {1033, "1/1/10000", ""},
        {1033, "1/1/2020 x", ""},
        {1033, "99999999999999999999", ""},
    };

    for (const auto& c : cases) {
        const LocaleScope scope(*Locale::find(c.lcid));
        const auto days = parse_date(c.text);
        std::string found;
        if (days) {
            const DateParts p = date_parts(*days);
            char buffer[64];
            std::snprintf(buffer, sizeof buffer, "%04d-%02d-%02d %02d:%02d:%02d", p.year, p.month, p.day,
                          p.hour, p.minute, p.second);
            found = std::string(buffer, p.hour || p.minute || p.second || *days == 0 ? 19 : 10);
        }
        EXPECT_EQ(found, c.expected) << c.lcid << ' ' << c.text;
    }
    const int year = date_parts(now()).year;
    EXPECT_EQ(parse_date("3/4"), date_serial(year, 3, 4));
    EXPECT_EQ(parse_date("4 March"), date_serial(year, 3, 4));
}

TEST(Dates, PartsAgreeWithTheCalendar) {
    using namespace std::chrono;
    std::mt19937 random(11);
    std::uniform_int_distribution<int> day(-657434, 2958465), second(0, 86399);
    const sys_days zero = 1899y / December / 30;
    for (int round = 0; round < 3000; ++round) {
        const int d = day(random), s = second(random);
        const DateParts parts = date_parts(join_date_time(d, time_serial(0, 0, s)));
        const year_month_day expected(zero + days(d));
        EXPECT_EQ(parts.year, int{expected.year()});
        EXPECT_EQ(parts.month, static_cast<int>(unsigned{expected.month()}));
        EXPECT_EQ(parts.day, static_cast<int>(unsigned{expected.day()}));
        EXPECT_EQ(parts.weekday, static_cast<int>(weekday(zero + days(d)).c_encoding()) + 1);
        EXPECT_EQ((parts.hour * 60 + parts.minute) * 60 + parts.second, s);
        EXPECT_EQ(date_serial(parts.year, parts.month, parts.day), d);
        if (parts.year < 110 || parts.year > 9980)
            continue;
        EXPECT_EQ(date_serial(parts.year, parts.month - 30, parts.day + 4000),
                  date_serial(parts.year, parts.month - 30, 1) + parts.day + 3999);
    }
    EXPECT_EQ(date_serial(2020, 14, 1), date_serial(2021, 2, 1));
    EXPECT_EQ(date_serial(2020, 0, 1), date_serial(2019, 12, 1));
    EXPECT_EQ(date_serial(2020, 3, 0), date_serial(2020, 2, 29));
    for (const int year : {99, 10000, INT32_MAX, INT32_MIN})
        EXPECT_THROW(date_serial(year, 1, 1), Error) << year;
    EXPECT_THROW(date_serial(9999, INT32_MAX, INT32_MAX), Error);
    EXPECT_THROW(date_serial(100, INT32_MIN, INT32_MIN), Error);
}

// --- Locales ---------------------------------------------------------------------------------------

TEST(Locales, AreFoundByNumberAndName) {
    EXPECT_EQ(Locale::find(1031)->name, "de-de");
    EXPECT_EQ(Locale::find(std::uint32_t{0})->lcid, 1033u);
    EXPECT_EQ(Locale::find(2048)->lcid, 1033u);
    EXPECT_EQ(Locale::find(9999), nullptr);
    EXPECT_EQ(Locale::find("DE-de")->lcid, 1031u);
    EXPECT_EQ(Locale::find("fr")->lcid, 1036u);
    EXPECT_EQ(Locale::find(""), nullptr);
}

TEST(Locales, DecideHowNumbersLook) {
    const LocaleScope scope(*Locale::find(1031));
    EXPECT_EQ(number_text(1.5), "1,5");
    EXPECT_EQ(number_text(1.25e20), "1,25E+20");
    EXPECT_EQ(currency_text(12500), "1,25");
    EXPECT_EQ(parse_number("1.234,5 €"), 1234.5);
    EXPECT_EQ(parse_number("1,5"), 1.5);
    {
        const LocaleScope french(*Locale::find(1036));
        EXPECT_EQ(parse_number("1 234,5"), 1234.5);
        EXPECT_EQ(parse_number("1\u00A0234,5"), 1234.5);
    }
    EXPECT_EQ(Locale::current().lcid, 1031u);
}

// What one locale writes, it must read.
TEST(Locales, ReadWhatTheyWrite) {
    std::mt19937 random(3);
    for (const std::uint32_t lcid : {1033, 2057, 1031, 1036, 1053, 1044, 1043, 1040, 3082}) {
        const LocaleScope scope(*Locale::find(lcid));
        for (int month = 1; month <= 12; ++month) {
            const double days = date_serial(2000 + static_cast<int>(random() % 90), month,
                                            1 + static_cast<int>(random() % 28)) +
                                time_serial(static_cast<int>(random() % 24), 5, 6);
            EXPECT_NEAR(parse_date(date_text(days)).value_or(0), days, 1e-9)
                << lcid << ' ' << date_text(days);
            std::string long_date;
            append_date(long_date, date_parts(days), Locale::current().long_date);
            EXPECT_EQ(parse_date(long_date).value_or(0), std::floor(days)) << long_date;
        }
        EXPECT_EQ(parse_number(number_text(-1234.5678)), -1234.5678) << lcid;
    }
}

} // namespace
} // namespace tabrixdb
