#include "automation/display_format_section.h"
#include "automation/locale.h"
#include "automation/number_text.h"

#include <algorithm>

namespace tabrixdb {

namespace {

bool is_digit_place(char code) {
    return code == '0' || code == '#';
}

// A number split at its point, padded to the places that have to be shown.
struct Digits {
    std::string whole;
    std::string decimals;
};

Digits lay_out(const Decimal& number, const NumberShape& shape) {
    Digits digits;
    const int size = static_cast<int>(number.digits.size());
    for (int i = 0; i < std::max(number.point, 0); ++i)
        digits.whole += i < size ? number.digits[static_cast<std::size_t>(i)] : '0';
    for (int i = number.point; i < size; ++i)
        digits.decimals += i < 0 ? '0' : number.digits[static_cast<std::size_t>(i)];
    const auto missing = [](int wanted, const std::string& have) {
        return static_cast<std::size_t>(std::max(0, wanted - static_cast<int>(have.size())));
    };
    digits.whole.insert(0, missing(shape.required_whole, digits.whole), '0');
    digits.decimals.append(missing(shape.required_decimals, digits.decimals), '0');
    return digits;
}

// Takes so much of the exponent out of a number that its whole part fills the places before the point.
int normalise(Decimal& number, const NumberShape& shape) {
    if (number.digits.empty())
        return 0;
    const int places = shape.whole > 0 || shape.point ? shape.whole : 1;
    const auto to_places = [&] {
        const int exponent = number.point - places;
        number.point = places;
        return exponent;
    };
    int exponent = to_places();
    number.round_to(shape.decimals);
    if (number.point != places)
        exponent += to_places(); // rounding carried into a new place
    return exponent;
}

class NumberWriter {
public:
    NumberWriter(std::string& out, const NumberShape& shape, Digits digits, int exponent)
        : out_(out),
          shape_(shape),
          digits_(std::move(digits)),
          exponent_(exponent),
          place_(shape.whole) {}

    void write(const FormatSection& section) {
        for (const FormatToken& token : section.tokens) {
            if (token.code == FormatToken::kLiteral)
                out_ += token.text;
            else if (token.code == '%')
                out_ += '%';
            else if (token.code == 'e')
                write_exponent(token.text);
            else if (token.code == '.')
                write_point();
            else if (is_digit_place(token.code) && !in_exponent_)
                in_decimals_ ? write_decimal() : write_whole();
        }
    }

private:
    void whole_digit(std::size_t index) {
        out_ += digits_.whole[index];
        const std::size_t left = digits_.whole.size() - index - 1;
        if (shape_.groups && left > 0 && left % 3 == 0)
            out_ += Locale::current().thousands;
    }

    // The first place takes all digits for which there is no place.
    void write_whole() {
        const auto size = static_cast<int>(digits_.whole.size());
        const int from = place_ == shape_.whole ? 0 : size - place_;
        for (int i = std::max(from, 0); i <= size - place_; ++i)
            whole_digit(static_cast<std::size_t>(i));
        --place_;
    }

    void write_point() {
        if (shape_.whole == 0)
            out_ += digits_.whole;
        out_ += Locale::current().decimal;
        in_decimals_ = true;
    }

    void write_decimal() {
        if (decimal_ < digits_.decimals.size())
            out_ += digits_.decimals[decimal_++];
    }

    void write_exponent(std::string_view mark) {
        out_ += mark[0];
        if (exponent_ < 0)
            out_ += '-';
        else if (mark[1] == '+')
            out_ += '+';
        std::string digits;
        append_whole(digits, std::abs(exponent_));
        const auto required = static_cast<std::size_t>(shape_.required_exponent);
        out_.append(required > digits.size() ? required - digits.size() : 0, '0').append(digits);
        in_exponent_ = true;
    }

    std::string& out_;
    const NumberShape& shape_;
    Digits digits_;
    int exponent_;
    int place_; // whole places still to come
    std::size_t decimal_ = 0;
    bool in_decimals_ = false;
    bool in_exponent_ = false;
};

} // namespace

void append_number_section(std::string& out, Decimal number, const FormatSection& section) {
    const NumberShape& shape = section.number;
    if (!number.digits.empty())
        number.point += shape.scale;
    int exponent = 0;
    if (shape.exponent)
        exponent = normalise(number, shape);
    else
        number.round_to(shape.decimals);
    NumberWriter(out, shape, lay_out(number, shape), exponent).write(section);
}

} // namespace tabrixdb
