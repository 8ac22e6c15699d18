#include "automation/display_format.h"

#include "automation/conversions.h"
#include "automation/format_functions.h"
#include "automation/number_text.h"
#include "automation/object.h"
#include "automation/text.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace tabrixdb {

namespace {

// --- Values ------------------------------------------------------------------------------------------------

bool is_blank(const Variant& value) {
    return value.is_empty() || value.is_null() || value.is_missing();
}

// The value as a number; nullopt for text that is none.
std::optional<Decimal> decimal_of(const Variant& value) {
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
        if (const std::optional<double> date = parse_date(value.text()))
            return Decimal::from_double(*date);
        return std::nullopt;
    default:
        return Decimal::from_double(to_double(value));
    }
}

// The value as a date; nullopt for text that is none.
std::optional<double> days_of(const Variant& value) {
    if (!value.is_string())
        return to_double(value);
    if (const std::optional<double> date = parse_date(value.text()))
        return date;
    return parse_number(value.text());
}

// --- Named formats -----------------------------------------------------------------------------------------

template <const char* Pattern>
void by_pattern(std::string& out, const Variant& value) {
    static const DisplayFormat format{std::string_view(Pattern)};
    format.append(out, value);
}

void general_number(std::string& out, const Variant& value) {
    const std::optional<double> number = value.is_string() ? parse_number(value.text()) : std::nullopt;
    append_text(out, number ? Variant(*number) : value);
}

void currency(std::string& out, const Variant& value) {
    const std::optional<Decimal> number = decimal_of(value);
    if (!number)
        return append_text(out, value);
    const bool is_text = value.is_string();
    out += format_currency(is_text ? Variant(to_double(value)) : value,
                           {.parentheses = Locale::current().currency_parentheses});
}

template <DateStyle Style>
void by_style(std::string& out, const Variant& value) {
    if (const std::optional<double> days = days_of(value))
        out += format_date_time(Variant::date(*days), Style);
    else
        append_text(out, value);
}

template <const char* True, const char* False>
void truth(std::string& out, const Variant& value) {
    if (const std::optional<Decimal> number = decimal_of(value))
        out += number->digits.empty() ? False : True;
    else
        append_text(out, value);
}

constexpr char kFixed[] = "0.00", kStandard[] = "#,##0.00", kPercent[] = "0.00%", kScientific[] = "0.00E+00";
constexpr char kMediumDate[] = "dd-mmm-yy", kMediumTime[] = "hh:nn AM/PM";
constexpr char kYes[] = "Yes", kNo[] = "No", kTrue[] = "True", kFalse[] = "False", kOn[] = "On",
               kOff[] = "Off";

struct NamedFormat {
    std::string_view name;
    void (*append)(std::string& out, const Variant& value);
};

constexpr auto kNamed = std::to_array<NamedFormat>({
    {"General Number", general_number},
    {"Currency", currency},
    {"Fixed", by_pattern<kFixed>},
    {"Standard", by_pattern<kStandard>},
    {"Percent", by_pattern<kPercent>},
    {"Scientific", by_pattern<kScientific>},
    {"Yes/No", truth<kYes, kNo>},
    {"True/False", truth<kTrue, kFalse>},
    {"On/Off", truth<kOn, kOff>},
    {"General Date", by_style<DateStyle::General>},
    {"Long Date", by_style<DateStyle::LongDate>},
    {"Medium Date", by_pattern<kMediumDate>},
    {"Short Date", by_style<DateStyle::ShortDate>},
    {"Long Time", by_style<DateStyle::LongTime>},
    {"Medium Time", by_pattern<kMediumTime>},
    {"Short Time", by_style<DateStyle::ShortTime>},
});

// --- User-defined formats ----------------------------------------------------------------------------------

constexpr std::string_view kNumberCodes = "0#%";
constexpr std::string_view kTextCodes = "@&<>!";
constexpr std::string_view kDateCodes = "dmyhnsqwct";

char lower_ascii(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}

// Reads a format into sections of tokens. The first placeholder that belongs to one kind only decides the
// kind; the placeholders of the other kinds are then literals.
class Reader {
public:
    using Kind = DisplayFormat::Kind;

    explicit Reader(std::string_view format) : format_(format) {}

    Kind kind = Kind::General;
    std::vector<DisplayFormat::Section> sections{1};

    void read() {
        while (at_ < format_.size()) {
            const char c = format_[at_];
            if (c == ';' && kind != Kind::Date) {
                sections.emplace_back();
                ++at_;
            } else if (c == '\\') {
                ++at_;
                literal(1);
            } else if (c == '"') {
                quoted();
            } else if (!placeholder(c)) {
                literal(1);
            }
        }
    }

private:
    bool token(Kind wanted, char code, std::size_t length = 1) {
        if (kind == Kind::General)
            kind = wanted;
        if (kind != wanted)
            return false;
        sections.back().push_back({code, std::string(format_.substr(at_, length))});
        at_ += length;
        return true;
    }

