#pragma once

#include "data/db_source.h"
#include "editing/posted_form.h"
#include "engine/pro.h"
#include "template/offers.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tabrixdb {

// What a command asks to change; nothing for one that changes no records.
std::optional<Change> change_of(const GridCommand& command);

// The words of messages about a change.
struct ChangeWords {
    std::string_view done;     // "deleted"
    std::string_view action;   // "delete records": what a grid offers
    std::string_view permit;   // the word of Permit for it
    std::string_view question; // "Delete this record?"
    std::string_view button;   // that says yes to it
};

const ChangeWords& words_of(Change change) noexcept;

// Why a change that a grid does not offer is not made, with the values that came with it. HTML. `rows`: the
// most that a page of the grid has.
std::string not_offered(Change change, const GridCommand& command, const DbSource& source,
                        const PostedForm& form, std::int16_t rows);

} // namespace tabrixdb
