#include "automation/display_format.h"

#include "automation/conversions.h"
#include "automation/number_text.h"
#include "automation/object.h"

#include <utility>

namespace tabrixdb {

std::optional<Decimal> displayed_number(const Variant& value) {
    switch (value.type()) {
    case Type::Currency:
        return Decimal::from_currency(value.whole());
    case Type::Byte:
    case Type::Integer:
    case Type::Long:
    case Type::LongLong:
        return Decimal::from_whole(value.whole());
    case Type::Boolean:
        return Decimal::from_whole(value.boolean() ? -1 : 0);
    case Type::String:
        if (const std::optional<double> number = parse_number(value.text()))
            return Decimal::from_double(*number);
        return std::nullopt;
    default:
        return Decimal::from_double(to_double(value), value.type() == Type::Single ? 7 : 15);
    }
}

namespace {

bool is_null(const Variant& value) {
    return value.is_null() || value.is_missing();
}

std::optional<double> days_of(const Variant& value) {
    if (!value.is_string())
        return to_double(value);
    if (const std::optional<double> date = parse_date(value.text()))
        return date;
    return parse_number(value.text());
}

} // namespace

std::optional<double> displayed_date(const Variant& value) {
    static const double first = date_serial(100, 1, 1);
    static const double last = date_serial(9999, 12, 31) + time_serial(23, 59, 59);
    std::optional<double> days = days_of(value);
    if (days && !(*days > first - 1 && *days <= last))
        days.reset();
    return days;
}

DisplayFormat::DisplayFormat(std::string_view format) : named_(find_named_format(format)) {
    if (named_ || format.empty())
        return;
    ReadFormat read = read_format(format);
    kind_ = read.kind;
    sections_ = std::move(read.sections);
}

const FormatSection* DisplayFormat::section(std::size_t index) const noexcept {
    return index < sections_.size() && !sections_[index].tokens.empty() ? &sections_[index] : nullptr;
}

void DisplayFormat::append(std::string& out, const Variant& value) const {
    if (value.is_object())
        return append(out, value_of(value));
    if (named_) {
        if (!is_null(value))
            named_(out, value);
        return;
    }
    switch (kind_) {
    case FormatKind::General:
        return append_text(out, value);
    case FormatKind::Number:
        return append_number_format(out, value);
    case FormatKind::Date:
        return append_date_format(out, value);
    case FormatKind::Text:
        return append_text_format(out, value);
    }
}

void DisplayFormat::append_number_format(std::string& out, const Variant& value) const {
    if (is_null(value)) {
        if (const FormatSection* null_section = section(3))
            append_number_section(out, {}, *null_section);
        return;
    }
    std::optional<Decimal> number = displayed_number(value);
    if (!number)
        return append_text(out, value);
    const bool negative = std::exchange(number->negative, false);
    const FormatSection* chosen = negative ? section(1) : number->digits.empty() ? section(2) : nullptr;
    const FormatSection& shown = chosen ? *chosen : sections_.front();
    const bool shows_digits = shown.number.whole > 0 || shown.number.point;
    if (negative && !chosen && shows_digits)
        out += '-'; // a section for negative numbers has its own sign, or none
    append_number_section(out, std::move(*number), shown);
}

void DisplayFormat::append_date_format(std::string& out, const Variant& value) const {
    if (is_null(value))
        return;
    if (const std::optional<double> days = displayed_date(value))
        append_date_section(out, *days, sections_.front());
    else
        append_text(out, value);
}

void DisplayFormat::append_text_format(std::string& out, const Variant& value) const {
    std::string converted;
    if (!value.is_string())
        append_text(converted, value);
    const std::string_view text = value.is_string() ? std::string_view(value.text()) : converted;
    const FormatSection* blank = text.empty() ? section(1) : nullptr;
    if (blank || !is_null(value))
        append_text_section(out, text, blank ? *blank : sections_.front());
}

} // namespace tabrixdb
