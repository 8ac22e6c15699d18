#include "template/bound_code.h"

#include "automation/conversions.h"
#include "automation/error.h"
#include "automation/text.h"
#include "platform/host.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <optional>

namespace tabrixdb {

namespace {

constexpr std::size_t kNone = std::string_view::npos;

bool is_digit(char c) {
    return c >= '0' && c <= '9';
}

bool is_word(char c) {
    return is_digit(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' ||
           static_cast<unsigned char>(c) >= 0x80;
}

// --- Values that stand in code as they are -------------------------------------------------------------

// The end of the number that begins a text, 0 when there is none.
std::size_t number_end(std::string_view text) {
    std::size_t at = !text.empty() && (text[0] == '-' || text[0] == '+') ? 1 : 0;
    const auto skip_digits = [&] {
        const std::size_t from = at;
        while (at < text.size() && is_digit(text[at]))
            ++at;
        return at > from;
    };
    bool digits = skip_digits();
    if (at < text.size() && text[at] == '.') {
        ++at;
        digits = skip_digits() || digits;
    }
    if (!digits)
        return 0;
    if (at < text.size() && (text[at] == 'e' || text[at] == 'E')) {
        const std::size_t mantissa = at++;
        if (at < text.size() && (text[at] == '-' || text[at] == '+'))
            ++at;
        if (!skip_digits())
            at = mantissa;
    }
    return at;
}

bool is_number(std::string_view text) {
    return !text.empty() && number_end(text) == text.size();
}

bool is_number_list(std::string_view text) {
    const std::vector<std::string_view> parts = split(text, ',');
    return !parts.empty() &&
           std::ranges::all_of(parts, [](std::string_view part) { return is_number(trimmed(part)); });
}

// Digits between the signs of dates and times, with "AM" or "PM" behind them.
bool is_date(std::string_view text) {
    std::string_view digits = text;
    for (const std::string_view half : {" AM", " PM"})
        if (digits.size() > half.size() &&
            equal_ignore_case(digits.substr(digits.size() - half.size()), half))
            digits.remove_suffix(half.size());
    return !digits.empty() && digits.find_first_not_of("0123456789/-.: ") == kNone &&
           digits.find("--") == kNone && parse_date(text).has_value();
}

bool is_logical(std::string_view text) {
    return equal_ignore_case(text, "True") || equal_ignore_case(text, "False") ||
           equal_ignore_case(text, "Null");
}

[[noreturn]] void refuse(const HeldValues::Value& value, std::string_view wanted) {
    const std::string column =
        value.column.empty() ? "A value" : "The value of '" + std::string(value.column) + "'";
    throw Error(kErrorCall, column + " stands in code, where it must be " + std::string(wanted) +
                                ": put quotes around its tag, or set TrustValues");
}

// --- Values in quotes ----------------------------------------------------------------------------------

// Whether each run of the sign has an even length, and there is one.
bool all_doubled(std::string_view text, char sign) {
    bool any = false;
    for (std::size_t at = 0; (at = text.find(sign, at)) != kNone;) {
        const std::size_t end = std::min(text.find_first_not_of(sign, at), text.size());
        if ((end - at) % 2 != 0)
            return false;
        any = true;
        at = end;
    }
    return any;
}

std::string prepared(const HeldValues::Value& value, char quote) {
    if (!value.computed || !all_doubled(value.text, quote))
        return value.text;
    return replace_all(value.text, std::string(2, quote), std::string(1, quote));
}

// --- The scanner ---------------------------------------------------------------------------------------

// Goes through the page's code once. What differs between languages is in its subclasses.
class Binder {
public:
    Binder(std::string_view code, const HeldValues& held) : code_(code), held_(held) {}

    virtual ~Binder() = default;
    Binder(const Binder&) = delete;
    Binder& operator=(const Binder&) = delete;

    BoundCode run() {
        while (at_ < code_.size()) {
            const char c = code_[at_];
            if (const HeldValues::Value* value = take_mark())
                put_value(*value);
            else if (is_quote(c))
                take_quoted();
            else if (c == '[')
                take_name();
            else if (const std::string_view end = comment_end(); !end.empty())
                take_comment(end);
            else
                bound_.text += code_[at_++];
        }
        return std::move(bound_);
    }

protected:
    virtual bool is_quote(char c) const = 0;
    // What ends the comment that begins here; "" when none does.
    virtual std::string_view comment_end() const = 0;
    // Puts a text that has become a value of its own.
    virtual void put_text(std::string value) = 0;
    // Puts a value that stands outside of quotes.
    virtual void put_bare(const HeldValues::Value& value) = 0;

    std::string_view rest() const { return code_.substr(std::min(at_, code_.size())); }

    char before() const { return bound_.text.empty() ? ' ' : bound_.text.back(); }

    BoundCode bound_;

private:
    // The value whose mark stands here, which is left behind; nullptr when there is none.
    const HeldValues::Value* take_mark() {
        const auto mark = SlottedText::mark_at(code_, at_);
        if (!mark || !held_.has(mark->slot))
            return nullptr;
        at_ = mark->end;
        return &held_.at(mark->slot);
    }

    void put_value(const HeldValues::Value& value) {
        const std::size_t sign = bound_.text.find_last_not_of(' ');
        const bool between_signs =
            sign != kNone && bound_.text[sign] == '#' && trimmed(rest()).starts_with('#');
        if (!between_signs)
            return put_bare(value);
        // Any form of a date: nothing in it ends the place between the signs.
        if (value.text.find_first_of("#\r\n") != kNone || !parse_date(trimmed(value.text)))
            refuse(value, "a date");
        bound_.text += value.text;
    }

    // A text between quotes, in which a doubled quote is one; without a value in it, it stays as it is.
    void take_quoted() {
        const char quote = code_[at_];
        const std::size_t from = at_++;
        std::string value;
        bool has_value = false;
        while (at_ < code_.size()) {
            const char c = code_[at_];
            if (const HeldValues::Value* part = take_mark()) {
                value += prepared(*part, quote);
                has_value = true;
            } else if (c != quote) {
                value += c;
                ++at_;
            } else if (++at_ < code_.size() && code_[at_] == quote) {
                value += quote;
                ++at_;
            } else {
                break;
            }
        }
        if (has_value)
            put_text(std::move(value));
        else
            bound_.text += code_.substr(from, at_ - from);
    }

    // A name in brackets, in which quotes are letters.
    void take_name() {
        const std::size_t end = std::min(code_.find(']', at_), code_.size());
        while (at_ < end)
            if (const HeldValues::Value* value = take_mark())
                put_bare(*value);
            else
                bound_.text += code_[at_++];
    }

    void take_comment(std::string_view end) {
        const std::size_t found = code_.find(end, at_);
        const std::size_t stop = found == kNone ? code_.size() : found + end.size();
        while (at_ < stop)
            if (!take_mark())
                bound_.text += code_[at_++];
    }

    std::string_view code_;
    const HeldValues& held_;
    std::size_t at_ = 0;
};

class QueryBinder final : public Binder {
public:
    using Binder::Binder;

private:
    // Also the double quotes, in which some databases write texts.
    bool is_quote(char c) const override { return c == '\'' || c == '"'; }

    std::string_view comment_end() const override {
        return rest().starts_with("--") ? "\n" : rest().starts_with("/*") ? "*/" : "";
    }

    void put_text(std::string value) override {
        std::string& text = bound_.text;
        // N'text', the national form, is a text like any other.
        const bool national = text.ends_with('N') || text.ends_with('n');
        if (national && (text.size() == 1 || !is_word(text[text.size() - 2])))
            text.pop_back();
        text += '?';
        bound_.values.emplace_back(std::move(value));
    }

    void put_bare(const HeldValues::Value& value) override {
        const std::string_view text = trimmed(value.text);
        if (!is_number_list(text) && !is_date(text) && !is_logical(text))
            refuse(value, "a number, several with commas between, a date or a Boolean");
        if (before() == '-' && text.starts_with('-')) // the two would begin a comment
            bound_.text += ' ';
        bound_.text += text;
    }
};

class ExpressionBinder final : public Binder {
public:
    using Binder::Binder;

private:
    bool is_quote(char c) const override { return c == '"'; }

    std::string_view comment_end() const override { return rest().starts_with('\'') ? "\n" : ""; }

    void put_text(std::string value) override { put_variable(Variant(std::move(value))); }

    // A number becomes a variable, too, where that means the same, so that the expression's text is the same
    // for each record.
    void put_bare(const HeldValues::Value& value) override {
        const std::string_view text = trimmed(value.text);
        if (!is_number(text) && !is_date(text) && !is_logical(text))
            refuse(value, "a number, a date or a Boolean");
        const bool alone =
            !is_word(before()) && std::string_view(".&").find(before()) == kNone &&
            (rest().empty() || !(is_word(rest()[0]) || rest()[0] == '.' || rest()[0] == SlottedText::kMark));
        if (std::optional<Variant> number = alone ? literal(text) : std::nullopt)
            put_variable(std::move(*number));
        else
            bound_.text += text;
    }

    // The value of a number as the script reads it; nothing for one with a sign, which binds less than a
    // variable.
    static std::optional<Variant> literal(std::string_view text) {
        double number = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
        if (!is_digit(text[0]) || error != std::errc() || end != text.data() + text.size())
            return std::nullopt;
        if (text.find_first_not_of("0123456789") != kNone || number > INT32_MAX)
            return Variant(number);
        if (number > INT16_MAX)
            return Variant(static_cast<std::int32_t>(number));
        return Variant(static_cast<std::int16_t>(number));
    }

    void put_variable(Variant value) {
        bound_.text += ' ';
        bound_.text += platform::ScriptControl::kValueName;
        bound_.text += std::to_string(bound_.values.size()) + " ";
        bound_.values.push_back(std::move(value));
    }
};

} // namespace

BoundCode bind_query(std::string_view marked, const HeldValues& values) {
    return QueryBinder(marked, values).run();
}

BoundCode bind_expression(std::string_view marked, const HeldValues& values) {
    return ExpressionBinder(marked, values).run();
}

} // namespace tabrixdb
