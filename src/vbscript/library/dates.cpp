#include "automation/locale.h"
#include "vbscript/library/arguments.h"
#include "vbscript/library/families.h"

#include <chrono>
#include <cmath>
#include <ctime>

// The clock, and the parts, names and texts of dates. Calculating with dates is in date_arithmetic.cpp.
namespace tabrixdb::vbscript {

namespace {

// --- The clock -------------------------------------------------------------------------------------

Variant clock_now(Arguments) {
    return Variant::date(now());
}

Variant clock_date(Arguments) {
    return Variant::date(std::floor(now()));
}

Variant clock_time(Arguments) {
    const double moment = now();
    return Variant::date(moment - std::floor(moment));
}

Variant timer(Arguments) {
    return Variant::single(static_cast<float>(seconds_since_midnight()));
}

// --- Parts -----------------------------------------------------------------------------------------

template <int DateParts::*Part>
Variant part(Arguments arguments) {
    const Value value(*arguments[0]);
    if (value->is_null())
        return Variant::null();
    return static_cast<std::int16_t>(date_parts(to_date(*value)).*Part);
}

Variant weekday(Arguments arguments) {
    const Value value(*arguments[0]);
    const int first = first_weekday_argument(arguments, 1);
    if (value->is_null())
        return Variant::null();
    return static_cast<std::int16_t>((date_parts(to_date(*value)).weekday - first + 7) % 7 + 1);
}

// --- Names -----------------------------------------------------------------------------------------

std::size_t index_argument(const Variant& argument, std::int32_t most) {
    const std::int32_t index = to_long(argument);
    if (index < 1 || index > most)
        throw Error(kErrorCall);
    return static_cast<std::size_t>(index - 1);
}

bool abbreviated(Arguments arguments) {
    return given(arguments, 1) && to_boolean(*arguments[1]);
}

Variant month_name(Arguments arguments) {
    const std::size_t month = index_argument(*arguments[0], 12);
    const Locale& locale = Locale::current();
    return abbreviated(arguments) ? locale.short_months[month] : locale.months[month];
}

Variant weekday_name(Arguments arguments) {
    const auto first = static_cast<std::size_t>(first_weekday_argument(arguments, 2));
    const std::size_t day = (index_argument(*arguments[0], 7) + first - 1) % 7;
    const Locale& locale = Locale::current();
    return abbreviated(arguments) ? locale.short_weekdays[day] : locale.weekdays[day];
}

// --- Making dates ----------------------------------------------------------------------------------

Variant date_of_parts(Arguments arguments) {
    int year = to_integer(*arguments[0]);
    if (year >= 0 && year <= 99)
        year += year < kCenturyWindow ? 2000 : 1900;
    return Variant::date(date_serial(year, to_integer(*arguments[1]), to_integer(*arguments[2])));
}

Variant time_of_parts(Arguments arguments) {
    return Variant::date(
        time_serial(to_integer(*arguments[0]), to_integer(*arguments[1]), to_integer(*arguments[2])));
}

Variant date_value(Arguments arguments) {
    return Variant::date(std::trunc(to_date(*arguments[0])));
}

Variant time_value(Arguments arguments) {
    const double days = to_date(*arguments[0]);
    return Variant::date(std::fabs(days - std::trunc(days)));
}

constexpr LibraryFunction kFunctions[] = {
    {"Now", 0, 0, clock_now},
    {"Date", 0, 0, clock_date},
    {"Time", 0, 0, clock_time},
    {"Timer", 0, 0, timer},
    {"Year", 1, 1, part<&DateParts::year>},
    {"Month", 1, 1, part<&DateParts::month>},
    {"Day", 1, 1, part<&DateParts::day>},
    {"Hour", 1, 1, part<&DateParts::hour>},
    {"Minute", 1, 1, part<&DateParts::minute>},
    {"Second", 1, 1, part<&DateParts::second>},
    {"Weekday", 1, 2, weekday},
    {"MonthName", 1, 2, month_name},
    {"WeekdayName", 1, 3, weekday_name},
    {"DateSerial", 3, 3, date_of_parts},
    {"TimeSerial", 3, 3, time_of_parts},
    {"DateValue", 1, 1, date_value},
    {"TimeValue", 1, 1, time_value},
};

} // namespace

std::span<const LibraryFunction> date_functions() {
    return kFunctions;
}

} // namespace tabrixdb::vbscript
