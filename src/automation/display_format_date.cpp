#include "automation/conversions.h"
#include "automation/display_format_section.h"
#include "automation/locale.h"
#include "automation/number_text.h"

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
    DateWriter(std::string& out, double days, const FormatSection& section)
        : out_(out),
          days_(days),
          parts_(date_parts(days)),
          section_(section) {}

    void write() {
        for (const FormatToken& token : section_.tokens)
            write(token);
    }

private:
    void number(const FormatToken& token, int value) {
        if (token.text.size() == 1)
            append_whole(out_, value);
        else
            two_digits(out_, value);
    }

    int clock_hour() const {
        if (!section_.half_days)
            return parts_.hour;
        return parts_.hour % 12 == 0 ? 12 : parts_.hour % 12;
    }

    void write(const FormatToken& token) {
        const Locale& locale = Locale::current();
        switch (token.code) {
        case FormatToken::kLiteral:
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
            write_month(token);
            break;
        case 'y':
            write_year(token);
            break;
        case 'q':
            append_whole(out_, (parts_.month - 1) / 3 + 1);
            break;
        case 'w':
            append_whole(out_, token.text.size() == 1 ? parts_.weekday : week_of_year(parts_));
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
            append_date_text(out_, days_);
            break;
        case 't':
            append_time(out_, parts_);
            break;
        case 'a':
            write_half_day(token);
            break;
        default:
            break;
        }
    }

    void write_day(const FormatToken& token) {
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
            append_date(out_, parts_, locale.short_date);
            break;
        default:
            append_date(out_, parts_, locale.long_date);
        }
    }

    void write_month(const FormatToken& token) {
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

    void write_year(const FormatToken& token) {
        switch (token.text.size()) {
        case 1:
            append_whole(out_, day_of_year(parts_));
            break;
        case 2:
            two_digits(out_, parts_.year);
            break;
        default:
            append_whole(out_, parts_.year);
        }
    }

    void write_half_day(const FormatToken& token) {
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
    const FormatSection& section_;
};

} // namespace

void append_date_section(std::string& out, double days, const FormatSection& section) {
    DateWriter(out, days, section).write();
}

} // namespace tabrixdb
