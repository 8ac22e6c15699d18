#include "grid/row_template.h"

#include "automation/error.h"
#include "automation/text.h"
#include "template/positions.h"

#include <algorithm>
#include <utility>

namespace tabrixdb {

namespace {

// Marks a slot while a template is compiled; a template that holds this character is not compiled.
constexpr char kMark = '\x01';

// Two places of rows, by which the row's number is found again in what the buttons became.
constexpr std::int16_t kSampleRows[] = {32749, 31337};

bool is_blank(std::string_view value) {
    return value.find_first_not_of(' ') == std::string_view::npos;
}

std::string_view shown_value(std::string_view value) {
    return is_blank(value) ? "&nbsp;" : value;
}

} // namespace

RowTemplate::RowTemplate(std::string text, const std::vector<RowColumn>& columns, Finish finish,
                         bool compiled)
    : text_(std::move(text)),
      columns_(columns),
      finish_(std::move(finish)),
      may_compile_(compiled && text_.find(kMark) == std::string::npos) {
    for (const RowColumn& column : columns_)
        shown_.push_back(column.tag.occurs_in(text_));
}

RowTemplate::Pieces RowTemplate::compile() const {
    Pieces pieces = compile_as(kSampleRows[0]);
    // With another number the same pieces: no other number of the text was taken for the row's.
    return pieces == compile_as(kSampleRows[1]) ? pieces : Pieces();
}

// Replaces the tags by slots, one column after another as the step-by-step form does, finishes the text for a
// sample row and makes that row's number a slot too. Empty for a text that can't be compiled.
RowTemplate::Pieces RowTemplate::compile_as(std::int16_t sample_row) const {
    std::string text = text_;
    for (std::size_t i = 0; i < columns_.size(); ++i)
        columns_[i].tag.replace_in(text, kMark + std::to_string(i) + kMark);
    const auto marks = std::ranges::count(text, kMark);
    finish_(text, sample_row);
    // A button that was removed together with a value in it depends on that value, and what is left of a tag
    // could be completed by one.
    if (std::ranges::count(text, kMark) != marks || text.find("#~") != std::string::npos)
        return {};
    text = replace_all(text, std::to_string(sample_row - 1), std::string{kMark, 'r', kMark});

    Pieces pieces;
    std::size_t at = 0;
    for (std::size_t mark; (mark = text.find(kMark, at)) != std::string::npos;) {
        const std::size_t end = text.find(kMark, mark + 1);
        const std::string slot = text.substr(mark + 1, end - mark - 1);
        pieces.push_back({text.substr(at, mark - at), slot == "r" ? Piece::kRowIndex : std::stoi(slot)});
        at = end + 1;
    }
    pieces.push_back({text.substr(at), Piece::kEnd});
    return pieces;
}

void RowTemplate::append(std::string& out, std::int16_t row) {
    if (std::exchange(may_compile_, false))
        pieces_ = compile();
    if (!append_compiled(out, row))
        append_step_by_step(out, row);
}

// False, with nothing appended, when this row has to be replaced step by step.
bool RowTemplate::append_compiled(std::string& out, std::int16_t row) const {
    const std::size_t start = out.size();
    bool complete = !pieces_.empty();
    for (std::size_t i = 0; complete && i < pieces_.size(); ++i) {
        const Piece& piece = pieces_[i];
        out += piece.literal;
        if (piece.slot == Piece::kRowIndex)
            out += std::to_string(row - 1);
        else if (piece.slot != Piece::kEnd)
            complete = append_value(out, columns_[static_cast<std::size_t>(piece.slot)]);
    }
    // In a longer row the positions of its tags may pass the 16-bit limit.
    complete = complete && out.size() - start < kLastPosition;
    if (!complete)
        out.resize(start);
    return complete;
}

// False when the value could take part in a tag.
bool RowTemplate::append_value(std::string& out, const RowColumn& column) const {
    const std::size_t start = out.size();
    column.content.append(out);
    if (is_blank(std::string_view(out).substr(start)))
        out.replace(start, std::string::npos, "&nbsp;");
    return out.find_first_of("#~", start) == std::string::npos;
}

void RowTemplate::append_step_by_step(std::string& out, std::int16_t row) const {
    std::string text = text_;
    std::string value;
    for (const RowColumn& column : columns_) {
        if (!column.tag.occurs_in(text))
            continue;
        value.clear();
        column.content.append(value);
        column.tag.replace_in(text, shown_value(value), kMaxRowBytes);
    }
    finish_(text, row);
    out += text;
}

} // namespace tabrixdb
