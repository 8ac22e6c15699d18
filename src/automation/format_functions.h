#pragma once

#include "automation/variant.h"

#include <string>

namespace tabrixdb {

// Numbers, money, percentages and dates as the Format... functions of the script language write them, by the
// current Locale. Halves are rounded away from zero, by the decimal digits that the number shows
// (1.005 to two places is 1.01). Raise what to_double() and to_date() raise, but Error 13 for Null.

struct NumberStyle {
    int decimals = 2;         // digits after the decimal sign
    bool leading_zero = true; // "0.5" rather than ".5"
    bool parentheses = false; // "(1)" rather than "-1"
    bool thousands = true;    // with thousands separators
};

std::string format_number(const Variant& value, const NumberStyle& style = {});
// `style.parentheses` is taken as it stands; a caller that wants the Locale's way passes
// Locale::currency_parentheses.
std::string format_currency(const Variant& value, const NumberStyle& style);
std::string format_percent(const Variant& value, const NumberStyle& style = {});

// By the numbers that FormatDateTime takes.
enum class DateStyle { General, LongDate, ShortDate, LongTime, ShortTime };

std::string format_date_time(const Variant& date, DateStyle style);

} // namespace tabrixdb
