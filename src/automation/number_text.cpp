#include "automation/number_text.h"

#include "automation/conversions.h"
#include "automation/locale.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>

namespace tabrixdb {

namespace {

// Whole numbers up to here have all their digits within 15 significant ones.
constexpr double kPlainWhole = 1e15;
constexpr double kPlainWholeSingle = 1e7;

struct Digits {
    std::array<char, 17> text; // without a decimal point
    int count = 0;
    int exponent = 0; // of the first digit
};

// Of a finite positive value. `precision` -1: as many digits as tell the value from its neighbours.
Digits scientific(double value, int precision) {
    std::array<char, 32> buffer;
    const auto end = precision < 0 ? std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                                   std::chars_format::scientific)
                                   : std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                                   std::chars_format::scientific, precision);
    Digits digits;
    const char* at = buffer.data();
    for (; *at != 'e'; ++at)
        if (*at != '.')
            digits.text[static_cast<std::size_t>(digits.count++)] = *at;
    at += at[1] == '+' ? 2 : 1; // from_chars takes no plus sign
    std::from_chars(at, end.ptr, digits.exponent);
    while (digits.count > 1 && digits.text[static_cast<std::size_t>(digits.count - 1)] == '0')
        --digits.count;
    return digits;
}

Digits digits_of(double value, int significant_digits) {
    // The shortest form is the faster one, and is right whenever it is short enough; only the smallest
    // numbers, which have lost precision, may have more digits than tell them apart.
    const bool normal = value >= std::numeric_limits<double>::min();
    const Digits shortest = scientific(value, normal ? -1 : significant_digits - 1);
    return shortest.count <= significant_digits ? shortest : scientific(value, significant_digits - 1);
}

void append_scientific(std::string& out, const Digits& digits, std::string_view decimal) {
    out += digits.text[0];
    if (digits.count > 1)
        out.append(decimal).append(digits.text.data() + 1, static_cast<std::size_t>(digits.count - 1));
    out.append(digits.exponent < 0 ? "E-" : "E+");
    const int magnitude = std::abs(digits.exponent);
    if (magnitude < 10)
        out += '0';
    append_whole(out, magnitude);
}

void append_fixed(std::string& out, const Digits& digits, std::string_view decimal) {
    const std::string_view text(digits.text.data(), static_cast<std::size_t>(digits.count));
    if (digits.exponent < 0) {
        out.append("0")
            .append(decimal)
            .append(static_cast<std::size_t>(-digits.exponent - 1), '0')
            .append(text);
        return;
    }
    const std::size_t whole = static_cast<std::size_t>(digits.exponent) + 1;
    if (text.size() <= whole)
        out.append(text).append(whole - text.size(), '0');
    else
        out.append(text.substr(0, whole)).append(decimal).append(text.substr(whole));
}

} // namespace

void append_whole(std::string& out, std::int64_t value) {
    std::array<char, 24> buffer;
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
    out.append(buffer.data(), end.ptr);
}

void append_number(std::string& out, double value, int significant_digits) {
    const bool single = significant_digits < 15;
    if (std::fabs(value) < (single ? kPlainWholeSingle : kPlainWhole) && value == std::trunc(value))
        return append_whole(out, static_cast<std::int64_t>(value));
    if (!std::isfinite(value)) {
        out.append(std::isnan(value) ? "-1.#IND" : value < 0 ? "-1.#INF" : "1.#INF");
        return;
    }
    if (value < 0)
        out += '-';
    // A Single's own digits, not those of the Double that it widens to, decide nothing here: both agree
    // in the first seven.
    const Digits digits = digits_of(std::fabs(value), significant_digits);
    const std::string_view decimal = Locale::current().decimal;
    // Fixed as long as no more digits are needed on either side of the point than are significant: 1/3
    // is 0.333333333333333, but 1/30 is 3.33333333333333E-02.
    const bool fixed =
        digits.exponent < significant_digits && digits.count - 1 - digits.exponent <= significant_digits;
    if (fixed)
        append_fixed(out, digits, decimal);
    else
        append_scientific(out, digits, decimal);
}

