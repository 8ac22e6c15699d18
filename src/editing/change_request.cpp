#include "editing/change_request.h"

#include "editing/refusal.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace tabrixdb {

namespace {

struct Known {
    std::string_view word, action;
    Change change;
};

constexpr auto kKnown = std::to_array<Known>({{"edit_grid", "update", Change::EditRow},
                                              {"edit_grid", "delete", Change::DeleteRow},
                                              {"edit_source", "update", Change::EditPage},
                                              {"edit_source", "delete", Change::DeleteSelected},
                                              {"edit_source", "addnew", Change::AddRecord}});

constexpr ChangeWords kSave{"saved", "change records", "edit", "Save these changes?", "Save"};
constexpr ChangeWords kDelete{"deleted", "delete records", "delete", "Delete this record?", "Delete"};
constexpr ChangeWords kAdd{"added", "add records", "add", "Add this record?", "Add"};

// The row (from 1) that a row command is about, 0 when it says none.
std::int16_t row_of(const GridCommand& command) {
    std::int16_t index = -1;
    if (command.parts.size() > 2)
        std::from_chars(command.parts[2].data(), command.parts[2].data() + command.parts[2].size(), index);
    return index >= 0 && index < INT16_MAX ? static_cast<std::int16_t>(index + 1) : std::int16_t{0};
}

} // namespace

std::optional<Change> change_of(const GridCommand& command) {
    const auto known = std::ranges::find_if(
        kKnown, [&](const Known& entry) { return command.is(entry.word, entry.action); });
    return known == kKnown.end() ? std::nullopt : std::optional(known->change);
}

const ChangeWords& words_of(Change change) noexcept {
    switch (change) {
    case Change::DeleteRow:
    case Change::DeleteSelected:
        return kDelete;
    case Change::AddRecord:
        return kAdd;
    case Change::EditRow:
    case Change::EditPage:
        break;
    }
    return kSave;
}

std::string not_offered(Change change, const GridCommand& command, const DbSource& source,
                        const PostedForm& form, std::int16_t rows) {
    const ChangeWords& words = words_of(change);
    std::string typed;
    if (change == Change::EditRow)
        typed = typed_values(source, form, row_of(command));
    else if (change == Change::AddRecord)
        typed = typed_values(source, form, 0);
    for (std::int16_t row = 1; change == Change::EditPage && row <= rows; ++row)
        if (form.has_row(row))
            typed += typed_values(source, form, row);
    return "Nothing was " + std::string(words.done) + ": this page does not offer to " +
           std::string(words.action) + " here." + (typed.empty() ? "" : " What you had typed:" + typed);
}

} // namespace tabrixdb
