#include "automation/error.h"
#include "automation/operand.h"
#include "automation/operators.h"

#include <algorithm>
#include <string_view>

namespace tabrixdb {

namespace {

template <class T>
Order order_of(T a, T b) {
    return a < b ? Order::Less : a == b ? Order::Equal : Order::Greater;
}

// By UTF-16 code units, as scripts see text. The bytes of UTF-8 sort alike, but for one case: characters
// beyond the first 65536 are pairs of units from 0xD800, and so come before U+E000 to U+FFFF.
Order compare_binary(std::string_view a, std::string_view b) {
    const std::size_t common = std::min(a.size(), b.size());
    if (const int difference = a.substr(0, common).compare(b.substr(0, common)); difference != 0) {
        std::size_t at = 0;
        while (a[at] == b[at])
            ++at;
        const auto x = static_cast<unsigned char>(a[at]), y = static_cast<unsigned char>(b[at]);
        const bool swapped = x >= 0xEE && y >= 0xEE && (x >= 0xF0) != (y >= 0xF0);
        return (difference < 0) != swapped ? Order::Less : Order::Greater;
    }
    return order_of(a.size(), b.size());
}

Order compare_texts(const Text& a, const Text& b, bool ignore_case) {
    if (a.is_bytes() != b.is_bytes() && !a.empty() && !b.empty()) {
        std::string decoded;
        append_utf16(decoded, a.is_bytes() ? a.view() : b.view());
        return a.is_bytes() ? compare_texts(decoded, b, ignore_case) : compare_texts(a, decoded, ignore_case);
    }
    return ignore_case ? order_of(compare_ignore_case(a, b), 0) : compare_binary(a, b);
}

Order compare_numbers(const Variant& left, const Variant& right) {
    const Operand a = operand(left), b = operand(right);
    if (a.rank <= Rank::LongLong && b.rank <= Rank::LongLong)
        return order_of(a.whole, b.whole);
    const auto exact = [](const Operand& value) {
        return value.rank <= Rank::LongLong || value.rank == Rank::Currency;
    };
    if (exact(a) && exact(b)) {
        const auto scaled = [](const Operand& value) {
            return Wide{value.whole} * (value.rank == Rank::Currency ? 1 : 10000);
        };
        return order_of(scaled(a), scaled(b));
    }
    return order_of(real(a), real(b));
}

// A text beside a number, Boolean or Date.
Order compare_mixed(const Text& text, bool text_is_literal, const Variant& other, bool other_is_literal,
                    bool ignore_case) {
    const bool boolean = other.type() == Type::Boolean;
    if (other_is_literal && !boolean) {
        const Variant number =
            other.type() == Type::Date ? Variant::date(to_date(text)) : Variant(to_double(text));
        return compare_numbers(number, other);
    }
    if (text_is_literal || other_is_literal)
        return compare_texts(text, to_text(other), ignore_case);
    return Order::Greater;
}

Order reversed(Order order) {
    return order == Order::Less ? Order::Greater : order == Order::Greater ? Order::Less : order;
}

void require_comparable(const Variant& value) {
    if (value.is_array() || value.is_byte_array() || value.type() == Type::Error)
        throw Error(kErrorMismatch);
}

} // namespace

Order compare(const Variant& a, const Variant& b, Literals literals, bool ignore_case) {
    if (is_small(a.type()) && is_small(b.type()))
        return order_of(a.whole(), b.whole());
    if (a.is_string() && b.is_string())
        return compare_texts(a.text(), b.text(), ignore_case);
    if (a.type() == Type::Double && b.type() == Type::Double)
        return order_of(a.real(), b.real());
    if (either_object(a, b))
        return compare(value_of(a), value_of(b), literals, ignore_case);
    if (either_null(a, b))
        return Order::Unknown;
    require_comparable(a);
    require_comparable(b);
    if (a.is_string())
        return b.is_empty() ? compare_texts(a.text(), {}, ignore_case)
                            : compare_mixed(a.text(), literals.left, b, literals.right, ignore_case);
    if (b.is_string())
        return a.is_empty()
                   ? compare_texts({}, b.text(), ignore_case)
                   : reversed(compare_mixed(b.text(), literals.right, a, literals.left, ignore_case));
    return compare_numbers(a, b);
}

bool is_true(const Variant& condition) {
    if (condition.type() == Type::Boolean)
        return condition.boolean();
    if (condition.is_object())
        return is_true(value_of(condition));
    return !condition.is_null() && to_boolean(condition);
}

} // namespace tabrixdb