void append_currency(std::string& out, std::int64_t ten_thousandths) {
    const bool negative = ten_thousandths < 0;
    const std::uint64_t magnitude = negative ? std::uint64_t{0} - static_cast<std::uint64_t>(ten_thousandths)
                                             : static_cast<std::uint64_t>(ten_thousandths);
    if (negative)
        out += '-';
    append_whole(out, static_cast<std::int64_t>(magnitude / 10000));
    std::uint64_t fraction = magnitude % 10000;
    if (fraction == 0)
        return;
    out.append(Locale::current().decimal);
    for (std::uint64_t place = 1000; fraction != 0; place /= 10) {
        out += static_cast<char>('0' + fraction / place);
        fraction %= place;
    }
}

std::string number_text(double value, int significant_digits) {
    std::string out;
    append_number(out, value, significant_digits);
    return out;
}

std::string currency_text(std::int64_t ten_thousandths) {
    std::string out;
    append_currency(out, ten_thousandths);
    return out;
}

// --- Decimal ---------------------------------------------------------------------------------------

namespace {

Decimal decimal_of(std::string_view digits, int point, bool negative) {
    const std::size_t first = digits.find_first_not_of('0');
    if (first == std::string_view::npos)
        return {};
    const std::size_t last = digits.find_last_not_of('0');
    return {negative, std::string(digits.substr(first, last - first + 1)), point - static_cast<int>(first)};
}

} // namespace

Decimal Decimal::from_double(double value, int significant_digits) {
    if (value == 0 || !std::isfinite(value))
        return {};
    const Digits digits = digits_of(std::fabs(value), significant_digits);
    return {value < 0, std::string(digits.text.data(), static_cast<std::size_t>(digits.count)),
            digits.exponent + 1};
}

Decimal Decimal::from_whole(std::int64_t value) {
    std::string text;
    append_whole(text, value);
    const bool negative = value < 0;
    const std::string_view digits = std::string_view(text).substr(negative);
    return decimal_of(digits, static_cast<int>(digits.size()), negative);
}

Decimal Decimal::from_currency(std::int64_t ten_thousandths) {
    Decimal decimal = from_whole(ten_thousandths);
    decimal.point -= decimal.digits.empty() ? 0 : 4;
    return decimal;
}

void Decimal::round_to(int decimals) {
    const int kept = point + decimals;
    if (kept >= static_cast<int>(digits.size()))
        return;
    if (kept < 0) {
        *this = {};
        return;
    }
    const bool up = digits[static_cast<std::size_t>(kept)] >= '5';
    digits.resize(static_cast<std::size_t>(kept));
    if (up) {
        while (!digits.empty() && digits.back() == '9')
            digits.pop_back();
        if (digits.empty()) {
            digits = "1";
            ++point;
        } else {
            ++digits.back();
        }
    }
    *this = decimal_of(digits, point, negative);
}

// --- Reading ---------------------------------------------------------------------------------------

namespace {

bool is_digit(char c) {
    return c >= '0' && c <= '9';
}

// Reads a number text from left to right. What may surround the digits (blanks, a sign, parentheses for a
// negative amount, the currency symbol) may stand on either side, each once.
class NumberScanner {
public:
    explicit NumberScanner(std::string_view text) : rest_(text), locale_(Locale::current()) {}

    std::optional<ScannedNumber> scan() {
        skip_blanks();
        if (rest_.size() > 1 && rest_[0] == '&')
            return radix();
        surroundings();
        if (!mantissa())
            return std::nullopt;
        exponent();
        surroundings();
        if (!rest_.empty() || open_ != close_ || minus_ + plus_ + open_ > 1)
            return std::nullopt;
        return finish();
    }

private:
    void skip_blanks() {
        while (!rest_.empty() && (rest_[0] == ' ' || (rest_[0] >= '\t' && rest_[0] <= '\r')))
            rest_.remove_prefix(1);
    }

    bool take(std::string_view wanted) {
        if (wanted.empty() || !rest_.starts_with(wanted))
            return false;
        rest_.remove_prefix(wanted.size());
        return true;
    }

    bool take_once(std::string_view wanted, bool& seen) { return !seen && take(wanted) && (seen = true); }

    void surroundings() {
        for (bool more = true; more;) {
            skip_blanks();
            more = take_once(locale_.currency, currency_) || take_once("-", minus_) ||
                   take_once("+", plus_) || take_once("(", open_) || (open_ && take_once(")", close_));
        }
    }

