#include "ado/values.h"

#include "automation/conversions.h"
#include "automation/text.h"

#include <charconv>
#include <cmath>
#include <limits>

namespace tabrixdb::ado {

namespace {

namespace type = platform::data_type;
using Kind = Cell::Kind;

constexpr double kSecondsPerDay = 86400;
constexpr std::int64_t kTenThousand = 10000;

template <class T>
bool fits(std::int64_t value) {
    return value >= std::numeric_limits<T>::min() && value <= std::numeric_limits<T>::max();
}

Variant whole_variant(std::int64_t value, std::int32_t data_type) {
    if (data_type == type::kBigInt)
        return Variant::longlong(value);
    if (data_type == type::kSmallInt && fits<std::int16_t>(value))
        return Variant(static_cast<std::int16_t>(value));
    if (data_type == type::kUnsignedTinyInt && fits<std::uint8_t>(value))
        return Variant::byte(static_cast<std::uint8_t>(value));
    if (fits<std::int32_t>(value))
        return Variant(static_cast<std::int32_t>(value));
    return Variant::longlong(value);
}

Cell whole_cell(const Variant& value) {
    return Cell::integer(to_longlong(value));
}

// A database may hold more in such a column than its type says, but gets no more.
template <class T>
Cell small_cell(const Variant& value) {
    const Cell cell = whole_cell(value);
    if (!fits<T>(cell.whole))
        throw Error(kErrorOverflow);
    return cell;
}

Cell decimal_cell(const Variant& value) {
    if (value.is_whole())
        return whole_cell(value);
    if (value.type() == Type::Currency)
        return Cell::of_whole(Kind::Currency, value.whole());
    const double number = to_double(value);
    if (const auto exact = exact_currency(number))
        return Cell::of_whole(Kind::Currency, *exact);
    return Cell::of_real(Kind::Real, number);
}

OwnedCell text_cell(const Variant& value) {
    const Text text = to_text(value);
    return OwnedCell(Cell::text(text.view()));
}

OwnedCell typed_cell(const Variant& value, std::int32_t data_type) {
    switch (data_type) {
    case type::kSmallInt:
        return OwnedCell(small_cell<std::int16_t>(value));
    case type::kTinyInt:
        return OwnedCell(small_cell<std::int8_t>(value));
    case type::kUnsignedTinyInt:
        return OwnedCell(small_cell<std::uint8_t>(value));
    case type::kInteger:
    case type::kBigInt:
        return OwnedCell(whole_cell(value));
    case type::kSingle:
    case type::kDouble:
        return OwnedCell(Cell::of_real(Kind::Real, to_double(value)));
    case type::kCurrency:
    case type::kDecimal:
    case type::kNumeric:
        return OwnedCell(decimal_cell(value));
    case type::kBoolean:
        return OwnedCell(Cell::of_whole(Kind::Boolean, to_boolean(value)));
    case type::kDate:
    case type::kDbDate:
    case type::kDbTime:
    case type::kDbTimeStamp:
        return OwnedCell(Cell::of_real(Kind::Date, to_date(value)));
    case type::kBinary:
    case type::kVarBinary:
    case type::kLongVarBinary: {
        const Text bytes = to_text(value);
        return OwnedCell(Cell::of_view(Kind::Bytes, bytes.view()));
    }
    default:
        return text_cell(value);
    }
}

bool is_text(std::int32_t data_type) {
    return data_type == type::kVarChar || data_type == type::kLongVarChar || data_type == type::kVarWChar ||
           data_type == type::kLongVarWChar || data_type == type::kGuid;
}

// Null, numbers, text, bytes.
int rank(const Cell& cell) noexcept {
    switch (cell.kind) {
    case Kind::Null:
        return 0;
    case Kind::Text:
        return 2;
    case Kind::Bytes:
        return 3;
    default:
        return 1;
    }
}

double number_of(const Cell& cell) noexcept {
    switch (cell.kind) {
    case Kind::Real:
    case Kind::Date:
        return cell.real;
    case Kind::Currency:
        return static_cast<double>(cell.whole) / double{kTenThousand};
    default:
        return static_cast<double>(cell.whole);
    }
}

std::weak_ordering compare_numbers(const Cell& a, const Cell& b) noexcept {
    if (a.kind == b.kind && a.kind != Kind::Real && a.kind != Kind::Date)
        return a.whole <=> b.whole;
    if (a.kind == Kind::Date && b.kind == Kind::Date)
        return date_seconds(a.real) <=> date_seconds(b.real);
    const double left = number_of(a), right = number_of(b);
    return left < right   ? std::weak_ordering::less
           : left > right ? std::weak_ordering::greater
                          : std::weak_ordering::equivalent;
}

} // namespace

Variant to_variant(const Cell& cell, std::int32_t data_type) {
    switch (cell.kind) {
    case Kind::Null:
        return Variant::null();
    case Kind::Boolean:
        return Variant(cell.whole != 0);
    case Kind::Integer:
        return whole_variant(cell.whole, data_type);
    case Kind::Real:
        return data_type == type::kSingle ? Variant::single(static_cast<float>(cell.real))
                                          : Variant(cell.real);
    case Kind::Currency:
        return Variant::currency(cell.whole);
    case Kind::Date:
        return Variant::date(cell.real);
    case Kind::Text:
        return Variant(Text(cell.view()));
    case Kind::Bytes:
        return Variant::byte_array(cell.view());
    }
    return Variant();
}

void append_text(std::string& out, const Cell& cell, std::int32_t data_type) {
    switch (cell.kind) {
    case Kind::Null:
        return;
    case Kind::Text:
        out.append(cell.view());
        return;
    case Kind::Integer: {
        char digits[24];
        const auto end = std::to_chars(digits, digits + sizeof digits, cell.whole).ptr;
        out.append(digits, end);
        return;
    }
    default: // by the page's locale; such a variant holds no memory, but for bytes
        tabrixdb::append_text(out, to_variant(cell, data_type));
    }
}

OwnedCell from_variant(const Variant& given, const ColumnInfo& column) {
    const Variant value = given.is_object() ? value_of(given) : given;
    if (value.is_null() || value.is_empty())
        return OwnedCell();
    if (value.is_string() && value.text().empty() && !is_text(column.column.type))
        return OwnedCell();
    try {
        return typed_cell(value, column.column.type);
    } catch (const Error&) {
        throw error(Code::DataConversion, kFieldSource,
                    "Field " + column.column.name + " cannot hold this value.");
    }
}

OwnedCell parameter_cell(const Variant& given) {
    const Variant value = given.is_object() ? value_of(given) : given;
    switch (value.type()) {
    case Type::Empty:
    case Type::Null:
        return OwnedCell();
    case Type::Boolean:
        return OwnedCell(Cell::of_whole(Kind::Boolean, value.boolean()));
    case Type::Byte:
    case Type::Integer:
    case Type::Long:
    case Type::LongLong:
        return OwnedCell(Cell::integer(value.whole()));
    case Type::Currency:
        return OwnedCell(Cell::of_whole(Kind::Currency, value.whole()));
    case Type::Single:
    case Type::Double:
        return OwnedCell(Cell::of_real(Kind::Real, value.real()));
    case Type::Date:
        return OwnedCell(Cell::of_real(Kind::Date, value.real()));
    case Type::String:
        return OwnedCell(Cell::text(value.text().view()));
    case Type::ByteArray:
        return OwnedCell(Cell::of_view(Kind::Bytes, value.text().view()));
    default:
        throw Error(kErrorMismatch);
    }
}

std::int32_t parameter_type(const Cell& value) noexcept {
    if (value.kind != Kind::Date)
        return type::kVarWChar;
    if (std::trunc(value.real) == 0)
        return type::kDbTime;
    return value.real == std::trunc(value.real) ? type::kDbDate : type::kDbTimeStamp;
}

std::weak_ordering compare(const Cell& a, const Cell& b) noexcept {
    const int left = rank(a), right = rank(b);
    if (left != right)
        return left <=> right;
    switch (left) {
    case 0:
        return std::weak_ordering::equivalent;
    case 1:
        return compare_numbers(a, b);
    case 2:
        return compare_ignore_case(a.view(), b.view()) <=> 0;
    default:
        return a.view() <=> b.view();
    }
}

std::optional<std::int64_t> exact_currency(double value) noexcept {
    constexpr double kExactBelow = 9007199254740992.0; // above it not every whole number is a Double
    const double scaled = std::nearbyint(value * double{kTenThousand});
    if (!(std::abs(scaled) < kExactBelow) || scaled / double{kTenThousand} != value)
        return std::nullopt;
    return static_cast<std::int64_t>(scaled);
}

std::int64_t date_seconds(double days) noexcept {
    return std::llround(days * kSecondsPerDay);
}

std::int32_t actual_size(const Cell& cell, const ColumnInfo& column) noexcept {
    switch (cell.kind) {
    case Kind::Null:
        return 0;
    case Kind::Text:
        return static_cast<std::int32_t>(2 * utf16_length(cell.view()));
    case Kind::Bytes:
        return static_cast<std::int32_t>(cell.size);
    default:
        return column.column.defined_size;
    }
}

} // namespace tabrixdb::ado
