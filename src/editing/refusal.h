#pragma once

#include "data/db_source.h"
#include "editing/posted_form.h"

#include <cstdint>
#include <string>

namespace tabrixdb {

// Thrown, and caught, within this folder: a change that the user is to hear of.
struct Refusal {
    std::string message; // HTML
    // There is no record any more that could be shown again.
    bool record_gone = false;
    // The form's row of which the message says what its record holds now, or what was typed; 0: none.
    std::int16_t told_row = 0;
};

// The current record is not as it was shown any more, so it was not `done` ("saved", "deleted"): says what it
// holds now where that is not what was typed.
Refusal changed_meanwhile(const DbSource& source, const PostedForm& form, std::int16_t row,
                          std::string_view done);
// The record that a row showed is not there any more, or not among those of this grid: says what was typed
// for it.
Refusal gone_meanwhile(const DbSource& source, const PostedForm& form, std::int16_t row);
// A value that its column does not take: why. `more`: HTML behind it.
Refusal bad_value(const DbField& field, std::string_view why, std::string_view more = "");
// The values that were posted for a row, as a list; "" when there are none. HTML.
std::string typed_values(const DbSource& source, const PostedForm& form, std::int16_t row);
// What was typed for a row whose record stands on another page now. HTML; "" when nothing was.
std::string typed_elsewhere(const DbSource& source, const PostedForm& form, std::int16_t row);
// The form had a control that this page does not know.
Refusal unknown_control(const DbField& field);
// What the database says about a change that it did not take, so that nothing was `done` ("saved",
// "deleted").
Refusal not_written(std::string_view why, std::string_view done);

} // namespace tabrixdb
