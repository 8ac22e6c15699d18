#include "automation/locale.h"
#include "vbscript/library/arguments.h"
#include "vbscript/library/families.h"

#include <algorithm>
#include <cmath>

// DateAdd, DateDiff and DatePart.
namespace tabrixdb::vbscript {

namespace {

enum class Interval { Year, Quarter, Month, DayOfYear, Day, Weekday, Week, Hour, Minute, Second };

Interval interval_argument(const Variant& argument) {
    constexpr std::pair<std::string_view, Interval> kIntervals[] = {
        {"yyyy", Interval::Year},   {"q", Interval::Quarter}, {"m", Interval::Month},
        {"y", Interval::DayOfYear}, {"d", Interval::Day},     {"w", Interval::Weekday},
        {"ww", Interval::Week},     {"h", Interval::Hour},    {"n", Interval::Minute},
        {"s", Interval::Second},
    };
    const TextArgument name(argument);
    for (const auto& [text, interval] : kIntervals)
        if (equal_ignore_case(*name, text))
            return interval;
    throw Error(kErrorCall);
}

constexpr std::int64_t kSecondsPerDay = 86400;

std::int64_t floor_div(std::int64_t a, std::int64_t b) {
    return a / b - (a % b != 0 && (a < 0) != (b < 0));
}

// A moment on one unbroken scale: the day number counts midnights since 1899-12-30.
struct Moment {
    DateParts parts;
    std::int64_t day;
    std::int64_t second; // of all time, from day 0

    explicit Moment(double days)
        : parts(date_parts(days)),
          day(static_cast<std::int64_t>(date_serial(parts.year, parts.month, parts.day))),
          second(day * kSecondsPerDay + parts.hour * 3600 + parts.minute * 60 + parts.second) {}

