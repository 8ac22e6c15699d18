#include "automation/conversions.h"

#include "automation/error.h"
#include "automation/number_text.h"
#include "automation/object.h"

#include <charconv>
#include <cmath>
#include <limits>

namespace tabrixdb {

namespace {

constexpr std::int64_t kCurrencyScale = 10000;
// The days that a Date holds, 100-01-01 to 9999-12-31.
constexpr double kFirstDate = -657434;
constexpr double kPastLastDate = 2958466;

[[noreturn]] void raise_overflow() {
    throw Error(kErrorOverflow);
}

// For what no conversion accepts: Null, and types that are no value.
[[noreturn]] void raise_unusable(const Variant& value) {
    throw Error(value.is_null() ? kErrorNull : kErrorMismatch);
}

ScannedNumber number_of_text(const Text& text) {
    auto number = text.empty() ? std::nullopt : scan_number(text.view());
    if (!number)
        throw Error(kErrorMismatch);
    if (number->overflow)
        raise_overflow();
    return *std::move(number);
}

double double_of_text(const Text& text) {
    if (const auto value = parse_number(text.view()))
        return *value;
    return number_of_text(text).value;
}

template <class T>
T narrow(std::int64_t value) {
    if (value < std::numeric_limits<T>::min() || value > std::numeric_limits<T>::max())
        raise_overflow();
    return static_cast<T>(value);
}

std::int64_t whole_of_double(double value) {
    constexpr double kLimit = 9223372036854775808.0; // 2^63
    const double rounded = round_half_even(value);
    if (!(rounded >= -kLimit && rounded < kLimit))
        raise_overflow();
    return static_cast<std::int64_t>(rounded);
}

std::int64_t whole_of_currency(std::int64_t ten_thousandths) {
    std::int64_t whole = ten_thousandths / kCurrencyScale;
    const std::int64_t rest = std::abs(ten_thousandths % kCurrencyScale);
    if (rest > kCurrencyScale / 2 || (rest == kCurrencyScale / 2 && whole % 2 != 0))
        whole += ten_thousandths < 0 ? -1 : 1;
    return whole;
}

// Whole text keeps all its digits; &H and &O name the bits of a T, so &HFFFF is -1 as an Integer.
template <class T>
std::int64_t whole_of_text(const Text& text) {
    const std::string_view view = text.view();
    std::int64_t whole = 0;
    const auto plain = std::from_chars(view.data(), view.data() + view.size(), whole);
    if (plain.ec == std::errc() && plain.ptr == view.data() + view.size() && !view.empty())
        return whole;
    const ScannedNumber number = number_of_text(text);
    if (number.radix) {
        if (number.bits > std::numeric_limits<std::make_unsigned_t<T>>::max())
            raise_overflow();
        return static_cast<T>(static_cast<std::make_unsigned_t<T>>(number.bits));
    }
    const auto exact = std::from_chars(number.plain.data(), number.plain.data() + number.plain.size(), whole);
    if (exact.ec == std::errc() && exact.ptr == number.plain.data() + number.plain.size())
        return whole;
    return whole_of_double(number.value);
}

template <class T>
T to_whole(const Variant& value) {
    switch (value.type()) {
    case Type::Integer:
    case Type::Long:
    case Type::Byte:
    case Type::LongLong:
        return narrow<T>(value.whole());
    case Type::Boolean:
        return static_cast<T>(value.boolean() ? -1 : 0); // CByte(True) is 255, as the platform has it
    case Type::Empty:
        return 0;
    case Type::Single:
    case Type::Double:
    case Type::Date:
        return narrow<T>(whole_of_double(value.real()));
    case Type::Currency:
        return narrow<T>(whole_of_currency(value.whole()));
    case Type::String:
        return narrow<T>(whole_of_text<T>(value.text()));
    case Type::Object:
        return to_whole<T>(value_of(value));
    default:
        raise_unusable(value);
    }
}

std::int64_t currency_of_double(double value) {
    constexpr double kLimit = 922337203685477.625; // just above the largest Currency
    if (!(std::fabs(value) < kLimit))
        raise_overflow();
    return whole_of_double(value * static_cast<double>(kCurrencyScale));
}

// A plain decimal text ("-12.34567") in ten-thousandths, without the detour through a Double that would
// cost the last digits of a large amount.
std::int64_t currency_of_digits(std::string_view plain) {
    const bool negative = plain.starts_with('-');
    plain.remove_prefix(negative);
    const std::size_t point = std::min(plain.find('.'), plain.size());
    std::string digits(plain.substr(0, point));
    std::string_view fraction = point < plain.size() ? plain.substr(point + 1) : std::string_view();
    const std::string_view kept = fraction.substr(0, 4);
    digits.append(kept).append(4 - kept.size(), '0');
    std::uint64_t magnitude = 0;
    if (std::from_chars(digits.data(), digits.data() + digits.size(), magnitude).ec != std::errc())
        raise_overflow();
    fraction.remove_prefix(kept.size());
    if (!fraction.empty()) {
        const bool beyond_half =
            fraction[0] > '5' || (fraction[0] == '5' && fraction.find_first_not_of('0', 1) != fraction.npos);
        if (beyond_half || (fraction[0] == '5' && magnitude % 2 != 0))
            ++magnitude;
    }
    constexpr auto kMax = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    if (magnitude > kMax + negative)
        raise_overflow();
    return static_cast<std::int64_t>(negative ? std::uint64_t{0} - magnitude : magnitude);
}

double checked_date(double days) {
    if (!(days > kFirstDate - 1 && days < kPastLastDate))
        raise_overflow();
    return days;
}

Text text_of(const Variant& value) {
    std::string out;
    append_text(out, value);
    return Text(out);
}

} // namespace

double round_half_even(double value) noexcept {
    return std::nearbyint(value); // in the default rounding mode, which nothing here changes
}

bool to_boolean(const Variant& value) {
    switch (value.type()) {
    case Type::Boolean:
        return value.boolean();
    case Type::String:
        if (equal_ignore_case(value.text(), "true"))
            return true;
        if (equal_ignore_case(value.text(), "false"))
            return false;
        return double_of_text(value.text()) != 0;
    case Type::Object:
        return to_boolean(value_of(value));
    default:
        return to_double(value) != 0;
    }
}

std::uint8_t to_byte(const Variant& value) {
    return to_whole<std::uint8_t>(value);
}

std::int16_t to_integer(const Variant& value) {
    return to_whole<std::int16_t>(value);
}

std::int32_t to_long(const Variant& value) {
    return to_whole<std::int32_t>(value);
}

std::int64_t to_longlong(const Variant& value) {
    return to_whole<std::int64_t>(value);
}

float to_single(const Variant& value) {
    const double wide = to_double(value);
    const auto single = static_cast<float>(wide);
    if (std::isinf(single) && !std::isinf(wide))
        raise_overflow();
    return single;
}

double to_double(const Variant& value) {
    switch (value.type()) {
    case Type::Double:
    case Type::Single:
    case Type::Date:
        return value.real();
    case Type::Integer:
    case Type::Long:
    case Type::Byte:
    case Type::LongLong:
        return static_cast<double>(value.whole());
    case Type::Boolean:
        return value.boolean() ? -1 : 0;
    case Type::Empty:
        return 0;
    case Type::Currency:
        return static_cast<double>(value.whole()) / static_cast<double>(kCurrencyScale);
    case Type::String:
        return double_of_text(value.text());
    case Type::Object:
        return to_double(value_of(value));
    default:
        raise_unusable(value);
    }
}

std::int64_t to_currency(const Variant& value) {
    switch (value.type()) {
    case Type::Currency:
        return value.whole();
    case Type::String: {
        const ScannedNumber number = number_of_text(value.text());
        const bool plain = !number.radix && number.plain.find('e') == std::string::npos;
        return plain ? currency_of_digits(number.plain) : currency_of_double(number.value);
    }
    case Type::Single:
    case Type::Double:
    case Type::Date:
        return currency_of_double(value.real());
    case Type::Object:
        return to_currency(value_of(value));
    default: {
        const std::int64_t whole = to_longlong(value);
        std::int64_t scaled = 0;
        if (__builtin_mul_overflow(whole, kCurrencyScale, &scaled))
            raise_overflow();
        return scaled;
    }
    }
}

double to_date(const Variant& value) {
    if (value.type() == Type::Date)
        return value.real();
    if (value.is_object())
        return to_date(value_of(value));
    if (value.is_string())
        if (const auto days = parse_date(value.text().view()))
            return *days;
    return checked_date(to_double(value));
}

Text to_text(const Variant& value) {
    switch (value.type()) {
    case Type::String:
    case Type::ByteArray:
        return value.text();
    case Type::Object:
        return to_text(value_of(value));
    case Type::Null:
    case Type::Error:
    case Type::VariantArray:
        raise_unusable(value);
    default:
        return text_of(value);
    }
}

void append_text(std::string& out, const Variant& value) {
    switch (value.type()) {
    case Type::String:
    case Type::ByteArray:
        if (value.text().is_bytes())
            append_utf16(out, value.text().view());
        else
            out.append(value.text().view());
        return;
    case Type::Integer:
    case Type::Long:
    case Type::Byte:
    case Type::LongLong:
        return append_whole(out, value.whole());
    case Type::Double:
        return append_number(out, value.real());
    case Type::Single:
        return append_number(out, value.real(), 7);
    case Type::Currency:
        return append_currency(out, value.whole());
    case Type::Date:
        return append_date_text(out, value.real());
    case Type::Boolean:
        out.append(value.boolean() ? "True" : "False");
        return;
    case Type::Empty:
    case Type::Null:
        return;
    case Type::Object:
        return append_text(out, value_of(value));
    default:
        if (!value.is_missing())
            raise_unusable(value);
    }
}

Variant convert(const Variant& value, Type type) {
    if (value.type() == type)
        return value;
    switch (type) {
    case Type::Boolean:
        return to_boolean(value);
    case Type::Byte:
        return Variant::byte(to_byte(value));
    case Type::Integer:
        return to_integer(value);
    case Type::Long:
        return to_long(value);
    case Type::LongLong:
        return Variant::longlong(to_longlong(value));
    case Type::Single:
        return Variant::single(to_single(value));
    case Type::Double:
        return to_double(value);
    case Type::Currency:
        return Variant::currency(to_currency(value));
    case Type::Date:
        return Variant::date(to_date(value));
    case Type::String:
        return to_text(value);
    case Type::Variant:
        return value;
    default:
        throw Error(kErrorMismatch);
    }
}

bool is_numeric(const Variant& value) {
    switch (value.type()) {
    case Type::Empty:
    case Type::Boolean:
        return true;
    case Type::String:
        return parse_number(value.text().view()).has_value();
    case Type::Object:
        return value.object() && is_numeric(value_of(value));
    default:
        return value.is_number();
    }
}

bool is_date(const Variant& value) {
    if (value.is_object())
        return value.object() && is_date(value_of(value));
    return value.type() == Type::Date || (value.is_string() && parse_date(value.text().view()).has_value());
}

} // namespace tabrixdb
