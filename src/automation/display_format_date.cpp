#include "automation/conversions.h"
#include "automation/display_format.h"
#include "automation/locale.h"

namespace tabrixdb {

namespace {

int day_of_year(const DateParts& parts) {
    return static_cast<int>(date_serial(parts.year, parts.month, parts.day) - date_serial(parts.year, 1, 1)) +
           1;
}

// Weeks from Sunday, the first one that of 1 January.
int week_of_year(const DateParts& parts) {
    const int first_weekday = date_parts(date_serial(parts.year, 1, 1)).weekday;
    return (day_of_year(parts) + first_weekday - 2) / 7 + 1;
}

void two_digits(std::string& out, int value) {
    out += static_cast<char>('0' + value / 10 % 10);
    out += static_cast<char>('0' + value % 10);
}

class DateWriter {
public:
    DateWriter(std::string& out, double days, const DisplayFormat::Section& section)
        : out_(out),
          days_(days),
          parts_(date_parts(days)),
          section_(section) {
        for (const DisplayFormat::Token& token : section)
            half_days_ = half_days_ || token.code == 'a';
    }

    void write() {
        for (std::size_t i = 0; i < section_.size(); ++i)
            write(section_[i], i);
    }

private:
    void number(const DisplayFormat::Token& token, int value) {
        if (token.text.size() == 1)
            out_ += std::to_string(value);
        else
            two_digits(out_, value);
    }

    // "m" is the month, but right after hours (with only separators between) the minute.
    bool follows_hours(std::size_t index) const {
        while (index-- > 0) {
            const char code = section_[index].code;
            if (code != ':' && code != DisplayFormat::Token::kLiteral)
                return code == 'h';
        }
        return false;
    }

    int clock_hour() const {
        if (!half_days_)
            return parts_.hour;
        return parts_.hour % 12 == 0 ? 12 : parts_.hour % 12;
    }

    void write(const DisplayFormat::Token& token, std::size_t index) {
        const Locale& locale = Locale::current();
        switch (token.code) {
        case DisplayFormat::Token::kLiteral:
            out_ += token.text;
            break;
        case '/':
            out_ += locale.date_separator;
            break;
        case ':':
            out_ += ':';
            break;
        case 'd':
            write_day(token);
            break;
        case 'm':
            if (token.text.size() <= 2 && follows_hours(index))
                number(token, parts_.minute);
            else
                write_month(token);
            break;
        case 'y':
            write_year(token);
            break;
        case 'q':
            out_ += std::to_string((parts_.month - 1) / 3 + 1);
            break;
        case 'w':
            out_ += std::to_string(token.text.size() == 1 ? parts_.weekday : week_of_year(parts_));
            break;
        case 'h':
            number(token, clock_hour());
            break;
        case 'n':
            number(token, parts_.minute);
            break;
        case 's':
            number(token, parts_.second);
            break;
        case 'c':
            out_ += date_text(days_);
            break;
        case 't':
            write_time(token);
            break;
        case 'a':
            write_half_day(token);
            break;
        default:
            break;
        }
    }

    void pattern(std::string_view text) { DisplayFormat(text).append(out_, Variant::date(days_)); }

    void write_day(const DisplayFormat::Token& token) {
        const Locale& locale = Locale::current();
        const auto weekday = static_cast<std::size_t>(parts_.weekday - 1);
        switch (token.text.size()) {
        case 1:
        case 2:
            number(token, parts_.day);
            break;
        case 3:
            out_ += locale.short_weekdays[weekday];
            break;
        case 4:
            out_ += locale.weekdays[weekday];
            break;
        case 5:
            pattern(locale.short_date);
            break;
        default:
            pattern(locale.long_date);
        }
    }

    void write_month(const DisplayFormat::Token& token) {
        const auto month = static_cast<std::size_t>(parts_.month - 1);
        switch (token.text.size()) {
        case 1:
        case 2:
            number(token, parts_.month);
            break;
        case 3:
            out_ += Locale::current().short_months[month];
            break;
        default:
            out_ += Locale::current().months[month];
        }
    }

    void write_year(const DisplayFormat::Token& token) {
        switch (token.text.size()) {
        case 1:
            out_ += std::to_string(day_of_year(parts_));
            break;
        case 2:
            two_digits(out_, parts_.year);
            break;
        default: {
            const std::string year = std::to_string(parts_.year);
            out_ += std::string(year.size() < 4 ? 4 - year.size() : 0, '0') + year;
        }
        }
    }

    // "ttttt" is the whole time; fewer are not a placeholder.
    void write_time(const DisplayFormat::Token& token) {
        if (token.text.size() < 5)
            out_ += token.text;
        else if (Locale::current().clock_24)
            pattern("hh:nn:ss");
        else
            pattern("h:nn:ss AM/PM");
    }

    void write_half_day(const DisplayFormat::Token& token) {
        const bool afternoon = parts_.hour >= 12;
        const Locale& locale = Locale::current();
        if (token.text.size() == 4) { // AMPM: the Locale's own words
            out_ += afternoon ? locale.pm : locale.am;
        } else if (token.text.size() == 3) {
            out_ += afternoon ? token.text[2] : token.text[0];
        } else {
            out_ += token.text.substr(afternoon ? 3 : 0, 2);
        }
    }

    std::string& out_;
    double days_;
    DateParts parts_;
    const DisplayFormat::Section& section_;
    bool half_days_ = false;
};

} // namespace

void append_date_section(std::string& out, double days, const DisplayFormat::Section& section) {
    DateWriter(out, days, section).write();
}

} // namespace tabrixdb
