// Template splitting, body stripping, layout and calendars on any bytes: only the errors that they name may
// come out.

#include "automation/error.h"
#include "calendar/month.h"
#include "grid/layout.h"
#include "template/column_tag.h"
#include "template/read_template.h"

#include <cstdint>
#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string text(reinterpret_cast<const char*>(data), size);
    tabrixdb::strip_body(text);
    try {
        const tabrixdb::GridLayout one =
            tabrixdb::layout_of_template(tabrixdb::split_template(text), size % 2 == 0);
        const tabrixdb::GridLayout three =
            tabrixdb::layout_of_parts(tabrixdb::split_template(text), text, text, true);
        if (one.row.size() > text.size() || three.header.size() > text.size())
            std::abort();
    } catch (const tabrixdb::Error& error) {
        if (error.number() != 5 && error.number() != 6)
            throw;
    }
    const auto& [header, cells, footer] = tabrixdb::kCalendarSections;
    const auto day = tabrixdb::date_parts(static_cast<double>(size));
    tabrixdb::render_month(
        std::string(header) + text + std::string(cells) + text + std::string(footer) + text,
        {.chosen = day, .today = day, .first_weekday = static_cast<int>(size % 8), .format = {}});
    tabrixdb::ColumnTag(text.substr(0, 8)).replace_in(text, "#~x~#");
    return 0;
}
