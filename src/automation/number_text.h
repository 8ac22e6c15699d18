#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tabrixdb {

// A number in decimal digits: the common ground of number texts and of the Format functions.
struct Decimal {
    bool negative = false;
    std::string digits; // significant digits without leading or trailing zeros; empty for zero
    int point = 0;      // the value is 0.digits * 10^point

    // At most this many significant digits, rounded half away from zero by the value's shortest text.
    static Decimal from_double(double value, int significant_digits = 15);
    static Decimal from_whole(std::int64_t value);
    static Decimal from_currency(std::int64_t ten_thousandths);

    // Rounds to so many digits after the decimal point, halves away from zero.
    void round_to(int decimals);
};

// A number as scan_number() found it in a text.
struct ScannedNumber {
    double value = 0;
    bool overflow = false; // beyond the range of Double; `value` is then without meaning
    bool radix = false;    // &H or &O: `bits` holds the digits' value
    std::uint64_t bits = 0;
    std::string plain; // else: [-]digits[.digits][e[-]digits] with a point, whatever the Locale
};

// The whole text as a number by the current Locale, or nullopt; see parse_number() of conversions.h.
std::optional<ScannedNumber> scan_number(std::string_view text);

// number_text() and currency_text() of conversions.h, appending.
void append_number(std::string& out, double value, int significant_digits = 15);
void append_whole(std::string& out, std::int64_t value);
void append_currency(std::string& out, std::int64_t ten_thousandths);

} // namespace tabrixdb
