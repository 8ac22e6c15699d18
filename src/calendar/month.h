#pragma once

#include "automation/conversions.h"

#include <array>
#include <string>
#include <string_view>

namespace tabrixdb {

// The markers with which the sections of a calendar's template begin, in their order; each goes on to the
// next one.
inline constexpr std::array<std::string_view, 3> kCalendarSections = {"<!--tabrixdb:cal_header_start-->",
                                                                      "<!--tabrixdb:cal_cells_start-->",
                                                                      "<!--tabrixdb:cal_footer_start-->"};

// The month that is shown, and what is known of its days.
struct Month {
    DateParts chosen; // a day of the month
    DateParts today;
    int first_weekday = 0;   // 1 Sunday to 7 Saturday; 0: the language's
    std::string_view format; // of dates; empty: as they are written
};

// Fills a template that has the sections, in the current Locale. Where the calendar ends (years 100 to 9999)
// days and months beyond are empty. Error 5 for another first weekday.
std::string render_month(std::string_view text, const Month& month);

} // namespace tabrixdb