    bool take_thousands() {
        if (take(locale_.thousands))
            return true;
        // Where the separator is a no-break space, people type an ordinary one.
        return locale_.thousands == "\u00A0" && rest_.size() > 1 && rest_[0] == ' ' && is_digit(rest_[1]) &&
               take(" ");
    }

    bool mantissa() {
        bool digits = false;
        bool point = false;
        while (!rest_.empty()) {
            if (is_digit(rest_[0])) {
                digits = true;
                plain_ += rest_[0];
                rest_.remove_prefix(1);
            } else if (!point && take(locale_.decimal)) {
                point = true;
                plain_ += '.';
            } else if (point || !digits || !take_thousands()) {
                break;
            }
        }
        if (digits && plain_.front() == '.')
            plain_.insert(0, 1, '0');
        return digits;
    }

    // "1e5"; D is the older mark of a Double's exponent. Left unread when no digits follow.
    void exponent() {
        if (rest_.size() < 2 || std::string_view("eEdD").find(rest_[0]) == std::string_view::npos)
            return;
        std::size_t at = 1;
        const bool negative = rest_[1] == '-';
        at += rest_[1] == '-' || rest_[1] == '+';
        if (at >= rest_.size() || !is_digit(rest_[at]))
            return;
        constexpr int kBeyondDouble = 100000; // any larger exponent means the same
        for (; at < rest_.size() && is_digit(rest_[at]); ++at)
            exponent_ = std::min(exponent_ * 10 + (rest_[at] - '0'), kBeyondDouble);
        exponent_ = negative ? -exponent_ : exponent_;
        plain_ += 'e';
        append_whole(plain_, exponent_);
        rest_.remove_prefix(at);
    }

    std::optional<ScannedNumber> finish() {
        ScannedNumber number;
        if (minus_ || open_)
            plain_.insert(0, 1, '-');
        number.plain = std::move(plain_);
        const char* const end = number.plain.data() + number.plain.size();
        const auto result = std::from_chars(number.plain.data(), end, number.value);
        if (result.ec == std::errc::result_out_of_range) {
            number.value = 0; // too small is zero, too large is an overflow
            number.overflow = first_digit_exponent(number.plain) + exponent_ > 0;
        }
        return number;
    }

    // The power of ten of the first digit that is not zero, by its distance from the point.
    static int first_digit_exponent(std::string_view plain) {
        const std::string_view mantissa = plain.substr(0, plain.find('e'));
        const auto point = static_cast<int>(std::min(mantissa.find('.'), mantissa.size()));
        const auto first = static_cast<int>(std::min(mantissa.find_first_of("123456789"), mantissa.size()));
        return point - first;
    }

    // &H1F, &O17 or &17, perhaps closed by another & (which says: 32 bits).
    std::optional<ScannedNumber> radix() {
        rest_.remove_prefix(1);
        const bool hexadecimal = rest_[0] == 'h' || rest_[0] == 'H';
        if (hexadecimal || rest_[0] == 'o' || rest_[0] == 'O')
            rest_.remove_prefix(1);
        ScannedNumber number;
        number.radix = true;
        const char* const end = rest_.data() + rest_.size();
        const auto result = std::from_chars(rest_.data(), end, number.bits, hexadecimal ? 16 : 8);
        if (result.ec == std::errc::invalid_argument)
            return std::nullopt;
        number.overflow = result.ec == std::errc::result_out_of_range;
        number.value = static_cast<double>(number.bits);
        rest_.remove_prefix(static_cast<std::size_t>(result.ptr - rest_.data()));
        take("&");
        skip_blanks();
        return rest_.empty() ? std::optional(number) : std::nullopt;
    }

    std::string_view rest_;
    const Locale& locale_;
    std::string plain_;
    int exponent_ = 0;
    bool currency_ = false, minus_ = false, plus_ = false, open_ = false, close_ = false;
};

} // namespace

std::optional<ScannedNumber> scan_number(std::string_view text) {
    return NumberScanner(text).scan();
}

std::optional<double> parse_number(std::string_view text) {
    // Most texts are plain: digits, perhaps a point.
    if (!text.empty() && is_digit(text[0]) && Locale::current().decimal == ".") {
        double value = 0;
        const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
        if (result.ec == std::errc() && result.ptr == text.data() + text.size())
            return value;
    }
    const auto number = scan_number(text);
    return number && !number->overflow ? std::optional(number->value) : std::nullopt;
}

} // namespace tabrixdb
