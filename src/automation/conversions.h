#pragma once

#include "automation/locale.h"
#include "automation/variant.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tabrixdb {

// The conversions between automation types, by the Visual Basic rules: halves round to even, Empty is 0
// and "", numeric text is a number, True is -1, objects give their default member. They raise Error 94 for
// Null, 13 for what is no such value, 6 for what is out of range, 91 for Nothing. Text is read and written
// by the current Locale.

bool to_boolean(const Variant& value); // "True"/"False" in any case, or a number
std::uint8_t to_byte(const Variant& value);
std::int16_t to_integer(const Variant& value);  // 16 bits
std::int32_t to_long(const Variant& value);     // 32 bits
std::int64_t to_longlong(const Variant& value); // 64 bits, exact for LongLong and whole text
float to_single(const Variant& value);
double to_double(const Variant& value);         // Date gives its days
std::int64_t to_currency(const Variant& value); // ten-thousandths
double to_date(const Variant& value);           // days since 1899-12-30
Text to_text(const Variant& value);             // CStr; byte arrays give their byte string
// The value as that type (VarType code); what the CInt, CStr, ... family gives.
Variant convert(const Variant& value, Type type);

// Text for writing into a page: like to_text, but Null and Empty give "" and a missing argument too.
// Appends without making a string of its own; the path of every `Response.Write` and grid cell.
void append_text(std::string& out, const Variant& value);

// --- Pieces that others need as well -----------------------------------------------------------------

// A whole text as a number: sign, digits with thousands separators, exponent, currency symbol, &H and &O,
// blanks around it. nullopt when it is none.
std::optional<double> parse_number(std::string_view text);
// A whole text as a date and/or time, in the orders that the current Locale reads, and ISO. nullopt when
// none.
std::optional<double> parse_date(std::string_view text);
// IsNumeric and IsDate.
bool is_numeric(const Variant& value);
bool is_date(const Variant& value);

// The shortest text of a Double in at most 15 significant digits ("0.1", "1E+15", "0.00001"), with the
// Locale's decimal sign; with an exponent where it would need more than 15 digits before or after that sign
// ("3.33333333333333E-02"). Single: 7 digits.
std::string number_text(double value, int significant_digits = 15);
std::string currency_text(std::int64_t ten_thousandths);
// Date and/or time in the Locale's short form: midnight prints no time, day 0 prints no date.
std::string date_text(double days);
void append_date_text(std::string& out, double days);

// A halfway case goes to the even neighbour.
double round_half_even(double value) noexcept;

// --- Dates ---------------------------------------------------------------------------------------------

struct DateParts {
    int year, month, day; // year 100 to 9999, month and day from 1
    int hour, minute, second;
    int weekday; // 1 = Sunday
};

// The first and the last day of the calendar: 1 January 100 and 31 December 9999.
inline constexpr double kFirstDate = -657434;
inline constexpr double kLastDate = 2958465;

// Fractions are rounded to the second; negative days count the fraction forward. Error 5 out of range.
DateParts date_parts(double days);
// Days of a date at midnight; month and day may lie outside their range (they carry over). Error 5 out of
// the years 100 to 9999.
double date_serial(int year, int month, int day);
// Fraction of a day; parts may lie outside their range.
double time_serial(int hour, int minute, int second);
// A day and a fraction of a day as one date: before day 0 the fraction counts away from zero.
double join_date_time(double day, double time) noexcept;
// The local date and time of this machine, to the second.
double now();
// The same of a moment, in seconds since 1970, UTC.
double local_date(std::int64_t moment);
// The same clock in seconds since midnight, with their fraction.
double seconds_since_midnight();
// A two-digit year below this one is in the 2000s, others are in the 1900s.
inline constexpr int kCenturyWindow = 30;
// Appends the date by a pattern of the Locale's: d, dd, ddd, dddd, M, MM, MMM, MMMM, yy, yyyy, 'literal
// text'.
void append_date(std::string& out, const DateParts& parts, std::string_view pattern);
// Appends the time of day in the Locale's long form.
void append_time(std::string& out, const DateParts& parts);

} // namespace tabrixdb
