#pragma once

#include "editing/edit.h"
#include "editing/posted_form.h"

#include <cstdint>
#include <string_view>

namespace tabrixdb {

// Whether a form has only values that its controls can post: entries that a list, a choice or boxes offer,
// the record's own value, the default of a new record; and none for a column that can't be written. A form
// that has others is a Refusal. To be called on the record that the form has shown, before a new one is
// begun.
void check_posted_values(const Edit& edit, const PostedForm& form, std::int16_t row);

// Gives the current record the values that were posted for a row of a form, as far as they are others than
// those it has; files that were uploaded, too. A value that can't be taken is a Refusal, or for a form that
// does not say what it had shown an Error; an empty one that must not be empty is reported there under
// `label`, and gives false.
bool assign_values(const Edit& edit, const PostedForm& form, std::int16_t row, std::string_view label);

} // namespace tabrixdb
