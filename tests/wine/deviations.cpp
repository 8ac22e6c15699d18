#include "automation/conversions.h"
#include "automation/display_format.h"
#include "automation/display_format_section.h"
#include "automation/number_text.h"
#include "tests/wine/deviation.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

namespace tabrixdb {

namespace {

// --- Formats -----------------------------------------------------------------------------------------------

bool is_named(const Pair& pair, std::string_view name) {
    return equal_ignore_case(name, pair.format);
}

bool is_one_of(const Pair& pair, std::span<const std::string_view> names) {
    return std::ranges::any_of(names, [&](std::string_view name) { return is_named(pair, name); });
}

constexpr std::string_view kNumberNames[] = {"General Number", "Currency", "Fixed",  "Standard",  "Percent",
                                             "Scientific",     "Yes/No",   "On/Off", "True/False"};
constexpr std::string_view kDateNames[] = {"General Date", "Long Date",   "Medium Date", "Short Date",
                                           "Long Time",    "Medium Time", "Short Time"};

ReadFormat read(const Pair& pair) {
    return read_format(pair.format);
}

bool is_user_defined(const Pair& pair, FormatKind kind) {
    return !pair.format.empty() && !find_named_format(pair.format) && read(pair).kind == kind;
}

bool is_number_format(const Pair& pair) {
    return is_one_of(pair, kNumberNames) || is_user_defined(pair, FormatKind::Number);
}

bool is_date_format(const Pair& pair) {
    return is_one_of(pair, kDateNames) || is_user_defined(pair, FormatKind::Date);
}

bool is_text_format(const Pair& pair) {
    return is_user_defined(pair, FormatKind::Text);
}

// One of the sections of a number's format is like this.
template <class Predicate>
bool any_number_shape(const Pair& pair, Predicate predicate) {
    return is_user_defined(pair, FormatKind::Number) &&
           std::ranges::any_of(read(pair).sections,
                               [&](const FormatSection& section) { return predicate(section.number); });
}

// The tokens of the first section.
std::vector<FormatToken> tokens(const Pair& pair) {
    return read(pair).sections.front().tokens;
}

bool has_token(const Pair& pair, std::string_view text) {
    return std::ranges::any_of(tokens(pair), [&](const FormatToken& token) {
        return token.code != FormatToken::kLiteral && equal_ignore_case(token.text, text);
    });
}

// --- Values ------------------------------------------------------------------------------------------------

double magnitude(const Pair& pair) {
    const bool blank = pair.value.is_null() || pair.value.is_string();
    const auto number = pair.value.is_string() ? parse_number(pair.value.text()) : std::nullopt;
    return std::fabs(blank ? number.value_or(0) : to_double(pair.value));
}

bool is_negative(const Pair& pair) {
    const std::optional<Decimal> number = pair.value.is_null() ? std::nullopt : displayed_number(pair.value);
    return number && number->negative;
}

bool is_numeric_text(const Pair& pair) {
    return pair.value.is_string() && parse_number(pair.value.text());
}

std::string text_of(const Pair& pair) {
    std::string text;
    append_text(text, pair.value);
    return text;
}

bool is_shorter_than_places(const Pair& pair) {
    return utf16_length(text_of(pair)) < read(pair).sections.front().text.places;
}

// --- Answers -----------------------------------------------------------------------------------------------

std::string replaced(std::string text, std::string_view from, std::string_view to) {
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
    return text;
}

std::string shown(const Variant& value, std::string_view format) {
    std::string out;
    DisplayFormat(format).append(out, value);
    return out;
}

bool is_same_but_for_case(const Difference& difference) {
    return lower(difference.ours) == lower(difference.wine);
}

// The same characters in another order, perhaps of another case or with more or fewer blanks.
bool is_rearranged(const Difference& difference) {
    std::string ours = lower(replaced(difference.ours, " ", ""));
    std::string wine = lower(replaced(difference.wine, " ", ""));
    std::ranges::sort(ours);
    std::ranges::sort(wine);
    return ours == wine;
}

// --- Numbers -----------------------------------------------------------------------------------------------

bool date_by_number_format(const Difference& difference) {
    return difference.pair.value.type() == Type::Date && is_number_format(difference.pair) &&
           difference.wine == text_of(difference.pair);
}

bool empty_by_sections(const Difference& difference) {
    const Pair& pair = difference.pair;
    return pair.value.is_empty() && (is_number_format(pair) || pair.format.find(';') != std::string::npos);
}

bool general_number_of_text(const Difference& difference) {
    return is_named(difference.pair, "General Number") && is_numeric_text(difference.pair) &&
           difference.wine == text_of(difference.pair);
}

bool scaled_by_commas(const Difference& difference) {
    return any_number_shape(difference.pair, [](const NumberShape& shape) { return shape.scale < 0; });
}

bool percent_before_places(const Difference& difference) {
    const std::string& format = difference.pair.format;
    return is_user_defined(difference.pair, FormatKind::Number) &&
           format.find('%') < format.find_first_of("0#");
}

bool rounded_up_from_less_than_one(const Difference& difference) {
    return any_number_shape(difference.pair, [&](const NumberShape& shape) {
        const double scaled = magnitude(difference.pair) * std::pow(10.0, shape.scale);
        return shape.decimals == 0 && !shape.exponent && scaled >= 0.5 && scaled < 1;
    });
}

bool no_places_before_the_point(const Difference& difference) {
    return any_number_shape(difference.pair, [&](const NumberShape& shape) {
        return shape.whole == 0 && shape.point && !shape.exponent &&
               magnitude(difference.pair) * std::pow(10.0, shape.scale) >= 0.5;
    });
}

bool optional_exponent_digits(const Difference& difference) {
    const std::string& format = difference.pair.format;
    return format.find("E+#") != std::string::npos;
}

bool zero_with_exponent(const Difference& difference) {
    return magnitude(difference.pair) == 0 && any_number_shape(difference.pair, [](const NumberShape& shape) {
               return shape.exponent && shape.whole > 1;
           });
}

bool literal_before_negative_number(const Difference& difference) {
    const Pair& pair = difference.pair;
    return is_user_defined(pair, FormatKind::Number) && is_negative(pair) && is_rearranged(difference) &&
           tokens(pair).front().code == FormatToken::kLiteral;
}

bool literals_alone(const Difference& difference) {
    const Pair& pair = difference.pair;
    return pair.value.type() == Type::Boolean && difference.wine == "error" &&
           is_user_defined(pair, FormatKind::Number) &&
           std::ranges::all_of(tokens(pair),
                               [](const FormatToken& token) { return token.code == FormatToken::kLiteral; });
}

bool section_for_null(const Difference& difference) {
    return difference.pair.value.is_null() && difference.wine.empty() &&
           difference.pair.format.find(';') != std::string::npos;
}

bool vanishing_decimals(const Difference& difference) {
    constexpr double kVanishing = 1e-100;
    return magnitude(difference.pair) > 0 && magnitude(difference.pair) < kVanishing &&
           any_number_shape(difference.pair, [](const NumberShape& shape) { return shape.decimals > 0; });
}

// --- Dates -------------------------------------------------------------------------------------------------

bool medium_date(const Difference& difference) {
    return is_named(difference.pair, "Medium Date") &&
           difference.wine == shown(difference.pair.value, "Long Date");
}

bool time_of_midnight(const Difference& difference) {
    const Pair& pair = difference.pair;
    return (is_named(pair, "Long Time") || is_user_defined(pair, FormatKind::Date)) &&
           replaced(difference.ours, "12:00:00 AM", "") == difference.wine;
}

bool week_of_year(const Difference& difference) {
    if (!is_user_defined(difference.pair, FormatKind::Date) || !has_token(difference.pair, "ww"))
        return false;
    const std::optional<double> days = displayed_date(difference.pair.value);
    if (!days)
        return false;
    const int week = std::stoi(shown(Variant::date(*days), "ww"));
    return std::ranges::any_of(std::array{week - 1, week + 1}, [&](int wrong) {
        const std::string literal = '"' + std::to_string(wrong) + '"';
        const std::string format = replaced(difference.pair.format, "ww", literal);
        return difference.wine == shown(Variant::date(*days), format);
    });
}

bool is_hours(const FormatToken& token) {
    return token.code == 'h';
}

bool is_half_day(const FormatToken& token) {
    return token.code == 'a';
}

bool hours_by_half_days(const Difference& difference) {
    if (!is_user_defined(difference.pair, FormatKind::Date))
        return false;
    const std::vector<FormatToken> all = tokens(difference.pair);
    const auto hours = std::ranges::find_if(all, is_hours);
    const auto half_day = std::ranges::find_if(all, is_half_day);
    return hours != all.end() && half_day != all.end() && (half_day < hours || half_day->text == "AM/PM");
}

bool half_day_amid_parts(const Difference& difference) {
    if (!is_user_defined(difference.pair, FormatKind::Date) || difference.wine != "error")
        return false;
    const std::vector<FormatToken> all = tokens(difference.pair);
    return std::ranges::any_of(all, is_half_day) && !is_half_day(all.back());
}

bool is_minute_or_month(const FormatToken& token) {
    return equal_ignore_case(token.text, "m") || equal_ignore_case(token.text, "mm");
}

// An "m" after hours that is the month, or another one after that which is the minute.
bool later_than_right_after_hours(const Difference& difference) {
    if (!is_user_defined(difference.pair, FormatKind::Date))
        return false;
    const std::vector<FormatToken> all = tokens(difference.pair);
    const auto hours = std::ranges::find_if(all, is_hours);
    const auto first = std::find_if(hours, all.end(), is_minute_or_month);
    return first != all.end() &&
           (first->code == 'm' || std::any_of(first + 1, all.end(), is_minute_or_month));
}

bool five_months(const Difference& difference) {
    return is_user_defined(difference.pair, FormatKind::Date) &&
           difference.pair.format.find("mmmmm") != std::string::npos;
}

bool numeric_text_as_date(const Difference& difference) {
    const std::string text = text_of(difference.pair);
    const bool has_point = text.find('.') != std::string::npos; // or it is hours.minutes
    return is_numeric_text(difference.pair) && is_date_format(difference.pair) &&
           (has_point || difference.wine == text);
}

bool empty_text_as_date(const Difference& difference) {
    return difference.pair.value.is_string() && difference.pair.value.text().empty() &&
           is_date_format(difference.pair);
}

bool currency_beyond_dates(const Difference& difference) {
    return difference.pair.value.type() == Type::Currency && is_date_format(difference.pair) &&
           difference.wine == "error" && !displayed_date(difference.pair.value);
}

// --- Text --------------------------------------------------------------------------------------------------

bool lower_case_without_being_told(const Difference& difference) {
    return is_text_format(difference.pair) && !read(difference.pair).sections.front().text.letter_case &&
           is_same_but_for_case(difference);
}

bool case_of_other_letters(const Difference& difference) {
    return is_text_format(difference.pair) && read(difference.pair).sections.front().text.letter_case != 0 &&
           is_same_but_for_case(difference);
}

bool filled_from_left(const Difference& difference) {
    return is_text_format(difference.pair) && read(difference.pair).sections.front().text.from_left &&
           is_shorter_than_places(difference.pair) && is_rearranged(difference);
}

bool optional_places_from_right(const Difference& difference) {
    return is_text_format(difference.pair) && has_token(difference.pair, "&") &&
           is_shorter_than_places(difference.pair) && is_rearranged(difference);
}

bool truth_as_text(const Difference& difference) {
    return difference.pair.value.type() == Type::Boolean &&
           (difference.pair.format.empty() || is_text_format(difference.pair));
}

bool small_number_as_text(const Difference& difference) {
    const Pair& pair = difference.pair;
    if (pair.value.type() != Type::Double)
        return false;
    std::array<char, 32> shortest;
    std::snprintf(shortest.data(), shortest.size(), "%.15G", pair.value.real());
    return shortest.data() != text_of(pair) && !is_user_defined(pair, FormatKind::Number);
}

bool beyond_the_basic_plane(const Difference& difference) {
    return is_text_format(difference.pair) && std::ranges::any_of(text_of(difference.pair), [](char c) {
               return static_cast<unsigned char>(c) >= 0xF0;
           });
}

constexpr auto kDeviations = std::to_array<Deviation>({
    {"Documented: dates take the formats of numbers, as their day number. Wine shows the date.",
     date_by_number_format},
    {"Empty is 0 in formats of numbers; Wine leaves out the digits and shows the rest, or the second "
     "section.",
     empty_by_sections},
    {"Documented: General Number has no thousands separator. Wine leaves text that is a number as it is.",
     general_number_of_text},
    {"Documented: commas left of the point divide by thousands. Wine writes thousands separators.",
     scaled_by_commas},
    {"Documented: % multiplies by 100 wherever it stands. Wine takes it for a literal before the digits.",
     percent_before_places},
    {"Documented: 0.5 by \"0\" is 1. Wine rounds numbers below 1 down.", rounded_up_from_less_than_one},
    {"Documented: digits without a place before the point are shown. Wine drops them.",
     no_places_before_the_point},
    {"\"#\" in an exponent asks for no digit. Wine fills it with zeros or digits of the number.",
     optional_exponent_digits},
    {"Zero has the exponent 0, as with one place. Wine counts down from it.", zero_with_exponent},
    {"The minus sign stands before all of the format: -$5. Wine writes it before the digits.",
     literal_before_negative_number},
    {"Literals alone show for any number. Wine fails for Booleans.", literals_alone},
    {"Documented: numbers have a fourth section and text a second one for Null. Wine shows nothing.",
     section_for_null},
    {"\"#\" shows no zeros after the point. Wine shows them for numbers that vanish.", vanishing_decimals},
    {"Documented: Medium Date is 27-Jan-93. Wine shows the long date.", medium_date},
    {"Documented: a complete time is shown. Wine shows none at midnight.", time_of_midnight},
    {"Documented: weeks start on Sunday, the first one is that of 1 January. Wine is one off.", week_of_year},
    {"Documented: AM, PM, A or P mean the 12-hour clock. Wine counts to 24 by \"AM/PM\" and before the "
     "others.",
     hours_by_half_days},
    {"Documented: AM, PM, A or P stand anywhere in a format. Wine fails for some.", half_day_amid_parts},
    {"Documented: \"m\" immediately after hours is the minute. Wine takes the first after the first hours.",
     later_than_right_after_hours},
    {"\"mmmmm\" is \"mmmm\" and \"m\". Wine shows the day of the year.", five_months},
    {"Text that is a number is a day number. Wine leaves it as it is, or reads 12.5 as five past twelve.",
     numeric_text_as_date},
    {"Text without characters is no date. Wine shows day 0.", empty_text_as_date},
    {"Numbers that are no dates are shown as they are. Wine fails for Currency.", currency_beyond_dates},
    {"Documented: only \"<\" makes letters small. Wine always does, but for \">\".",
     lower_case_without_being_told},
    {"\"<\" and \">\" know all letters. Wine those of ASCII.", case_of_other_letters},
    {"Documented: \"!\" fills from the left. Wine always fills from the right.", filled_from_left},
    {"Documented: places are filled from the right. Wine fills \"&\" from the left.",
     optional_places_from_right},
    {"A Boolean's text is True or False, as CStr gives it. Wine gives its number.", truth_as_text},
    {"A number's text has 15 digits before it takes an exponent, as CStr gives it. Wine's has 4 zeros.",
     small_number_as_text},
    {"A character beyond the basic plane fills one place. Wine cuts it in half.", beyond_the_basic_plane},
});

} // namespace

std::span<const Deviation> deviations() {
    return kDeviations;
}

} // namespace tabrixdb
