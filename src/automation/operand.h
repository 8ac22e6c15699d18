#pragma once

#include "automation/conversions.h"
#include "automation/object.h"
#include "automation/variant.h"

#include <cstdint>

// What the operators share. Private to their sources; everyone else includes operators.h.
namespace tabrixdb {

// Products of two 64-bit numbers.
__extension__ using Wide = __int128;

// The numeric types in the order in which one gives way to the other in arithmetic.
enum class Rank : std::uint8_t { Byte, Integer, Long, LongLong, Single, Double, Currency, Date };

struct Operand {
    Rank rank = Rank::Integer;
    std::int64_t whole = 0; // up to LongLong; Currency in ten-thousandths
    double real = 0;        // Single, Double, Date
};

inline bool is_small(Type type) {
    return type == Type::Integer || type == Type::Long;
}

inline Operand operand(const Variant& value) {
    switch (value.type()) {
    case Type::Byte:
        return {Rank::Byte, value.whole()};
    case Type::Integer:
        return {Rank::Integer, value.whole()};
    case Type::Long:
        return {Rank::Long, value.whole()};
    case Type::LongLong:
        return {Rank::LongLong, value.whole()};
    case Type::Boolean:
        return {Rank::Integer, value.boolean() ? -1 : 0};
    case Type::Empty:
        return {Rank::Integer, 0};
    case Type::Currency:
        return {Rank::Currency, value.whole()};
    case Type::Single:
        return {Rank::Single, 0, value.real()};
    case Type::Date:
        return {Rank::Date, 0, value.real()};
    default: // Double; numeric text counts as one
        return {Rank::Double, 0, to_double(value)};
    }
}

inline double real(const Operand& operand) {
    if (operand.rank == Rank::Currency)
        return static_cast<double>(operand.whole) / 10000;
    return operand.rank <= Rank::LongLong ? static_cast<double>(operand.whole) : operand.real;
}

inline bool either_null(const Variant& a, const Variant& b) {
    return a.is_null() || b.is_null();
}

// For operators on objects: reads both through their default members, then does it again.
template <class Operator>
Variant on_values(const Variant& a, const Variant& b, Operator operation) {
    return operation(value_of(a), value_of(b));
}

inline bool either_object(const Variant& a, const Variant& b) {
    return a.is_object() || b.is_object();
}

} // namespace tabrixdb
