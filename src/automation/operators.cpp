#include "automation/operators.h"

#include "automation/error.h"
#include "automation/operand.h"

#include <cmath>
#include <limits>
#include <type_traits>

namespace tabrixdb {

namespace {

std::int64_t ten_thousandths(const Operand& operand) {
    std::int64_t scaled = operand.whole;
    if (operand.rank != Rank::Currency && __builtin_mul_overflow(operand.whole, std::int64_t{10000}, &scaled))
        throw Error(kErrorOverflow);
    return scaled;
}

// A whole result in the operands' type, or the next larger one that holds it. A Long grows to Double: the
// language has no whole type beyond it, only databases do.
Variant whole_result(std::int64_t value, Rank rank) {
    if (rank == Rank::Byte && value >= 0 && value <= UINT8_MAX)
        return Variant::byte(static_cast<std::uint8_t>(value));
    if (rank <= Rank::Integer && value >= INT16_MIN && value <= INT16_MAX)
        return static_cast<std::int16_t>(value);
    if (rank <= Rank::Long && value >= INT32_MIN && value <= INT32_MAX)
        return static_cast<std::int32_t>(value);
    if (rank == Rank::LongLong)
        return Variant::longlong(value);
    return static_cast<double>(value);
}

Variant real_result(double value) {
    if (!std::isfinite(value))
        throw Error(kErrorOverflow);
    return value;
}

// Single as long as it can hold the result.
Variant single_result(double value) {
    const auto single = static_cast<float>(value);
    return std::isfinite(single) ? Variant::single(single) : real_result(value);
}

Variant date_result(double value) {
    constexpr double kFirst = -657435, kPastLast = 2958466;
    return value > kFirst && value < kPastLast ? Variant::date(value) : real_result(value);
}

// A Single beside a Long or LongLong would lose digits, so the two meet in a Double; so do Currency and
// anything that floats.
Rank common_rank(const Operand& a, const Operand& b) {
    const Rank high = std::max(a.rank, b.rank);
    const Rank low = std::min(a.rank, b.rank);
    if (high == Rank::Single && (low == Rank::Long || low == Rank::LongLong))
        return Rank::Double;
    if (high == Rank::Currency && (low == Rank::Single || low == Rank::Double))
        return Rank::Double;
    return high;
}

// The functions that do the same to every numeric type: whole numbers exactly (overflow reported), others
// as Double.
struct Plus {
    static bool whole(std::int64_t a, std::int64_t b, std::int64_t& out) {
        return !__builtin_add_overflow(a, b, &out);
    }

    static double real(double a, double b) { return a + b; }
};

struct Minus {
    static bool whole(std::int64_t a, std::int64_t b, std::int64_t& out) {
        return !__builtin_sub_overflow(a, b, &out);
    }

    static double real(double a, double b) { return a - b; }
};

struct Times {
    static bool whole(std::int64_t a, std::int64_t b, std::int64_t& out) {
        return !__builtin_mul_overflow(a, b, &out);
    }

