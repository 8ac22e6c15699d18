#include "calendar/month.h"

#include "automation/display_format.h"
#include "automation/error.h"
#include "automation/text.h"
#include "engine/fill_tag.h"
#include "engine/report.h"

namespace tabrixdb {

namespace {

constexpr int kWeek = 7;

using Sections = std::array<std::string, kCalendarSections.size()>;

// What stands before the first marker belongs to the header.
Sections sections_of(std::string_view text) {
    Sections sections;
    std::size_t from = 0;
    for (std::size_t i = 0; i < kCalendarSections.size(); ++i) {
        const std::size_t at = find_ignore_case(text, kCalendarSections[i], from);
        sections[i == 0 ? 0 : i - 1] += text.substr(from, at - from);
        from = at + kCalendarSections[i].size();
    }
    sections.back() += text.substr(from);
    return sections;
}

bool same_day(const DateParts& a, const DateParts& b) {
    return a.year == b.year && a.month == b.month && a.day == b.day;
}

bool is_in_calendar(double day) {
    return day >= kFirstDate && day <= kLastDate;
}

// The first day of the month so many months on; a day beyond the calendar where it ends.
double month_after(const DateParts& day, int months) {
    const int month = day.month + months;
    if (day.year == 9999 && month > 12)
        return kLastDate + 1;
    if (day.year == 100 && month < 1)
        return kFirstDate - 1;
    return date_serial(day.year, month, 1);
}

class MonthRenderer {
public:
    MonthRenderer(std::string_view text, const Month& month)
        : sections_(sections_of(text)),
          month_(month),
          format_(month.format),
          first_(date_serial(month.chosen.year, month.chosen.month, 1)),
          next_(month_after(month.chosen, 1)),
          first_weekday_(month.first_weekday == 0 ? Locale::current().first_weekday : month.first_weekday) {
        if (first_weekday_ < 1 || first_weekday_ > kWeek)
            throw Error(kErrorCall, "FirstDayOfWeek is 0 to 7");
    }

    std::string run() const {
        const auto& [header, cells, footer] = sections_;
        std::string out = frame(header, month_after(month_.chosen, -1));
        const bool in_rows = contains_ignore_case(cells, "<td");
        for (double day = first_shown(); day < next_;) {
            if (in_rows)
                out += "<tr>";
            for (int i = 0; i < kWeek; ++i)
                out += cell(cells, day++);
            if (in_rows)
                out += "</tr>";
        }
        return out + frame(footer, next_);
    }

private:
    double first_shown() const {
        return first_ - (date_parts(first_).weekday - first_weekday_ + kWeek) % kWeek;
    }

    std::string date_value(double day) const {
        std::string text;
        if (!is_in_calendar(day))
            return text;
        if (month_.format.empty())
            append_date_text(text, day);
        else
            format_.append(text, Variant::date(day));
        return html_encode(text);
    }

    // The part above or below the days, which leads to the month of `beside`.
    std::string frame(std::string text, double beside) const {
        const Locale& language = Locale::current();
        const std::string_view name = language.months[static_cast<std::size_t>(month_.chosen.month - 1)];
        fill_tag(text, "#~element~#", std::string(name) + " " + std::to_string(month_.chosen.year));
        fill_tag(text, "#~date_value~#", date_value(beside));
        fill_tag(text, "#~previous_month~#", date_value(month_after(month_.chosen, -1)));
        fill_tag(text, "#~next_month~#", date_value(next_));
        for (int i = 0; i < kWeek; ++i) {
            const auto weekday = static_cast<std::size_t>((first_weekday_ - 1 + i) % kWeek);
            fill_tag(text, "#~weekday_" + std::to_string(i + 1) + "~#", language.short_weekdays[weekday]);
        }
        return text;
    }

    std::string cell(std::string text, double day) const {
        if (!is_in_calendar(day)) {
            for (const std::string_view tag : {"#~element~#", "#~date_value~#", "#~date_name~#"})
                fill_tag(text, tag, "");
            fill_tag(text, "#~date_class~#", "tabrixdb-no-day");
            return text;
        }
        const DateParts parts = date_parts(day);
        std::string name;
        append_date(name, parts, Locale::current().long_date);
        fill_tag(text, "#~element~#", std::to_string(parts.day));
        fill_tag(text, "#~date_value~#", date_value(day));
        fill_tag(text, "#~date_name~#", html_encode(name));
        fill_tag(text, "#~date_class~#", class_of(parts));
        return text;
    }

    std::string class_of(const DateParts& day) const {
        std::string names = "tabrixdb-day";
        if (day.month != month_.chosen.month)
            names += " tabrixdb-other-month";
        if (same_day(day, month_.today))
            names += " tabrixdb-today";
        if (same_day(day, month_.chosen))
            names += " tabrixdb-chosen";
        return names;
    }

    Sections sections_;
    const Month& month_;
    DisplayFormat format_;
    double first_, next_; // of the month and of the one behind it
    int first_weekday_;
};

} // namespace

std::string render_month(std::string_view text, const Month& month) {
    return MonthRenderer(text, month).run();
}

} // namespace tabrixdb
