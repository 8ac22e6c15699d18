#include "automation/operators.h"
#include "vbscript/library/arguments.h"
#include "vbscript/library/families.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>

namespace tabrixdb::vbscript {

namespace {

Variant real_result(double value) {
    if (std::isnan(value))
        throw Error(kErrorCall);
    if (std::isinf(value))
        throw Error(kErrorOverflow);
    return value;
}

template <double (*Function)(double)>
Variant apply(Arguments arguments) {
    return real_result(Function(to_double(*arguments[0])));
}

Variant square_root(Arguments arguments) {
    const double value = to_double(*arguments[0]);
    if (value < 0)
        throw Error(kErrorCall);
    return std::sqrt(value);
}

Variant logarithm(Arguments arguments) {
    const double value = to_double(*arguments[0]);
    if (value <= 0)
        throw Error(kErrorCall);
    return real_result(std::log(value));
}

// Text counts as a Double, truth values and Empty as an Integer; everything else keeps its type.
Variant number_argument(const Variant& argument) {
    const Value value(argument);
    if (value->is_string())
        return to_double(*value);
    if (value->type() == Type::Boolean || value->is_empty())
        return to_integer(*value);
    if (!value->is_number() && !value->is_null() && value->type() != Type::Date)
        throw Error(kErrorMismatch);
    return *value;
}

bool is_negative(const Variant& number) {
    const bool whole = number.is_whole() || number.type() == Type::Currency;
    return whole ? number.whole() < 0 : number.real() < 0;
}

Variant absolute(Arguments arguments) {
    Variant number = number_argument(*arguments[0]);
    return !number.is_null() && is_negative(number) ? negate(number) : number;
}

Variant sign(Arguments arguments) {
    const double value = to_double(*arguments[0]);
    return static_cast<std::int16_t>((value > 0) - (value < 0));
}

constexpr std::int64_t kCurrencyScale = 10000;

std::int64_t floor_currency(std::int64_t value) {
    const std::int64_t rest = value % kCurrencyScale;
    return value - rest - (rest < 0 ? kCurrencyScale : 0);
}

std::int64_t truncate_currency(std::int64_t value) {
    return value - value % kCurrencyScale;
}

Variant real_of_type(Type type, double value) {
    switch (type) {
    case Type::Single:
        return Variant::single(static_cast<float>(value));
    case Type::Date:
        return Variant::date(value);
    default:
        return value;
    }
}

template <double (*Real)(double), std::int64_t (*Currency)(std::int64_t)>
Variant whole_part(Arguments arguments) {
    Variant number = number_argument(*arguments[0]);
    if (number.is_null() || number.is_whole())
        return number;
    if (number.type() == Type::Currency)
        return Variant::currency(Currency(number.whole()));
    return real_of_type(number.type(), Real(number.real()));
}

std::int64_t round_currency(std::int64_t value, int decimals) {
    constexpr std::array<std::int64_t, 4> kUnits{10000, 1000, 100, 10};
    if (decimals >= static_cast<int>(kUnits.size()))
        return value;
    const std::int64_t unit = kUnits[static_cast<std::size_t>(decimals)];
    const std::int64_t rest = std::abs(value % unit);
    std::int64_t units = value / unit;
    if (rest > unit / 2 || (rest == unit / 2 && units % 2 != 0))
        units += value < 0 ? -1 : 1;
    std::int64_t rounded = 0;
    if (__builtin_mul_overflow(units, unit, &rounded))
        throw Error(kErrorOverflow);
    return rounded;
}

// Halves go to the even neighbour.
Variant round(Arguments arguments) {
    constexpr int kMostDecimals = 22; // the language's own limit
    const std::int32_t decimals = long_or(arguments, 1, 0);
    if (decimals < 0 || decimals > kMostDecimals)
        throw Error(kErrorCall);
    Variant number = number_argument(*arguments[0]);
    if (number.is_null() || number.is_whole())
        return number;
    if (number.type() == Type::Currency)
        return Variant::currency(round_currency(number.whole(), decimals));
    const double scale = std::pow(10.0, decimals);
    const double scaled = number.real() * scale;
    return real_of_type(number.type(),
                        std::isfinite(scaled) ? round_half_even(scaled) / scale : number.real());
}

// The bits of a whole number in its own width; other numbers are rounded to Long.
template <int Base>
Variant digits(Arguments arguments) {
    const Variant number = number_argument(*arguments[0]);
    if (number.is_null())
        return number;
    std::uint64_t bits = 0;
    if (number.type() == Type::Byte || number.type() == Type::LongLong)
        bits = static_cast<std::uint64_t>(number.whole());
    else if (number.type() == Type::Integer)
        bits = static_cast<std::uint16_t>(number.whole());
    else
        bits = static_cast<std::uint32_t>(to_long(number));
    std::array<char, 24> buffer;
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), bits, Base);
    return upper({buffer.data(), static_cast<std::size_t>(end.ptr - buffer.data())});
}

Variant rgb(Arguments arguments) {
    std::int32_t color = 0;
    for (std::size_t i = 3; i-- > 0;) {
        const std::int16_t part = to_integer(*arguments[i]);
        if (part < 0)
            throw Error(kErrorCall);
        color = color << 8 | std::min<std::int32_t>(part, 255);
    }
    return color;
}

constexpr LibraryFunction kFunctions[] = {
    {"Abs", 1, 1, absolute},
    {"Sgn", 1, 1, sign},
    {"Int", 1, 1, whole_part<std::floor, floor_currency>},
    {"Fix", 1, 1, whole_part<std::trunc, truncate_currency>},
    {"Round", 1, 2, round},
    {"Sqr", 1, 1, square_root},
    {"Exp", 1, 1, apply<std::exp>},
    {"Log", 1, 1, logarithm},
    {"Sin", 1, 1, apply<std::sin>},
    {"Cos", 1, 1, apply<std::cos>},
    {"Tan", 1, 1, apply<std::tan>},
    {"Atn", 1, 1, apply<std::atan>},
    {"Hex", 1, 1, digits<16>},
    {"Oct", 1, 1, digits<8>},
    {"RGB", 3, 3, rgb},
};

} // namespace

std::span<const LibraryFunction> number_functions() {
    return kFunctions;
}

} // namespace tabrixdb::vbscript
