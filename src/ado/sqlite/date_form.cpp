#include "ado/sqlite/date_form.h"

#include "automation/conversions.h"
#include "platform/data.h"

#include <cmath>
#include <cstdio>

namespace tabrixdb::ado::sqlite {

namespace {

constexpr double kJulianOfDayZero = 2415018.5; // of 1899-12-30
constexpr double kJulianOfYear100 = 1757584.5; // the first year that automation dates know
constexpr double kJulianOfYear10000 = 5373484.5;
constexpr double kDaysTo1970 = 25569;
constexpr double kSecondsPerDay = 86400;
constexpr double kLastSecond = 253402300799; // of the year 9999, since 1970

// Reads digits and signs off the front of a text.
class Reader {
public:
    explicit Reader(std::string_view text) noexcept : text_(text) {}

    bool digits(int count, int& value) noexcept {
        if (text_.size() < static_cast<std::size_t>(count))
            return false;
        value = 0;
        for (int i = 0; i < count; ++i) {
            const char c = text_[static_cast<std::size_t>(i)];
            if (c < '0' || c > '9')
                return false;
            value = value * 10 + (c - '0');
        }
        text_.remove_prefix(static_cast<std::size_t>(count));
        return true;
    }

    bool sign(char wanted) noexcept {
        if (!text_.starts_with(wanted))
            return false;
        text_.remove_prefix(1);
        return true;
    }

    void skip_digits() noexcept {
        while (!text_.empty() && text_.front() >= '0' && text_.front() <= '9')
            text_.remove_prefix(1);
    }

    bool at_end() const noexcept { return text_.empty(); }

private:
    std::string_view text_;
};

// hh:mm[:ss[.fff]][Z]; fractions are dropped, automation dates show whole seconds.
std::optional<double> time_of(Reader& reader) noexcept {
    int hour = 0, minute = 0, second = 0;
    if (!reader.digits(2, hour) || !reader.sign(':') || !reader.digits(2, minute))
        return std::nullopt;
    if (reader.sign(':')) {
        if (!reader.digits(2, second))
            return std::nullopt;
        if (reader.sign('.'))
            reader.skip_digits();
    }
    reader.sign('Z');
    if (!reader.at_end() || hour > 23 || minute > 59 || second > 59)
        return std::nullopt;
    return (hour * 3600 + minute * 60 + second) / kSecondsPerDay;
}

int days_in(int year, int month) noexcept {
    static constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool leap = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
    return month == 2 && leap ? 29 : kDays[month - 1];
}

// Automation dates before day zero count the fraction of the day forward from the day before.
double automation_date(double days) noexcept {
    const double day = std::floor(days);
    return day < 0 ? day - (days - day) : days;
}

} // namespace

std::optional<double> date_of_text(std::string_view text) noexcept {
    Reader reader(text);
    int year = 0, month = 0, day = 0;
    Reader whole = reader;
    if (!reader.digits(4, year) || !reader.sign('-'))
        return time_of(whole);
    if (!reader.digits(2, month) || !reader.sign('-') || !reader.digits(2, day))
        return std::nullopt;
    if (year < 100 || month < 1 || month > 12 || day < 1 || day > days_in(year, month))
        return std::nullopt;
    const double days = date_serial(year, month, day);
    if (reader.at_end())
        return days;
    if (!reader.sign(' ') && !reader.sign('T'))
        return std::nullopt;
    const std::optional<double> time = time_of(reader);
    if (!time)
        return std::nullopt;
    return automation_date(days + *time);
}

std::optional<double> date_of_number(double number) noexcept {
    if (number >= kJulianOfYear100 && number < kJulianOfYear10000)
        return automation_date(number - kJulianOfDayZero);
    const double seconds = number > kLastSecond ? number / 1000 : number;
    const double days = seconds / kSecondsPerDay + kDaysTo1970;
    if (days + kJulianOfDayZero < kJulianOfYear100 || days + kJulianOfDayZero >= kJulianOfYear10000)
        return std::nullopt;
    return automation_date(days);
}

std::string text_of_date(double days, std::int32_t type) {
    const DateParts parts = date_parts(days);
    char date[40], time[40];
    std::snprintf(date, sizeof date, "%04d-%02d-%02d", parts.year, parts.month, parts.day);
    std::snprintf(time, sizeof time, "%02d:%02d:%02d", parts.hour, parts.minute, parts.second);
    if (type == platform::data_type::kDbDate)
        return date;
    if (type == platform::data_type::kDbTime)
        return time;
    return std::string(date) + ' ' + time;
}

} // namespace tabrixdb::ado::sqlite
