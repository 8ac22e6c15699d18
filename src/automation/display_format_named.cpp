#include "automation/conversions.h"
#include "automation/display_format.h"
#include "automation/format_functions.h"
#include "automation/locale.h"
#include "automation/number_text.h"

#include <array>

namespace tabrixdb {

namespace {

constexpr char kFixed[] = "0.00", kStandard[] = "#,##0.00", kPercent[] = "0.00%", kScientific[] = "0.00E+00";
constexpr char kMediumDate[] = "dd-mmm-yy", kMediumTime[] = "hh:nn AM/PM", kShortTime[] = "hh:nn";
constexpr char kYes[] = "Yes", kNo[] = "No", kTrue[] = "True", kFalse[] = "False", kOn[] = "On",
               kOff[] = "Off";

template <const char* Pattern>
void by_pattern(std::string& out, const Variant& value) {
    static const DisplayFormat format{std::string_view(Pattern)};
    format.append(out, value);
}

void general_number(std::string& out, const Variant& value) {
    const bool convert = value.is_string() ? parse_number(value.text()).has_value()
                                           : value.type() == Type::Boolean || value.type() == Type::Date;
    if (convert)
        append_number(out, to_double(value));
    else
        append_text(out, value);
}

// As FormatCurrency, but the sign stays when the number is rounded to zero.
void currency(std::string& out, const Variant& value) {
    std::optional<Decimal> number = displayed_number(value);
    if (!number)
        return append_text(out, value);
    const NumberStyle style{.parentheses = Locale::current().currency_parentheses};
    const std::string text = format_currency(value, style);
    const bool negative = number->negative;
    number->round_to(style.decimals);
    if (negative && number->digits.empty())
        out.append(style.parentheses ? "(" : "-").append(text).append(style.parentheses ? ")" : "");
    else
        out += text;
}

template <const char* True, const char* False>
void truth(std::string& out, const Variant& value) {
    if (const std::optional<Decimal> number = displayed_number(value))
        out += number->digits.empty() ? False : True;
    else
        append_text(out, value);
}

template <void (*Write)(std::string& out, double days)>
void by_date(std::string& out, const Variant& value) {
    if (const std::optional<double> days = displayed_date(value))
        Write(out, *days);
    else
        append_text(out, value);
}

void long_date(std::string& out, double days) {
    append_date(out, date_parts(days), Locale::current().long_date);
}

void short_date(std::string& out, double days) {
    append_date(out, date_parts(days), Locale::current().short_date);
}

void long_time(std::string& out, double days) {
    append_time(out, date_parts(days));
}

struct Entry {
    std::string_view name;
    NamedFormat append;
};

constexpr auto kNamed = std::to_array<Entry>({
    {"General Number", general_number},
    {"Currency", currency},
    {"Fixed", by_pattern<kFixed>},
    {"Standard", by_pattern<kStandard>},
    {"Percent", by_pattern<kPercent>},
    {"Scientific", by_pattern<kScientific>},
    {"Yes/No", truth<kYes, kNo>},
    {"True/False", truth<kTrue, kFalse>},
    {"On/Off", truth<kOn, kOff>},
    {"General Date", by_date<append_date_text>},
    {"Long Date", by_date<long_date>},
    {"Medium Date", by_pattern<kMediumDate>},
    {"Short Date", by_date<short_date>},
    {"Long Time", by_date<long_time>},
    {"Medium Time", by_pattern<kMediumTime>},
    {"Short Time", by_pattern<kShortTime>},
});

} // namespace

NamedFormat find_named_format(std::string_view name) noexcept {
    for (const Entry& entry : kNamed)
        if (equal_ignore_case(entry.name, name))
            return entry.append;
    return nullptr;
}

} // namespace tabrixdb