    static double real(double a, double b) { return a * b; }
};

template <class Operation>
Variant whole_arithmetic(const Operand& a, const Operand& b, Rank rank) {
    std::int64_t result = 0;
    if (Operation::whole(a.whole, b.whole, result))
        return whole_result(result, rank);
    return Operation::real(static_cast<double>(a.whole), static_cast<double>(b.whole));
}

template <class Operation>
Variant sum(const Variant& left, const Variant& right) {
    const Operand a = operand(left), b = operand(right);
    const Rank rank = common_rank(a, b);
    if (rank <= Rank::LongLong)
        return whole_arithmetic<Operation>(a, b, rank);
    if (rank == Rank::Currency) {
        std::int64_t result = 0;
        if (!Operation::whole(ten_thousandths(a), ten_thousandths(b), result))
            throw Error(kErrorOverflow);
        return Variant::currency(result);
    }
    const double result = Operation::real(real(a), real(b));
    if (rank == Rank::Single)
        return single_result(result);
    const bool between_dates = std::is_same_v<Operation, Minus> && a.rank == b.rank;
    return rank == Rank::Date && !between_dates ? date_result(result) : real_result(result);
}

// The product of two Currency values is in units of 10^-8 and rounded back, halves to even.
Variant currency_product(const Operand& a, const Operand& b) {
    const Wide exact = Wide{ten_thousandths(a)} * ten_thousandths(b);
    Wide result = exact / 10000;
    const auto rest = static_cast<std::int64_t>(exact % 10000);
    if (std::abs(rest) > 5000 || (std::abs(rest) == 5000 && result % 2 != 0))
        result += exact < 0 ? -1 : 1;
    if (result > std::numeric_limits<std::int64_t>::max() ||
        result < std::numeric_limits<std::int64_t>::min())
        throw Error(kErrorOverflow);
    return Variant::currency(static_cast<std::int64_t>(result));
}

} // namespace

// --- Arithmetic ------------------------------------------------------------------------------------

Variant add(const Variant& a, const Variant& b) {
    if (is_small(a.type()) && is_small(b.type()))
        return whole_result(a.whole() + b.whole(),
                            a.type() == b.type() && a.type() == Type::Integer ? Rank::Integer : Rank::Long);
    if (a.type() == Type::Double && b.type() == Type::Double)
        return real_result(a.real() + b.real());
    if (either_object(a, b))
        return on_values(a, b, add);
    if (either_null(a, b))
        return Variant::null();
    const bool a_joins = a.is_string() || a.is_empty(), b_joins = b.is_string() || b.is_empty();
    if (a_joins && b_joins && (a.is_string() || b.is_string())) // Empty leaves the other side as it is
        return a.is_empty() ? b : b.is_empty() ? a : concatenate(a, b);
    return sum<Plus>(a, b);
}

Variant subtract(const Variant& a, const Variant& b) {
    if (is_small(a.type()) && is_small(b.type()))
        return whole_result(a.whole() - b.whole(),
                            a.type() == b.type() && a.type() == Type::Integer ? Rank::Integer : Rank::Long);
    if (either_object(a, b))
        return on_values(a, b, subtract);
    return either_null(a, b) ? Variant::null() : sum<Minus>(a, b);
}

Variant multiply(const Variant& left, const Variant& right) {
    if (either_object(left, right))
        return on_values(left, right, multiply);
    if (either_null(left, right))
        return Variant::null();
    const Operand a = operand(left), b = operand(right);
    const Rank rank = common_rank(a, b);
    if (rank <= Rank::LongLong)
        return whole_arithmetic<Times>(a, b, rank);
    if (rank == Rank::Currency)
        return currency_product(a, b);
    return rank == Rank::Single ? single_result(real(a) * real(b)) : real_result(real(a) * real(b));
}

Variant divide(const Variant& left, const Variant& right) {
    if (either_object(left, right))
        return on_values(left, right, divide);
    if (either_null(left, right))
        return Variant::null();
    const Operand a = operand(left), b = operand(right);
    if (real(b) == 0)
        throw Error(11);
    const double result = real(a) / real(b);
    return common_rank(a, b) == Rank::Single ? single_result(result) : real_result(result);
}

namespace {

// `\` and Mod work on whole numbers: others are rounded to Long first.
Operand whole_operand(const Variant& value) {
    const bool is_narrow = value.is_whole() || value.type() == Type::Boolean || value.is_empty();
    return is_narrow ? operand(value) : Operand{Rank::Long, to_long(value)};
}

template <class Operation>
Variant whole_division(const Variant& left, const Variant& right, Operation operation) {
    const Operand a = whole_operand(left), b = whole_operand(right);
    if (b.whole == 0)
        throw Error(11);
    return operation(a.whole, b.whole, std::max(a.rank, b.rank));
}

} // namespace

Variant integer_divide(const Variant& a, const Variant& b) {
    if (either_object(a, b))
        return on_values(a, b, integer_divide);
    if (either_null(a, b))
        return Variant::null();
    return whole_division(a, b, [](std::int64_t x, std::int64_t y, Rank rank) -> Variant {
        if (y == -1 && x == std::numeric_limits<std::int64_t>::min()) // the one quotient that overflows
            return -static_cast<double>(x);
        return whole_result(x / y, rank);
    });
}

Variant modulo(const Variant& a, const Variant& b) {
    if (either_object(a, b))
        return on_values(a, b, modulo);
    if (either_null(a, b))
        return Variant::null();
    return whole_division(a, b, [](std::int64_t x, std::int64_t y, Rank rank) {
        return whole_result(y == -1 ? 0 : x % y, rank);
    });
}

Variant power(const Variant& left, const Variant& right) {
    if (either_object(left, right))
        return on_values(left, right, power);
    if (either_null(left, right))
        return Variant::null();
    const double base = to_double(left), exponent = to_double(right);
    if (base == 0 && exponent < 0)
        throw Error(kErrorCall);
    const double result = std::pow(base, exponent);
    if (std::isnan(result)) // a negative base to a fraction
        throw Error(kErrorCall);
    return real_result(result);
}

Variant negate(const Variant& value) {
    if (value.is_object())
        return negate(value_of(value));
    if (value.is_null())
        return value;
    const Operand a = operand(value);
    switch (a.rank) {
    case Rank::Single:
        return Variant::single(static_cast<float>(-a.real));
    case Rank::Double:
        return -a.real;
    case Rank::Date:
        return date_result(-a.real);
    case Rank::Currency:
        if (a.whole == std::numeric_limits<std::int64_t>::min())
            throw Error(kErrorOverflow);
        return Variant::currency(-a.whole);
    default:
        return whole_arithmetic<Minus>({a.rank, 0}, a, a.rank);
    }
}

// --- Text ------------------------------------------------------------------------------------------

namespace {

// Two byte strings stay one; beside a text that says something, text turns to its bytes, since that is
// what the platform's strings are made of.
Variant join_bytes(const Text& a, const Text& b) {
    const auto bytes = [](const Text& text) { return text.is_bytes() ? text.str() : to_utf16(text.view()); };
    return Text::bytes(bytes(a) + bytes(b));
}

void append_value(Text& text, const Variant& value) {
    if (value.is_string() || value.is_byte_array()) {
        const Text more = value.text();
        text.append(more.view());
        return;
    }
    if (value.type() == Type::Error || value.is_array())
        throw Error(kErrorMismatch);
    std::string more; // short enough to need no memory of its own
    append_text(more, value);
    text.append(more);
}

} // namespace

Variant concatenate(Variant a, const Variant& b) {
    if (either_object(a, b))
        return concatenate(value_of(std::move(a)), value_of(b));
    if (a.is_null() && b.is_null())
        return a;
    if (!a.is_string())
        a = a.is_null() ? Text() : to_text(a);
    if (a.text().is_bytes() || ((b.is_string() || b.is_byte_array()) && b.text().is_bytes()))
        return b.is_null() ? a : join_bytes(a.text(), to_text(b));
    append_value(a.text(), b);
    return a;
}

} // namespace tabrixdb
