#include "automation/conversions.h"
#include "automation/error.h"

#include <array>
#include <charconv>
#include <span>

namespace tabrixdb {

namespace {

bool is_digit(char c) {
    return c >= '0' && c <= '9';
}

bool is_blank(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

// ASCII letters and every byte of a longer character, as in "März".
bool is_letter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || static_cast<unsigned char>(c) >= 0x80;
}

bool is_leap(int year) {
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

bool is_date(int year, int month, int day) {
    constexpr std::array kDays{31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (year < 100 || year > 9999 || month < 1 || month > 12 || day < 1)
        return false;
    return day <= kDays[static_cast<std::size_t>(month - 1)] + (month == 2 && is_leap(year));
}

// The place of a word in a list of names, from 1, or 0. Names may be written without their full stop.
int index_of(std::span<const std::string_view> names, std::string_view word) {
    for (std::size_t i = 0; i < names.size(); ++i) {
        std::string_view name = names[i];
        if (name.ends_with('.'))
            name.remove_suffix(1);
        if (equal_ignore_case(name, word))
            return static_cast<int>(i) + 1;
    }
    return 0;
}

template <class Full, class Short>
int find_name(std::string_view word, Full full, Short abbreviated) {
    // English names are read whatever the Locale is.
    for (const Locale* locale : {&Locale::current(), Locale::find(std::uint32_t{0})})
        for (const int found : {index_of(locale->*full, word), index_of(locale->*abbreviated, word)})
            if (found != 0)
                return found;
    return 0;
}

int find_month(std::string_view word) {
    return find_name(word, &Locale::months, &Locale::short_months);
}

bool is_weekday(std::string_view word) {
    return find_name(word, &Locale::weekdays, &Locale::short_weekdays) != 0;
}

struct Number {
    int value = 0;
    int digits = 0;
};

// Reads a date and/or time text from left to right into day numbers, a month name and a time, then finds
// the order of the day numbers that gives a date.
class DateScanner {
public:
    explicit DateScanner(std::string_view text) : text_(text) {}

    std::optional<double> scan() {
        while (at_ < text_.size())
            if (!token())
                return std::nullopt;
        if (count_ == 0 && !has_time_)
            return std::nullopt;
        double day = 0;
        if (count_ > 0 || month_ != 0) {
            const auto found = resolve_date();
            if (!found)
                return std::nullopt;
            day = *found;
        }
        return join_date_time(day, time_);
    }

private:
    bool token() {
        const char c = text_[at_];
        if (is_blank(c) || c == ',') {
            ++at_;
            return true;
        }
        if (is_digit(c))
            return number();
        if (is_letter(c))
            return word();
        return separator(c);
    }

    char peek(std::size_t ahead = 0) const { return at_ + ahead < text_.size() ? text_[at_ + ahead] : '\0'; }

    std::optional<Number> digits() {
        Number number;
        for (; is_digit(peek()) && number.digits <= 4; ++at_, ++number.digits)
            number.value = number.value * 10 + (peek() - '0');
        return number.digits == 0 || number.digits > 4 ? std::nullopt : std::optional(number);
    }

    bool number() {
        const auto first = digits();
        if (!first)
            return false;
        if (peek() == ':')
            return !has_time_ && time_of_day(first->value);
        if (!has_time_ && half_of_day_ahead())
            return time_of_day(first->value);
        if (count_ == numbers_.size())
            return false;
        numbers_[count_++] = *first;
        pending_separator_ = false;
        return true;
    }

    // "5 PM": an hour alone when AM or PM follows.
    bool half_of_day_ahead() const {
        std::size_t at = at_;
        while (at < text_.size() && is_blank(text_[at]))
            ++at;
        const std::size_t start = at;
        while (at < text_.size() && is_letter(text_[at]))
            ++at;
        return half_of_day(text_.substr(start, at - start)) != 0;
    }

    // 1 for AM, 2 for PM, else 0.
    static int half_of_day(std::string_view word) {
        const Locale& locale = Locale::current();
        if (equal_ignore_case(word, "AM") || (!word.empty() && equal_ignore_case(word, locale.am)))
            return 1;
        return equal_ignore_case(word, "PM") || (!word.empty() && equal_ignore_case(word, locale.pm)) ? 2 : 0;
    }

    bool time_of_day(int hour) {
        int minute = 0, second = 0;
        double fraction = 0;
        if (!time_part(minute) || !time_part(second))
            return false;
        if (peek() == '.' && is_digit(peek(1)))
            fraction = fraction_of_second();
        while (is_blank(peek()) && half_of_day_ahead())
            ++at_;
        const std::size_t start = at_;
        if (half_of_day_ahead())
            while (is_letter(peek()))
                ++at_;
        const int half = half_of_day(text_.substr(start, at_ - start));
        if (hour > (half ? 12 : 23) || minute > 59 || second > 59)
            return false;
        if (half)
            hour = hour % 12 + (half == 2 ? 12 : 0);
        has_time_ = true;
        time_ = time_serial(hour, minute, second) + fraction / (24 * 60 * 60);
        return true;
    }

    // ":mm", if there is one.
    bool time_part(int& value) {
        if (peek() != ':')
            return true;
        ++at_;
        const auto number = digits();
        value = number ? number->value : 0;
        return number && number->digits <= 2;
    }

    double fraction_of_second() {
        double fraction = 0, place = 0.1;
        for (++at_; is_digit(peek()); ++at_, place /= 10)
            fraction += place * (peek() - '0');
        return fraction;
    }

    bool word() {
        const std::size_t start = at_;
        while (is_letter(peek()))
            ++at_;
        const std::string_view found = text_.substr(start, at_ - start);
        if (peek() == '.')
            ++at_;
        if (equal_ignore_case(found, "T") && count_ == 3 && is_digit(peek())) // ISO: 2026-03-05T14:30
            return true;
        if (const int month = find_month(found)) {
            if (month_ != 0)
                return false;
            month_ = month;
            pending_separator_ = false;
            return true;
        }
        return is_weekday(found) || is_filler(found);
    }

    // The words that the long dates of some languages have between their parts: "5 de marzo de 2026".
    static bool is_filler(std::string_view word) {
        const std::string_view pattern = Locale::current().long_date;
        for (std::size_t at = pattern.find('\''); at != std::string_view::npos;) {
            const std::size_t end = pattern.find('\'', at + 1);
            if (end == std::string_view::npos)
                return false;
            std::string_view literal = pattern.substr(at + 1, end - at - 1);
            while (literal.starts_with(' '))
                literal.remove_prefix(1);
            while (literal.ends_with(' '))
                literal.remove_suffix(1);
            if (equal_ignore_case(literal, word))
                return true;
            at = pattern.find('\'', end + 1);
        }
        return false;
    }

    // Between two day numbers, or a day number and a month name.
    bool separator(char c) {
        const bool known = c == '/' || c == '-' || c == '.' || c == Locale::current().date_separator;
        if (!known || pending_separator_ || (count_ == 0 && month_ == 0))
            return false;
        dots_ = dots_ || c == '.';
        ++separators_;
        pending_separator_ = true;
        ++at_;
        return true;
    }

    std::optional<double> resolve_date() {
        if (pending_separator_)
            return std::nullopt;
        if (month_ != 0)
            return with_month_name();
        if (separators_ + 1 != static_cast<int>(count_))
            return std::nullopt;
        if (count_ == 3)
            return three_numbers();
        return count_ == 2 ? two_numbers() : std::nullopt;
    }

    static int this_year() { return date_parts(now()).year; }

    static std::optional<double> date(Number year, int month, int day) {
        int value = year.value;
        if (year.digits <= 2)
            value += value < kCenturyWindow ? 2000 : 1900;
        if (!is_date(value, month, day))
            return std::nullopt;
        return date_serial(value, month, day);
    }

    std::optional<double> with_month_name() {
        const Number first = numbers_[0], second = numbers_[1];
        if (count_ == 1) {
            // "5 March" is this year's; "March 2026" and "March 50" can only be a month of a year.
            if (first.digits <= 2)
                if (const auto found = date({this_year(), 4}, month_, first.value))
                    return found;
            return date(first, month_, 1);
        }
        if (count_ != 2)
            return std::nullopt;
        if (first.digits > 2)
            return date(first, month_, second.value);
        if (const auto found = date(second, month_, first.value))
            return found;
        return date(first, month_, second.value);
    }

    std::optional<double> three_numbers() {
        using Order = Locale::DateOrder;
        const auto in_order = [this](Order order) -> std::optional<double> {
            const auto [a, b, c] = std::array{numbers_[0], numbers_[1], numbers_[2]};
            switch (order) {
            case Order::MonthDayYear:
                return b.digits > 2 || a.digits > 2 ? std::nullopt : date(c, a.value, b.value);
            case Order::DayMonthYear:
                return b.digits > 2 || a.digits > 2 ? std::nullopt : date(c, b.value, a.value);
            default:
                return b.digits > 2 || c.digits > 2 ? std::nullopt : date(a, b.value, c.value);
            }
        };
        if (numbers_[0].digits > 2)
            return in_order(Order::YearMonthDay);
        // The Locale's order first, then whatever else makes a date of it.
        for (const Order order :
             {Locale::current().order, Order::MonthDayYear, Order::DayMonthYear, Order::YearMonthDay})
            if (const auto found = in_order(order))
                return found;
        return std::nullopt;
    }

    // Month and day of this year in the Locale's order, or month and year. With a full stop this is a
    // number in most places, so only a Locale that writes its dates that way reads it as one.
    std::optional<double> two_numbers() {
        const Number first = numbers_[0], second = numbers_[1];
        if (dots_ && Locale::current().date_separator != '.')
            return std::nullopt;
        if (first.digits > 2)
            return date(first, second.value, 1);
        if (second.digits > 2)
            return date(second, first.value, 1);
        const bool day_first = Locale::current().order == Locale::DateOrder::DayMonthYear;
        const Number year{this_year(), 4};
        if (const auto found =
                date(year, day_first ? second.value : first.value, day_first ? first.value : second.value))
            return found;
        if (const auto found =
                date(year, day_first ? first.value : second.value, day_first ? second.value : first.value))
            return found;
        return date(second, first.value, 1);
    }

    std::string_view text_;
    std::size_t at_ = 0;
    std::array<Number, 3> numbers_;
    std::size_t count_ = 0;
    int separators_ = 0;
    bool pending_separator_ = false;
    bool dots_ = false;
    int month_ = 0;
    bool has_time_ = false;
    double time_ = 0;
};

// "yyyy-mm-dd" and "yyyy-mm-dd hh:mm:ss", which databases send by the thousand; nullopt for all else.
std::optional<double> parse_iso(std::string_view text) {
    if ((text.size() != 10 && text.size() != 19) || text[4] != '-' || text[7] != '-')
        return std::nullopt;
    const auto number = [text](std::size_t at, std::size_t length) {
        int value = 0;
        for (const char c : text.substr(at, length)) {
            if (!is_digit(c))
                return -1;
            value = value * 10 + (c - '0');
        }
        return value;
    };
    const int year = number(0, 4), month = number(5, 2), day = number(8, 2);
    if (!is_date(year, month, day))
        return std::nullopt;
    double time = 0;
    if (text.size() == 19) {
        const int hour = number(11, 2), minute = number(14, 2), second = number(17, 2);
        const bool well_formed = (text[10] == ' ' || text[10] == 'T') && text[13] == ':' && text[16] == ':';
        if (!well_formed || hour < 0 || hour > 23 || minute < 0 || minute > 59 || second < 0 || second > 59)
            return std::nullopt;
        time = time_serial(hour, minute, second);
    }
    return join_date_time(date_serial(year, month, day), time);
}

} // namespace

std::optional<double> parse_date(std::string_view text) {
    if (const auto iso = parse_iso(text))
        return iso;
    return DateScanner(text).scan();
}

} // namespace tabrixdb
