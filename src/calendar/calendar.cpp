#include "calendar/calendar.h"

#include "automation/member.h"
#include "calendar/month.h"
#include "engine/report.h"
#include "template/read_template.h"

namespace tabrixdb {

namespace {

const Locale& language_of(std::int32_t lcid) {
    if (lcid == 0)
        return Locale::current();
    if (const Locale* const locale = Locale::find(static_cast<std::uint32_t>(lcid)))
        return *locale;
    throw Error(kErrorCall, "The language " + std::to_string(lcid) + " is not known");
}

bool is_left_out(const Variant& date) {
    return date.is_missing() || date.is_empty() || date.is_null() ||
           (date.is_string() && date.text().empty());
}

// The markers that are not there, or not in their order, as HTML.
std::string missing_sections(std::string_view text) {
    std::string missing;
    std::size_t from = 0;
    for (const std::string_view marker : kCalendarSections) {
        const std::size_t at = find_ignore_case(text, marker, from);
        if (at == std::string_view::npos)
            missing += html_encode(marker) + "<br>";
        else
            from = at + marker.size();
    }
    return missing;
}

} // namespace

const ClassInfo& Calendar::class_info() const {
    static const ClassInfo info("Calendar", kProgramId,
                                {
                                    property<&Calendar::template_text, &Calendar::set_template>("Template"),
                                    method<&Calendar::show>("Show_Calendar", {{"Date", Variant::missing()}}),
                                    field<&Calendar::first_day_of_week>("FirstDayOfWeek"),
                                    field<&Calendar::lcid>("LCID"),
                                    field<&Calendar::format>("Format"),
                                });
    return info;
}

void Calendar::set_template(const std::string& path) {
    guard("Calendar Template", [&] { template_ = read_template(path, true); });
}

std::string Calendar::show(const Variant& date) {
    return guard("Calendar Show", [&]() -> std::string {
        if (const std::string missing = missing_sections(template_); !missing.empty()) {
            report({"", "Invalid Syntax: <br>" + missing, "", "Calendar Show", true});
            return {};
        }
        const LocaleScope language(language_of(lcid));
        const Variant given = date.is_object() ? value_of(date) : date;
        const double chosen = is_left_out(given) ? now() : to_date(given);
        return render_month(template_, {.chosen = date_parts(chosen),
                                        .today = date_parts(now()),
                                        .first_weekday = first_day_of_week,
                                        .format = format});
    });
}

} // namespace tabrixdb
