#include "automation/error.h"
#include "automation/operand.h"
#include "automation/operators.h"

namespace tabrixdb {

namespace {

// The width in which bits are combined. Empty counts as a Long, as texts and floating numbers do.
enum class Width : std::uint8_t { Boolean, Byte, Integer, Long, LongLong };

struct Bits {
    std::int64_t value = 0;
    Width width = Width::Long;
};

Bits bits_of(const Variant& value) {
    switch (value.type()) {
    case Type::Boolean:
        return {value.boolean() ? -1 : 0, Width::Boolean};
    case Type::Byte:
        return {value.whole(), Width::Byte};
    case Type::Integer:
        return {value.whole(), Width::Integer};
    case Type::LongLong:
        return {value.whole(), Width::LongLong};
    case Type::String:
        if (equal_ignore_case(value.text(), "true") || equal_ignore_case(value.text(), "false"))
            return {to_boolean(value) ? -1 : 0, Width::Boolean};
        [[fallthrough]];
    default:
        return {to_long(value), Width::Long};
    }
}

Width common_width(Width a, Width b) {
    if (a == b)
        return a;
    // True is -1, which a Byte cannot be.
    const Width wider = std::max(a, b);
    return wider == Width::Byte ? Width::Integer : wider;
}

Variant from_bits(std::int64_t value, Width width) {
    switch (width) {
    case Width::Boolean:
        return value != 0;
    case Width::Byte:
        return Variant::byte(static_cast<std::uint8_t>(value));
    case Width::Integer:
        return static_cast<std::int16_t>(value);
    case Width::LongLong:
        return Variant::longlong(value);
    default:
        return static_cast<std::int32_t>(value);
    }
}

template <class Operation>
Variant combine(const Variant& left, const Variant& right, Operation operation) {
    const Bits a = bits_of(left), b = bits_of(right);
    return from_bits(operation(a.value, b.value), common_width(a.width, b.width));
}

// Null beside a value: decided only when that value decides alone, whatever the unknown side is.
Variant with_null(const Variant& known, std::int64_t deciding, std::int64_t result) {
    if (known.is_null())
        return known;
    const Bits bits = bits_of(known);
    return bits.value == deciding ? from_bits(result, bits.width) : Variant::null();
}

bool both_boolean(const Variant& a, const Variant& b) {
    return a.type() == Type::Boolean && b.type() == Type::Boolean;
}

} // namespace

Variant logical_not(const Variant& value) {
    if (value.type() == Type::Boolean)
        return !value.boolean();
    if (value.is_object())
        return logical_not(value_of(value));
    if (value.is_null())
        return value;
    const Bits bits = bits_of(value);
    return from_bits(bits.width == Width::Boolean ? bits.value == 0 : ~bits.value, bits.width);
}

Variant logical_and(const Variant& a, const Variant& b) {
    if (both_boolean(a, b))
        return a.boolean() && b.boolean();
    if (either_object(a, b))
        return on_values(a, b, logical_and);
    if (either_null(a, b))
        return with_null(a.is_null() ? b : a, 0, 0);
    return combine(a, b, [](std::int64_t x, std::int64_t y) { return x & y; });
}

Variant logical_or(const Variant& a, const Variant& b) {
    if (both_boolean(a, b))
        return a.boolean() || b.boolean();
    if (either_object(a, b))
        return on_values(a, b, logical_or);
    if (either_null(a, b))
        return with_null(a.is_null() ? b : a, -1, -1);
    return combine(a, b, [](std::int64_t x, std::int64_t y) { return x | y; });
}

Variant logical_xor(const Variant& a, const Variant& b) {
    if (either_object(a, b))
        return on_values(a, b, logical_xor);
    if (either_null(a, b))
        return Variant::null();
    return combine(a, b, [](std::int64_t x, std::int64_t y) { return x ^ y; });
}

Variant logical_eqv(const Variant& a, const Variant& b) {
    if (either_object(a, b))
        return on_values(a, b, logical_eqv);
    if (either_null(a, b))
        return Variant::null();
    return combine(a, b, [](std::int64_t x, std::int64_t y) { return ~(x ^ y); });
}

Variant logical_imp(const Variant& a, const Variant& b) {
    if (either_object(a, b))
        return on_values(a, b, logical_imp);
    if (a.is_null())
        return with_null(b, -1, -1);
    if (b.is_null())
        return with_null(a, 0, -1);
    return combine(a, b, [](std::int64_t x, std::int64_t y) { return ~x | y; });
}

} // namespace tabrixdb
