#include "automation/conversions.h"
#include "automation/error.h"
#include "automation/locale.h"
#include "automation/number_text.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <ctime>

namespace tabrixdb {

namespace {

using std::chrono::sys_days;

constexpr std::int64_t kSecondsPerDay = 24 * 60 * 60;
constexpr int kFirstYear = 100;
constexpr int kLastYear = 9999;

constexpr sys_days civil(int year, unsigned month, unsigned day) {
    return sys_days(std::chrono::year(year) / std::chrono::month(month) / std::chrono::day(day));
}

constexpr sys_days kDayZero = civil(1899, 12, 30);
constexpr std::int64_t kFirstDay = (civil(kFirstYear, 1, 1) - kDayZero).count();
constexpr std::int64_t kLastDay = (civil(kLastYear, 12, 31) - kDayZero).count();
static_assert(kFirstDay == kFirstDate && kLastDay == kLastDate);

std::int64_t floor_div(std::int64_t a, std::int64_t b) {
    return a / b - (a % b != 0 && (a < 0) != (b < 0));
}

void append_padded(std::string& out, int value, int width) {
    std::string digits;
    append_whole(digits, value);
    if (digits.size() < static_cast<std::size_t>(width))
        out.append(static_cast<std::size_t>(width) - digits.size(), '0');
    out.append(digits);
}

void append_field(std::string& out, const DateParts& parts, char letter, std::size_t count) {
    const Locale& locale = Locale::current();
    if (letter == 'y')
        return count > 2 ? append_whole(out, parts.year) : append_padded(out, parts.year % 100, 2);
    if (letter == 'd' && count > 2) {
        const auto& names = count == 3 ? locale.short_weekdays : locale.weekdays;
        out.append(names[static_cast<std::size_t>(parts.weekday - 1)]);
    } else if (letter == 'M' && count > 2) {
        const auto& names = count == 3 ? locale.short_months : locale.months;
        out.append(names[static_cast<std::size_t>(parts.month - 1)]);
    } else {
        append_padded(out, letter == 'd' ? parts.day : parts.month, static_cast<int>(count));
    }
}

} // namespace

double date_serial(int year, int month, int day) {
    const std::int64_t months = std::int64_t{month} - 1;
    const std::int64_t in_year = std::int64_t{year} + floor_div(months, 12);
    // Far outside, where the calendar has no years; the day may still carry a near miss back.
    constexpr int kReach = 6'000'000; // the years that the days of an int span
    if (in_year < -kReach || in_year > kReach)
        throw Error(kErrorCall);
    // The civil calendar repeats every 400 years, which keeps std::chrono within its own range.
    const std::int64_t cycles = floor_div(in_year, 400);
    constexpr std::int64_t kDaysPerCycle = 146097;
    const auto month_start = civil(static_cast<int>(in_year - cycles * 400),
                                   static_cast<unsigned>(months - floor_div(months, 12) * 12 + 1), 1);
    const std::int64_t days = (month_start - kDayZero).count() + cycles * kDaysPerCycle + day - 1;
    if (days < kFirstDay || days > kLastDay)
        throw Error(kErrorCall);
    return static_cast<double>(days);
}

double time_serial(int hour, int minute, int second) {
    const std::int64_t seconds = std::int64_t{hour} * 3600 + std::int64_t{minute} * 60 + second;
    return static_cast<double>(seconds) / static_cast<double>(kSecondsPerDay);
}

double join_date_time(double day, double time) noexcept {
    return day < 0 ? day - time : day + time;
}

namespace {

// The local time of this machine; a leap second is no time of the platform's clock.
std::tm local_time(std::time_t time) {
    std::tm local{};
    localtime_r(&time, &local);
    local.tm_sec = std::min(local.tm_sec, 59);
    return local;
}

} // namespace

double now() {
    return local_date(std::time(nullptr));
}

double local_date(std::int64_t moment) {
    const std::tm local = local_time(static_cast<std::time_t>(moment));
    return date_serial(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday) +
           time_serial(local.tm_hour, local.tm_min, local.tm_sec);
}

double seconds_since_midnight() {
    using namespace std::chrono;
    const auto moment = system_clock::now();
    const std::tm local = local_time(system_clock::to_time_t(moment));
    const duration<double> fraction = moment - floor<seconds>(moment);
    return (local.tm_hour * 60 + local.tm_min) * 60 + local.tm_sec + fraction.count();
}

DateParts date_parts(double days) {
    if (!(days > static_cast<double>(kFirstDay) - 1 && days < static_cast<double>(kLastDay) + 1))
        throw Error(kErrorCall);
    double whole = 0;
    const double fraction = std::fabs(std::modf(days, &whole));
    auto seconds =
        static_cast<std::int64_t>(std::floor(fraction * static_cast<double>(kSecondsPerDay) + 0.5));
    auto day = static_cast<std::int64_t>(whole);
    if (seconds == kSecondsPerDay) {
        seconds = 0;
        ++day;
    }
    if (day > kLastDay)
        throw Error(kErrorCall);
    const sys_days date = kDayZero + std::chrono::days(day);
    const std::chrono::year_month_day civil_date(date);
    return {.year = int{civil_date.year()},
            .month = static_cast<int>(unsigned{civil_date.month()}),
            .day = static_cast<int>(unsigned{civil_date.day()}),
            .hour = static_cast<int>(seconds / 3600),
            .minute = static_cast<int>(seconds / 60 % 60),
            .second = static_cast<int>(seconds % 60),
            .weekday = static_cast<int>(std::chrono::weekday(date).c_encoding()) + 1};
}

void append_date(std::string& out, const DateParts& parts, std::string_view pattern) {
    for (std::size_t at = 0; at < pattern.size();) {
        const char c = pattern[at];
        if (c == '\'') {
            const std::size_t end = std::min(pattern.find('\'', at + 1), pattern.size());
            out.append(pattern.substr(at + 1, end - at - 1));
            at = end + 1;
        } else if (c == 'd' || c == 'M' || c == 'y') {
            const std::size_t end = std::min(pattern.find_first_not_of(c, at), pattern.size());
            append_field(out, parts, c, end - at);
            at = end;
        } else {
            out += c;
            ++at;
        }
    }
}

void append_time(std::string& out, const DateParts& parts) {
    const Locale& locale = Locale::current();
    append_padded(out, locale.clock_24 ? parts.hour : (parts.hour + 11) % 12 + 1, locale.clock_24 ? 2 : 1);
    out += ':';
    append_padded(out, parts.minute, 2);
    out += ':';
    append_padded(out, parts.second, 2);
    if (!locale.clock_24)
        out.append(" ").append(parts.hour < 12 ? locale.am : locale.pm);
}

void append_date_text(std::string& out, double days) {
    const DateParts parts = date_parts(days);
    const bool midnight = parts.hour == 0 && parts.minute == 0 && parts.second == 0;
    const bool day_zero = parts.year == 1899 && parts.month == 12 && parts.day == 30;
    if (!day_zero) {
        append_date(out, parts, Locale::current().short_date);
        if (midnight)
            return;
        out += ' ';
    }
    append_time(out, parts);
}

std::string date_text(double days) {
    std::string out;
    append_date_text(out, days);
    return out;
}

} // namespace tabrixdb
