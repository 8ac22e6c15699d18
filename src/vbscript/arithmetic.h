#pragma once

#include "automation/operators.h"
#include "vbscript/program.h"

// The operators with their frequent cases in front: small whole numbers, Doubles and texts are worked on in
// line, everything else by the general operators.
namespace tabrixdb::vbscript {

inline bool is_small_whole(const Variant& value) noexcept {
    return value.type() == Type::Integer || value.type() == Type::Long;
}

// The result of whole arithmetic on Integers and Longs, in the operands' type or the next that holds it.
inline Variant small_whole(std::int64_t value, const Variant& a, const Variant& b) noexcept {
    const bool both_integers = a.type() == Type::Integer && b.type() == Type::Integer;
    if (both_integers)
        return Variant::integer(value);
    if (value >= INT32_MIN && value <= INT32_MAX)
        return static_cast<std::int32_t>(value);
    return static_cast<double>(value);
}

inline Variant fast_add(const Variant& a, const Variant& b) {
    if (is_small_whole(a) && is_small_whole(b))
        return small_whole(a.whole() + b.whole(), a, b);
    return add(a, b);
}

inline Variant fast_subtract(const Variant& a, const Variant& b) {
    if (is_small_whole(a) && is_small_whole(b))
        return small_whole(a.whole() - b.whole(), a, b);
    return subtract(a, b);
}

inline Variant fast_multiply(const Variant& a, const Variant& b) {
    if (is_small_whole(a) && is_small_whole(b))
        return small_whole(a.whole() * b.whole(), a, b);
    return multiply(a, b);
}

inline Order fast_compare(const Variant& a, const Variant& b, std::uint8_t flags) {
    if (is_small_whole(a) && is_small_whole(b)) {
        const std::int64_t left = a.whole(), right = b.whole();
        return left < right ? Order::Less : left > right ? Order::Greater : Order::Equal;
    }
    return compare(a, b,
                   {.left = (flags & Instruction::kLeftLiteral) != 0,
                    .right = (flags & Instruction::kRightLiteral) != 0});
}

// Equal and NotEqual of two texts need no order.
inline Order fast_compare_equal(const Variant& a, const Variant& b, std::uint8_t flags) {
    if (a.is_string() && b.is_string() && !a.text().is_bytes() && !b.text().is_bytes())
        return a.text() == b.text() ? Order::Equal : Order::Less;
    return fast_compare(a, b, flags);
}

inline bool holds(OpCode comparison, Order order) noexcept {
    switch (comparison) {
    case OpCode::Equal:
    case OpCode::JumpEqual:
        return order == Order::Equal;
    case OpCode::NotEqual:
    case OpCode::JumpNotEqual:
        return order != Order::Equal && order != Order::Unknown;
    case OpCode::Less:
    case OpCode::JumpLess:
        return order == Order::Less;
    case OpCode::LessEqual:
    case OpCode::JumpLessEqual:
        return order == Order::Less || order == Order::Equal;
    case OpCode::Greater:
    case OpCode::JumpGreater:
        return order == Order::Greater;
    default:
        return order == Order::Greater || order == Order::Equal;
    }
}

inline Order order_for(OpCode comparison, const Variant& a, const Variant& b, std::uint8_t flags) {
    const bool only_equality = comparison == OpCode::Equal || comparison == OpCode::NotEqual ||
                               comparison == OpCode::JumpEqual || comparison == OpCode::JumpNotEqual;
    return only_equality ? fast_compare_equal(a, b, flags) : fast_compare(a, b, flags);
}

inline bool fast_is_true(const Variant& condition) {
    return condition.type() == Type::Boolean ? condition.boolean() : is_true(condition);
}

} // namespace tabrixdb::vbscript
