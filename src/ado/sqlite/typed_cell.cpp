#include "ado/sqlite/typed_cell.h"

#include "ado/sqlite/date_form.h"
#include "ado/values.h"
#include "automation/text.h"
#include "platform/data.h"

namespace tabrixdb::ado::sqlite {

namespace {

namespace type = platform::data_type;
using Kind = Cell::Kind;

constexpr std::int64_t kMostWholeCurrency = INT64_MAX / 10000;

bool is_number(const Cell& cell) {
    return cell.kind == Kind::Integer || cell.kind == Kind::Real;
}

double number_of(const Cell& cell) {
    return cell.kind == Kind::Real ? cell.real : static_cast<double>(cell.whole);
}

Cell boolean(const Cell& stored) {
    if (is_number(stored))
        return Cell::of_whole(Kind::Boolean, number_of(stored) != 0);
    if (stored.kind == Kind::Text) {
        for (const std::string_view word : {"true", "yes", "on", "t", "y", "1", "-1"})
            if (equal_ignore_case(stored.view(), word))
                return Cell::of_whole(Kind::Boolean, 1);
        for (const std::string_view word : {"false", "no", "off", "f", "n", "0"})
            if (equal_ignore_case(stored.view(), word))
                return Cell::of_whole(Kind::Boolean, 0);
    }
    return stored;
}

Cell date(const Cell& stored) {
    const auto days = stored.kind == Kind::Text ? date_of_text(stored.view())
                      : is_number(stored)       ? date_of_number(number_of(stored))
                                                : std::nullopt;
    return days ? Cell::of_real(Kind::Date, *days) : stored;
}

Cell currency(const Cell& stored) {
    if (stored.kind == Kind::Integer && stored.whole <= kMostWholeCurrency &&
        stored.whole >= -kMostWholeCurrency)
        return Cell::of_whole(Kind::Currency, stored.whole * 10000);
    if (stored.kind == Kind::Real)
        if (const auto exact = exact_currency(stored.real))
            return Cell::of_whole(Kind::Currency, *exact);
    return stored;
}

// The two places from which SQLite gives values, with the same questions to ask.
struct ColumnOf {
    sqlite3_stmt* row;
    int column;

    int type() const { return sqlite3_column_type(row, column); }

    std::int64_t whole() const { return sqlite3_column_int64(row, column); }

    double real() const { return sqlite3_column_double(row, column); }

    const unsigned char* text() const { return sqlite3_column_text(row, column); }

    const void* blob() const { return sqlite3_column_blob(row, column); }

    int size() const { return sqlite3_column_bytes(row, column); }
};

struct ValueOf {
    sqlite3_value* value;

    int type() const { return sqlite3_value_type(value); }

    std::int64_t whole() const { return sqlite3_value_int64(value); }

    double real() const { return sqlite3_value_double(value); }

    const unsigned char* text() const { return sqlite3_value_text(value); }

    const void* blob() const { return sqlite3_value_blob(value); }

    int size() const { return sqlite3_value_bytes(value); }
};

template <class Source>
Cell stored(const Source& source) noexcept {
    const auto view = [&source](const void* data) { // the size is right once the data was asked for
        return std::string_view(static_cast<const char*>(data),
                                data ? static_cast<std::size_t>(source.size()) : 0);
    };
    switch (source.type()) {
    case SQLITE_INTEGER:
        return Cell::integer(source.whole());
    case SQLITE_FLOAT:
        return Cell::of_real(Kind::Real, source.real());
    case SQLITE_TEXT:
        return Cell::text(view(source.text()));
    case SQLITE_BLOB:
        return Cell::of_view(Kind::Bytes, view(source.blob()));
    default:
        return {};
    }
}

} // namespace

Cell typed(const Cell& stored, std::int32_t data_type) noexcept {
    if (stored.is_null())
        return stored;
    switch (data_type) {
    case type::kBoolean:
        return boolean(stored);
    case type::kDbDate:
    case type::kDbTime:
    case type::kDbTimeStamp:
        return date(stored);
    case type::kCurrency:
    case type::kNumeric:
        return currency(stored);
    case type::kSingle:
    case type::kDouble:
        return is_number(stored) ? Cell::of_real(Kind::Real, number_of(stored)) : stored;
    default:
        return stored;
    }
}

Cell stored_cell(sqlite3_stmt* row, int column) noexcept {
    return stored(ColumnOf{row, column});
}

Cell stored_cell(sqlite3_value* value) noexcept {
    return stored(ValueOf{value});
}

} // namespace tabrixdb::ado::sqlite
