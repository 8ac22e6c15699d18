#include "automation/display_format_section.h"
#include "automation/text.h"

#include <algorithm>
#include <utility>

namespace tabrixdb {

namespace {

constexpr std::string_view kNumberCodes = "0#%";
constexpr std::string_view kTextCodes = "@&<>!";
// A longer run of a letter is read as the longest placeholder and what remains: "yyy" is "yy" and "y".
constexpr std::string_view kDateCodes[] = {"dddddd", "ddddd", "dddd", "ddd",   "dd", "d",  "mmmm", "mmm",
                                           "mm",     "m",     "yyyy", "yy",    "y",  "hh", "h",    "nn",
                                           "n",      "ss",    "s",    "ttttt", "q",  "ww", "w",    "c"};
constexpr std::string_view kHalfDayCodes[] = {"AM/PM", "A/P", "AMPM"};

char lower_ascii(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}

class Reader {
public:
    explicit Reader(std::string_view format) : format_(format) {}

    ReadFormat read() {
        while (at_ < format_.size() && !(kind_ == FormatKind::Date && format_[at_] == ';'))
            read_one(format_[at_]); // dates have one section
        // Literals alone have the sections of numbers: for negative ones, zero and Null.
        return {kind_ == FormatKind::General ? FormatKind::Number : kind_, std::move(sections_)};
    }

private:
    void read_one(char c) {
        if (c == ';') {
            sections_.emplace_back();
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

    std::vector<FormatToken>& tokens() { return sections_.back().tokens; }

    bool token(FormatKind wanted, char code, std::size_t length = 1) {
        if (kind_ == FormatKind::General)
            kind_ = wanted;
        if (kind_ != wanted)
            return false;
        tokens().push_back({code, std::string(format_.substr(at_, length))});
        at_ += length;
        return true;
    }

    void literal(std::size_t length) {
        const std::string_view text = format_.substr(std::min(at_, format_.size()), length);
        if (tokens().empty() || tokens().back().code != FormatToken::kLiteral)
            tokens().emplace_back();
        tokens().back().text += text;
        at_ += length;
    }

    void quoted() {
        const std::size_t end = std::min(format_.find('"', at_ + 1), format_.size());
        ++at_;
        literal(end - at_);
        at_ = end + 1;
    }

    bool placeholder(char c) {
        if (c == '.' || c == ',')
            return separator(c);
        if (kNumberCodes.find(c) != std::string_view::npos)
            return token(FormatKind::Number, c);
        if (lower_ascii(c) == 'e')
            return exponent();
        if (kTextCodes.find(c) != std::string_view::npos)
            return token(FormatKind::Text, c);
        return date_placeholder(c);
    }

    // A comma does not make a format one of numbers, and the second point of a number is a literal.
    bool separator(char c) {
        const bool literally = c == ',' ? kind_ != FormatKind::Number : has('.');
        return !literally && token(FormatKind::Number, c);
    }

    bool exponent() {
        const bool sign = at_ + 1 < format_.size() && (format_[at_ + 1] == '+' || format_[at_ + 1] == '-');
        return sign && kind_ == FormatKind::Number && !has('e') && token(FormatKind::Number, 'e', 2);
    }

    bool has(char code) {
        return std::ranges::any_of(tokens(), [&](const FormatToken& token) { return token.code == code; });
    }

    bool starts_with(std::string_view code) const {
        return equal_ignore_case(format_.substr(at_, code.size()), code);
    }

    bool date_placeholder(char c) {
        if (c == '/' || c == ':')
            return token(FormatKind::Date, c);
        for (const std::string_view code : kHalfDayCodes)
            if (starts_with(code))
                return token(FormatKind::Date, 'a', code.size());
        for (const std::string_view code : kDateCodes)
            if (starts_with(code))
                return token(FormatKind::Date, after_hours(code) ? 'n' : code[0], code.size());
        return false;
    }

    // "m" is the month, but right after hours, with nothing but separators between, the minute.
    bool after_hours(std::string_view code) {
        if (code != "m" && code != "mm")
            return false;
        for (auto at = tokens().rbegin(); at != tokens().rend(); ++at)
            if (at->code != ':' && at->code != '/' && at->code != FormatToken::kLiteral)
                return at->code == 'h';
        return false;
    }

    std::string_view format_;
    std::size_t at_ = 0;
    FormatKind kind_ = FormatKind::General;
    std::vector<FormatSection> sections_{1};
};

// Adds up the placeholders of a number's section.
class NumberSurvey {
public:
    static NumberShape of(const std::vector<FormatToken>& tokens) {
        NumberSurvey survey;
        for (const FormatToken& token : tokens)
            survey.add(token.code);
        survey.shape_.scale -= 3 * survey.commas_; // with no place before the point behind them
        return survey.shape_;
    }

private:
    void add(char code) {
        switch (code) {
        case '0':
        case '#':
            add_place(code == '0');
            break;
        case ',':
            commas_ += !shape_.point && shape_.whole > 0;
            decimal_comma_ = shape_.point;
            break;
        case '.':
            shape_.point = true;
            break;
        case '%':
            shape_.scale = 2; // several of them say no more than one
            break;
        case 'e':
            shape_.exponent = true;
            break;
        default:
            break;
        }
    }

    void add_place(bool required) {
        if (shape_.exponent) {
            shape_.required_exponent += required;
        } else if (shape_.point) {
            ++shape_.decimals;
            if (required)
                shape_.required_decimals = shape_.decimals;
            shape_.groups = shape_.groups || decimal_comma_;
        } else {
            ++shape_.whole;
            if (required || shape_.required_whole > 0)
                ++shape_.required_whole;
            shape_.groups = shape_.groups || commas_ > 0;
            commas_ = 0;
        }
    }

    NumberShape shape_;
    int commas_ = 0; // since the last place before the point
    bool decimal_comma_ = false;
};

TextShape text_shape(const std::vector<FormatToken>& tokens) {
    TextShape shape;
    for (const FormatToken& token : tokens) {
        shape.places += token.code == '@' || token.code == '&';
        shape.from_left = shape.from_left || token.code == '!';
        if (token.code == '<' || (token.code == '>' && shape.letter_case == 0))
            shape.letter_case = token.code;
    }
    return shape;
}

bool shows_half_days(const std::vector<FormatToken>& tokens) {
    return std::ranges::any_of(tokens, [](const FormatToken& token) { return token.code == 'a'; });
}

} // namespace

ReadFormat read_format(std::string_view format) {
    ReadFormat read = Reader(format).read();
    for (FormatSection& section : read.sections) {
        section.number = NumberSurvey::of(section.tokens);
        section.text = text_shape(section.tokens);
        section.half_days = shows_half_days(section.tokens);
    }
    return read;
}

} // namespace tabrixdb
