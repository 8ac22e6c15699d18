#include "automation/format_functions.h"

#include "automation/conversions.h"
#include "automation/error.h"
#include "automation/locale.h"
#include "automation/number_text.h"
#include "automation/object.h"

#include <algorithm>

namespace tabrixdb {

namespace {

Decimal decimal_of(const Variant& value) {
    switch (value.type()) {
    case Type::Null:
        throw Error(kErrorMismatch);
    case Type::Object:
        return decimal_of(value_of(value));
    case Type::Currency:
        return Decimal::from_currency(value.whole());
    case Type::Integer:
    case Type::Long:
    case Type::Byte:
    case Type::LongLong:
        return Decimal::from_whole(value.whole());
    default:
        return Decimal::from_double(to_double(value), value.type() == Type::Single ? 7 : 15);
    }
}

// The digit at that power of ten.
char digit_at(const Decimal& decimal, int power) {
    const int index = decimal.point - 1 - power;
    const bool inside = index >= 0 && index < static_cast<int>(decimal.digits.size());
    return inside ? decimal.digits[static_cast<std::size_t>(index)] : '0';
}

// Without its sign.
std::string magnitude_text(const Decimal& decimal, const NumberStyle& style) {
    const Locale& locale = Locale::current();
    std::string out;
    for (int power = decimal.point - 1; power >= 0; --power) {
        out += digit_at(decimal, power);
        if (style.thousands && power > 0 && power % 3 == 0)
            out.append(locale.thousands);
    }
    if (out.empty() && (style.leading_zero || style.decimals == 0))
        out += '0';
    if (style.decimals > 0)
        out.append(locale.decimal);
    for (int power = -1; power >= -style.decimals; --power)
        out += digit_at(decimal, power);
    return out;
}

std::string signed_text(const Decimal& decimal, const NumberStyle& style, std::string text) {
    if (!decimal.negative)
        return text;
    return style.parentheses ? "(" + text + ")" : "-" + text;
}

} // namespace

std::string format_number(const Variant& value, const NumberStyle& style) {
    Decimal decimal = decimal_of(value);
    decimal.round_to(style.decimals);
    return signed_text(decimal, style, magnitude_text(decimal, style));
}

std::string format_currency(const Variant& value, const NumberStyle& style) {
    Decimal decimal = decimal_of(value);
    decimal.round_to(style.decimals);
    const Locale& locale = Locale::current();
    const std::string_view space = locale.currency_space ? "\u00A0" : "";
    std::string text = magnitude_text(decimal, style);
    if (locale.currency_after)
        text.append(space).append(locale.currency);
    else
        text.insert(0, std::string(locale.currency).append(space));
    return signed_text(decimal, style, std::move(text));
}

std::string format_percent(const Variant& value, const NumberStyle& style) {
    Decimal decimal = decimal_of(value);
    if (!decimal.digits.empty())
        decimal.point += 2;
    decimal.round_to(style.decimals);
    return signed_text(decimal, style, magnitude_text(decimal, style) + "%");
}

std::string format_date_time(const Variant& date, DateStyle style) {
    if (date.is_null())
        throw Error(kErrorMismatch);
    const double days = to_date(date);
    if (style == DateStyle::General)
        return date_text(days);
    const DateParts parts = date_parts(days);
    std::string out;
    switch (style) {
    case DateStyle::LongDate:
        append_date(out, parts, Locale::current().long_date);
        break;
    case DateStyle::ShortDate:
        append_date(out, parts, Locale::current().short_date);
        break;
    case DateStyle::LongTime:
        append_time(out, parts);
        break;
    default: // hours and minutes, in every Locale by the 24-hour clock
        for (const int part : {parts.hour, parts.minute}) {
            out.append(out.empty() ? "" : ":");
            out += static_cast<char>('0' + part / 10);
            out += static_cast<char>('0' + part % 10);
        }
    }
    return out;
}

} // namespace tabrixdb
