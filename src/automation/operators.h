#pragma once

#include "automation/variant.h"

namespace tabrixdb {

// The operators of the script language on values (objects are read through their default member first),
// with their result types: Integer grows to Long and Double, Byte to Integer, Null propagates, Empty is 0
// or "", `+` joins two strings, `/` is always floating, `\` and Mod round to Long first. They raise
// Error 6, 11 and 13 as the language does.

Variant add(const Variant& a, const Variant& b);
Variant subtract(const Variant& a, const Variant& b);
Variant multiply(const Variant& a, const Variant& b);
Variant divide(const Variant& a, const Variant& b);
Variant integer_divide(const Variant& a, const Variant& b);
Variant modulo(const Variant& a, const Variant& b);
Variant power(const Variant& a, const Variant& b);
Variant negate(const Variant& value);
// `&`: Null is ""; Null & Null is Null. Appends to `a` in place when it is a string of its own.
Variant concatenate(Variant a, const Variant& b);

Variant logical_not(const Variant& value);
Variant logical_and(const Variant& a, const Variant& b);
Variant logical_or(const Variant& a, const Variant& b);
Variant logical_xor(const Variant& a, const Variant& b);
Variant logical_eqv(const Variant& a, const Variant& b);
Variant logical_imp(const Variant& a, const Variant& b);

// How a comparison came out; Unknown when a side is Null.
enum class Order : signed char { Less = -1, Equal = 0, Greater = 1, Unknown = 2 };

// Which operands stand in the source as literals: a literal number makes the other side's text a number
// (Error 13 when it is none), a literal string makes the other side's number a text; with no literal, any
// string is greater than any number.
struct Literals {
    bool left = false;
    bool right = false;
};

// `ignore_case` compares text as Option Compare Text would (used by StrComp, Filter, ...).
Order compare(const Variant& a, const Variant& b, Literals literals = {}, bool ignore_case = false);

// The condition of an If: Null is false, text converts as CBool does.
bool is_true(const Variant& condition);

} // namespace tabrixdb
