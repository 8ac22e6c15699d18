#include "editing/row_edit.h"

#include "automation/conversions.h"
#include "automation/text.h"
#include "engine/report.h"

#include <algorithm>

namespace tabrixdb {

namespace {

constexpr std::string_view kEdit = "_edit";
constexpr std::string_view kEditRow = "_edit_row";

// After these the rows of the page are others than those that were shown.
constexpr std::string_view kOtherRows[] = {
    "next_page",   "previous_page", "first_page", "last_page",        "row+", "row-", "sort",
    "filter_grid", "form_mode",     "grid_mode",  "filter_grid_clear"};

} // namespace

void edit_row(GridState state, std::int16_t row) {
    state.set(kEditRow, row);
    state.set(kEdit, true);
}

void process_row_edit(const GridCommand& command, GridState state) {
    guard("Update Row - " + state.grid(), [&] {
        const bool row_command = command.word == "edit_grid";
        if (row_command && command.part(1) == "edit") {
            edit_row(state, to_integer(command.part(2)));
        } else if ((row_command && command.part(1) == "cancel") ||
                   std::ranges::find(kOtherRows, command.word) != std::end(kOtherRows)) {
            state.set(kEdit, false);
        }
    });
}

std::int16_t edited_row(const GridState& state) {
    const std::int32_t index = state.flag(kEdit) ? state.number(kEditRow) : -1;
    return index >= 0 && index < INT16_MAX ? static_cast<std::int16_t>(index + 1) : std::int16_t{0};
}

bool is_row_edited(const Pro& pro, const GridState& state, std::int16_t row) {
    return equal_ignore_case(pro.grid_edit_mode, "GRID") || edited_row(state) == row;
}

} // namespace tabrixdb
