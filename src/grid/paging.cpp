#include "grid/paging.h"

#include "automation/conversions.h"
#include "automation/error.h"
#include "editing/row_edit.h"
#include "engine/report.h"

#include <algorithm>

namespace tabrixdb {

namespace {

constexpr std::string_view kPage = "_CurrentPage";
constexpr std::string_view kPageSize = "_PageSize";
constexpr std::string_view kOffset = "_Offset";

// "row+" and "row-": a step that would reach 0 or less is deliberately ignored whole, not clamped.
void resize_page(const GridCommand& command, GridState& state, std::int16_t increment) {
    const std::int32_t size = state.number(kPageSize);
    if (command.word == "row+")
        state.set(kPageSize, to_short(std::int64_t{size} + increment));
    if (command.word == "row-" && size - increment > 0)
        state.set(kPageSize, to_short(std::int64_t{size} - increment));
}

// The page after the command; every test stands by itself, as commands are single words.
std::int32_t turn_page(const std::string& command, std::int32_t page, std::int16_t pages) {
    if (command == "next_page" && page < pages)
        return page + 1;
    if (command == "previous_page" && page > 1)
        return page - 1;
    if (command == "first_page")
        return 1;
    if (command == "last_page")
        return pages;
    return page;
}

bool turns_or_resizes(const std::string& command) {
    return command == "row+" || command == "row-" || command == "next_page" || command == "previous_page" ||
           command == "first_page" || command == "last_page";
}

// The four moves of a selected record through the whole recordset: no wrap at either end.
void move_selection(const GridCommand& command, GridState& state, platform::Recordset& records) {
    if (command.word == "next_page") {
        if (const std::int32_t offset = state.number(kOffset); offset < records.record_count() - 1)
            state.set(kOffset, offset + 1);
    } else if (command.word == "previous_page") {
        if (const std::int32_t offset = state.number(kOffset); offset > 0)
            state.set(kOffset, offset - 1);
    } else if (command.word == "first_page") {
        state.set(kOffset, std::int16_t{0});
    } else if (command.word == "last_page") {
        state.set(kOffset, records.record_count() - 1);
    }
}

// The place in the recordset of the record with offset 0: a grid without pages counts through the whole.
std::int64_t page_start(const GridState& state) {
    const std::int64_t page = state.number(kPage);
    return page > 0 ? std::max<std::int64_t>((page - 1) * state.number(kPageSize), 0) : 0;
}

// The list form of a fed grid: it follows the source grid when the user acted there, else its own commands.
// True when it followed.
bool follow_or_move(const GridCommand& command, GridState& source, GridState& state,
                    platform::Recordset& records) {
    const std::string acted = read_command_word(request(), source.grid());
    if (acted == "form_mode" || acted == "grid_offset") {
        process_offset_logic(command, source, records);
        if (!page_ended())
            state.set(kOffset, records.absolute_position() - 1);
        return true;
    }
    move_selection(command, state, records);
    if (state.blank(kOffset))
        state.set(kOffset, std::int16_t{0});
    if (!records.is_empty()) {
        records.move_first();
        records.move(state.number(kOffset));
    }
    return false;
}

} // namespace

void process_sort_logic(const GridCommand& command, const std::string& grid) {
    guard("Process Sort Logic - " + grid, [&] {
        if (command.word != "sort")
            return;
        session().set_value(command.part(0) + "_Sort", command.part(1));
        session().set_value(command.part(0) + std::string(kPostedSort), command.part(1));
    });
}

void process_page_logic(const GridCommand& command, GridState state, platform::Recordset& records,
                        std::int16_t rows, std::int16_t increment) {
    guard("Process Page Logic - " + state.grid(), [&] {
        if (state.number(kPage) == 0)
            state.set(kPage, std::int16_t{1});
        if (state.blank(kPageSize))
            state.set(kPageSize, rows);
        resize_page(command, state, increment);
        records.set_page_size(state.number(kPageSize));
        const std::int16_t pages = to_short(records.page_count());
        std::int32_t page = state.number(kPage);
        if (page > pages)
            state.set(kPage, to_short(page = pages));
        if (const std::int32_t turned = turn_page(command.word, page, pages); turned != page)
            state.set(kPage, to_short(turned));
        if (turns_or_resizes(command.word))
            state.set(kOffset, std::int16_t{0});
    });
}

void process_offset_logic(const GridCommand& command, GridState state, platform::Recordset& records) {
    guard("Process Offset Logic", [&] {
        if (records.is_empty())
            return;
        records.set_absolute_page(state.number(kPage));
        if (state.blank(kOffset))
            state.set(kOffset, std::int16_t{0});
        if (command.word == "grid_offset")
            state.set(kOffset, to_integer(command.parameters));
        records.move(state.number(kOffset));
    });
}

void process_page_logic_for_form(const Pro& pro, const GridCommand& command, const std::string& source_grid,
                                 platform::Recordset& records, bool grid_mode, const std::string& this_grid) {
    guard("Process Page Logic For Form - SourceGrid = " + source_grid + " ThisGrid = " + this_grid, [&] {
        pro.trace("Process_PageLogic_ForForm - Start");
        pro.trace(std::string("GRID Mode is ") + (grid_mode ? "True" : "False"));
        GridState source(session(), source_grid);
        if (!grid_mode) {
            move_selection(command, source, records);
            process_offset_logic(command, source, records);
        } else if (GridState state(session(), this_grid); follow_or_move(command, source, state, records)) {
            return; // deliberately without the closing trace line
        }
        pro.trace("Process_PageLogic_ForForm - End");
    });
}

void edit_record_at(std::int32_t index, const GridState& state, std::int16_t rows) {
    const std::int32_t size =
        state.number(kPageSize) > 0 ? state.number(kPageSize) : std::max<std::int32_t>(rows, 1);
    state.set(kPage, to_short(index / size + 1));
    edit_row(state, to_short(index % size));
}

void edit_fed_record_at(std::int32_t index, const GridState& state, const GridState& selecting,
                        std::int16_t rows) {
    const std::int64_t first = page_start(selecting) + selecting.number(kOffset);
    if (index >= first && index < first + rows)
        return edit_row(state, to_short(index - first));
    const std::int32_t size = selecting.number(kPageSize);
    if (size > 0)
        selecting.set(kPage, to_short(index / size + 1));
    selecting.set(kOffset, static_cast<std::int32_t>(index - page_start(selecting)));
    edit_row(state, 0);
}

void keep_selection_within(const GridState& state, platform::Recordset& records) {
    const std::int64_t last = std::max<std::int64_t>(records.record_count() - 1 - page_start(state), 0);
    if (!state.blank(kOffset) && state.number(kOffset) > last)
        state.set(kOffset, static_cast<std::int32_t>(last));
}

} // namespace tabrixdb
