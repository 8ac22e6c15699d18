#pragma once

#include "automation/object.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace tabrixdb {

// A month as HTML, from which a date is chosen. Its template has three sections, one behind the other:
//
//   <!--tabrixdb:cal_header_start-->   what stands above the days
//   <!--tabrixdb:cal_cells_start-->    one day; repeated for whole weeks, with the days of the months beside
//   <!--tabrixdb:cal_footer_start-->   what stands below them
//
// "#~element~#" is what a part shows: the day's number, above and below the month's name and year.
// "#~date_value~#" is the date that a part leads to: the day itself, above a day of the month before, below
// one of the month after. Weeks are table rows when a day is a cell ("<td"). Further tags are in
// docs/calendar.md.
class Calendar final : public Object {
public:
    static constexpr std::string_view kProgramId = "TabrixDb.Calendar";

    const ClassInfo& class_info() const override;

    std::int16_t first_day_of_week = 0; // 1 Sunday to 7 Saturday; 0: the language's
    std::int32_t lcid = 0;              // language of names and dates; 0: the page's
    std::string format;                 // display format of "#~date_value~#"; empty: as the page writes dates

    // The text of the template; set by the physical path of its file. Failures are reported as "Calendar
    // Template".
    const std::string& template_text() const { return template_; }

    void set_template(const std::string& path);

    // The month of a date, or of today when it is left out, "" or Empty. A template without the sections is
    // reported as "Invalid Syntax: <br>" and what it lacks; other failures as "Calendar Show".
    std::string show(const Variant& date);

private:
    std::string template_;
};

} // namespace tabrixdb