    void literal(std::size_t length) {
        const std::string_view text = format_.substr(std::min(at_, format_.size()), length);
        DisplayFormat::Section& section = sections.back();
        if (section.empty() || section.back().code != DisplayFormat::Token::kLiteral)
            section.emplace_back();
        section.back().text += text;
        at_ += length;
    }

    void quoted() {
        const std::size_t end = std::min(format_.find('"', at_ + 1), format_.size());
        ++at_;
        literal(end - at_);
        at_ = end + 1;
    }

    std::size_t run_of(char code) const {
        std::size_t length = 1;
        while (at_ + length < format_.size() && lower_ascii(format_[at_ + length]) == code)
            ++length;
        return length;
    }

    bool exponent_follows() const {
        return at_ + 1 < format_.size() && (format_[at_ + 1] == '+' || format_[at_ + 1] == '-');
    }

    bool placeholder(char c) {
        if (c == '.' || c == ',')
            return separator(c);
        if (kNumberCodes.find(c) != std::string_view::npos)
            return token(Kind::Number, c);
        if (lower_ascii(c) == 'e' && exponent_follows())
            return token(Kind::Number, 'e', 2);
        if (kTextCodes.find(c) != std::string_view::npos)
            return token(Kind::Text, c);
        return date_placeholder(lower_ascii(c));
    }

    // A point or comma does not by itself make a format one of numbers.
    bool separator(char c) {
        if (kind != Kind::Number && kind != Kind::General)
            return false;
        sections.back().push_back({c, std::string(1, c)});
        ++at_;
        return true;
    }

    bool date_placeholder(char code) {
        for (const std::string_view marks : {"AM/PM", "A/P", "AMPM"})
            if (equal_ignore_case(format_.substr(at_, marks.size()), marks))
                return token(Kind::Date, 'a', marks.size());
        if (code == '/' || code == ':')
            return kind == Kind::Date && token(Kind::Date, code);
        return kDateCodes.find(code) != std::string_view::npos && token(Kind::Date, code, run_of(code));
    }

    std::string_view format_;
    std::size_t at_ = 0;
};

} // namespace

DisplayFormat::DisplayFormat(std::string_view format) {
    if (format.empty())
        return;
    for (const NamedFormat& named : kNamed)
        if (equal_ignore_case(named.name, format)) {
            named_ = named.append;
            return;
        }
    Reader reader(format);
    reader.read();
    // A format of literals alone shows them, as one of numbers does.
    kind_ = reader.kind == Kind::General ? Kind::Number : reader.kind;
    sections_ = std::move(reader.sections);
}

const DisplayFormat::Section* DisplayFormat::section(std::size_t index) const noexcept {
    return index < sections_.size() && !sections_[index].empty() ? &sections_[index] : nullptr;
}

void DisplayFormat::append(std::string& out, const Variant& given) const {
    const Variant value = value_of(given);
    if (named_) {
        if (!is_blank(value))
            named_(out, value);
        return;
    }
    switch (kind_) {
    case Kind::General:
        return append_text(out, value);
    case Kind::Number:
        return append_number_format(out, value);
    case Kind::Date:
        return append_date_format(out, value);
    case Kind::Text:
        return append_text_format(out, value);
    }
}

void DisplayFormat::append_number_format(std::string& out, const Variant& value) const {
    if (is_blank(value)) {
        if (const Section* null_section = section(3))
            append_number_section(out, {}, *null_section);
        return;
    }
    std::optional<Decimal> number = decimal_of(value);
    if (!number)
        return append_text(out, value);
    const bool negative = std::exchange(number->negative, false);
    const Section* chosen = negative ? section(1) : number->digits.empty() ? section(2) : nullptr;
    if (negative && !chosen)
        out += '-'; // a section for negative numbers has its own sign, or none
    append_number_section(out, std::move(*number), chosen ? *chosen : sections_.front());
}

void DisplayFormat::append_date_format(std::string& out, const Variant& value) const {
    if (is_blank(value))
        return;
    if (const std::optional<double> days = days_of(value))
        append_date_section(out, *days, sections_.front());
    else
        append_text(out, value);
}

void DisplayFormat::append_text_format(std::string& out, const Variant& value) const {
    std::string text;
    append_text(text, value);
    const Section* blank = text.empty() ? section(1) : nullptr;
    append_text_section(out, text, blank ? *blank : sections_.front());
}

} // namespace tabrixdb