    double time() const { return time_serial(parts.hour, parts.minute, parts.second); }
};

// --- DateAdd ---------------------------------------------------------------------------------------

Variant date_result(double days) {
    date_parts(days); // Error 5 outside the calendar
    return Variant::date(days);
}

int days_in_month(int year, int month) {
    return date_parts(date_serial(year, month + 1, 0)).day;
}

// The day stays unless the month is too short for it: 31 January and a month is the last of February.
Variant add_months(const Moment& from, std::int64_t months) {
    const std::int64_t total = std::int64_t{from.parts.year} * 12 + from.parts.month - 1 + months;
    const std::int64_t year = floor_div(total, 12);
    if (year < 100 || year > 9999)
        throw Error(kErrorCall);
    const int month = static_cast<int>(total - year * 12) + 1;
    // December's last day is the 31st, and the month after 9999-12 has no date to count back from.
    const int last = month == 12 ? 31 : days_in_month(static_cast<int>(year), month);
    const double day = date_serial(static_cast<int>(year), month, std::min(from.parts.day, last));
    return date_result(join_date_time(day, from.time()));
}

Variant add_seconds(const Moment& from, std::int64_t seconds) {
    const std::int64_t total = from.second + seconds;
    const std::int64_t day = floor_div(total, kSecondsPerDay);
    const double time =
        static_cast<double>(total - day * kSecondsPerDay) / static_cast<double>(kSecondsPerDay);
    return date_result(join_date_time(static_cast<double>(day), time));
}

Variant date_add(Arguments arguments) {
    const Interval interval = interval_argument(*arguments[0]);
    const Value date(*arguments[2]);
    if (date->is_null())
        return Variant::null();
    const std::int64_t count = to_long(*arguments[1]);
    const Moment from(to_date(*date));
    switch (interval) {
    case Interval::Year:
        return add_months(from, count * 12);
    case Interval::Quarter:
        return add_months(from, count * 3);
    case Interval::Month:
        return add_months(from, count);
    case Interval::Week:
        return add_seconds(from, count * 7 * kSecondsPerDay);
    case Interval::Hour:
        return add_seconds(from, count * 3600);
    case Interval::Minute:
        return add_seconds(from, count * 60);
    case Interval::Second:
        return add_seconds(from, count);
    default:
        return add_seconds(from, count * kSecondsPerDay);
    }
}

// --- Weeks -----------------------------------------------------------------------------------------

// The number of the week that a day lies in, counted from an arbitrary one, by its first weekday.
std::int64_t week_of(std::int64_t day, int first_weekday) {
    constexpr int kWeekdayOfDayZero = 7; // 1899-12-30 was a Saturday
    return floor_div(day + kWeekdayOfDayZero - first_weekday, 7);
}

enum class FirstWeek { System, FirstOfJanuary, FourDays, FullWeek };

FirstWeek first_week_argument(Arguments arguments, std::size_t index) {
    const std::int32_t rule = long_or(arguments, index, 1);
    if (rule < 0 || rule > 3)
        throw Error(kErrorCall);
    return rule == 0 ? FirstWeek::FirstOfJanuary : static_cast<FirstWeek>(rule);
}

// The week_of() of a year's first week.
std::int64_t first_week(int year, int first_weekday, FirstWeek rule) {
    const auto january = static_cast<std::int64_t>(date_serial(year, 1, 1));
    // The first week is the one that holds this day of January.
    const int held = rule == FirstWeek::FullWeek ? 7 : rule == FirstWeek::FourDays ? 4 : 1;
    return week_of(january + held - 1, first_weekday);
}

int week_of_year(const Moment& moment, int first_weekday, FirstWeek rule) {
    const std::int64_t week = week_of(moment.day, first_weekday);
    const int year = moment.parts.year;
    if (rule == FirstWeek::FourDays && year < 9999 && week >= first_week(year + 1, first_weekday, rule))
        return 1;
    std::int64_t first = first_week(year, first_weekday, rule);
    if (week < first)
        first = first_week(std::max(year - 1, 100), first_weekday, rule);
    return static_cast<int>(week - first) + 1;
}

// --- DateDiff and DatePart -------------------------------------------------------------------------

std::int64_t months(const Moment& moment) {
    return std::int64_t{moment.parts.year} * 12 + moment.parts.month - 1;
}

// How often the interval's boundary lies between the two.
std::int64_t difference(Interval interval, const Moment& from, const Moment& to, int first_weekday) {
    switch (interval) {
    case Interval::Year:
        return to.parts.year - from.parts.year;
    case Interval::Quarter:
        return floor_div(months(to), 3) - floor_div(months(from), 3);
    case Interval::Month:
        return months(to) - months(from);
    case Interval::Weekday: // whole weeks
        return (to.day - from.day) / 7;
    case Interval::Week:
        return week_of(to.day, first_weekday) - week_of(from.day, first_weekday);
    case Interval::Hour:
        return floor_div(to.second, 3600) - floor_div(from.second, 3600);
    case Interval::Minute:
        return floor_div(to.second, 60) - floor_div(from.second, 60);
    case Interval::Second:
        return to.second - from.second;
    default:
        return to.day - from.day;
    }
}

Variant date_diff(Arguments arguments) {
    const Interval interval = interval_argument(*arguments[0]);
    const Value from(*arguments[1]), to(*arguments[2]);
    const int first_weekday = first_weekday_argument(arguments, 3);
    first_week_argument(arguments, 4); // must be valid, though no difference depends on it
    if (from->is_null() || to->is_null())
        return Variant::null();
    return to_long(
        Variant::longlong(difference(interval, Moment(to_date(*from)), Moment(to_date(*to)), first_weekday)));
}

Variant date_part(Arguments arguments) {
    const Interval interval = interval_argument(*arguments[0]);
    const Value date(*arguments[1]);
    const int first_weekday = first_weekday_argument(arguments, 2);
    const FirstWeek rule = first_week_argument(arguments, 3);
    if (date->is_null())
        return Variant::null();
    const Moment moment(to_date(*date));
    const auto part = [&]() -> int {
        switch (interval) {
        case Interval::Year:
            return moment.parts.year;
        case Interval::Quarter:
            return (moment.parts.month + 2) / 3;
        case Interval::Month:
            return moment.parts.month;
        case Interval::DayOfYear:
            return static_cast<int>(moment.day -
                                    static_cast<std::int64_t>(date_serial(moment.parts.year, 1, 0)));
        case Interval::Weekday:
            return (moment.parts.weekday - first_weekday + 7) % 7 + 1;
        case Interval::Week:
            return week_of_year(moment, first_weekday, rule);
        case Interval::Hour:
            return moment.parts.hour;
        case Interval::Minute:
            return moment.parts.minute;
        case Interval::Second:
            return moment.parts.second;
        default:
            return moment.parts.day;
        }
    };
    return static_cast<std::int16_t>(part());
}

constexpr LibraryFunction kFunctions[] = {
    {"DateAdd", 3, 3, date_add},
    {"DateDiff", 3, 5, date_diff},
    {"DatePart", 2, 4, date_part},
};

} // namespace

std::span<const LibraryFunction> date_arithmetic_functions() {
    return kFunctions;
}

} // namespace tabrixdb::vbscript
