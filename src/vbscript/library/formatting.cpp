#include "automation/format_functions.h"
#include "automation/locale.h"
#include "vbscript/library/arguments.h"
#include "vbscript/library/families.h"

#include <optional>

// FormatNumber and its like.
namespace tabrixdb::vbscript {

namespace {

// vbTrue, vbFalse, or vbUseDefault, which means `otherwise`.
bool tristate(Arguments arguments, std::size_t index, bool otherwise) {
    switch (long_or(arguments, index, -2)) {
    case -1:
        return true;
    case 0:
        return false;
    case -2:
        return otherwise;
    default:
        throw Error(kErrorCall);
    }
}

// (value [, digits [, leading zero [, parentheses [, thousands]]]])
NumberStyle number_style(Arguments arguments, bool parentheses) {
    constexpr std::int32_t kMostDigits = 255; // the platform's own limit
    NumberStyle style;
    const std::int32_t decimals = long_or(arguments, 1, -1);
    if (decimals < -1 || decimals > kMostDigits)
        throw Error(kErrorCall);
    if (decimals >= 0)
        style.decimals = decimals;
    style.leading_zero = tristate(arguments, 2, style.leading_zero);
    style.parentheses = tristate(arguments, 3, parentheses);
    style.thousands = tristate(arguments, 4, style.thousands);
    return style;
}

Variant number(Arguments arguments) {
    return format_number(*arguments[0], number_style(arguments, false));
}

Variant currency(Arguments arguments) {
    return format_currency(*arguments[0], number_style(arguments, Locale::current().currency_parentheses));
}

Variant percent(Arguments arguments) {
    return format_percent(*arguments[0], number_style(arguments, false));
}

Variant date_time(Arguments arguments) {
    const std::int32_t style = long_or(arguments, 1, 0);
    if (style < 0 || style > static_cast<std::int32_t>(DateStyle::ShortTime))
        throw Error(kErrorCall);
    return format_date_time(*arguments[0], static_cast<DateStyle>(style));
}

constexpr LibraryFunction kFunctions[] = {
    {"FormatNumber", 1, 5, number},
    {"FormatCurrency", 1, 5, currency},
    {"FormatPercent", 1, 5, percent},
    {"FormatDateTime", 1, 2, date_time},
};

} // namespace

std::span<const LibraryFunction> formatting_functions() {
    return kFunctions;
}

} // namespace tabrixdb::vbscript
