#include "grid/row_template.h"

#include "automation/text.h"
#include "template/positions.h"

#include <algorithm>
#include <utility>

namespace tabrixdb {

namespace {

// Two places of rows, by which the row's number is found again in what the buttons became.
constexpr std::int16_t kSampleRows[] = {32749, 31337};

// Columns have the slots from 1 on.
constexpr int kRowIndexSlot = 0;

bool is_blank(std::string_view value) {
    return value.find_first_not_of(' ') == std::string_view::npos;
}

} // namespace

std::string_view shown_value(std::string_view value) {
    return is_blank(value) ? "&nbsp;" : value;
}

RowTemplate::RowTemplate(std::string text, const std::vector<ColumnTag>& tags, RowContent& content,
                         RowFilling filling)
    : text_(std::move(text)),
      tags_(tags),
      content_(content),
      trusts_values_(filling.trusts_values),
      may_compile_(filling.compiled && text_.find(SlottedText::kMark) == std::string::npos) {
    for (std::size_t i = 0; i < tags_.size(); ++i) {
        shown_.push_back(tags_[i].occurs_in(text_));
        may_compile_ = may_compile_ && (!shown_[i] || content_.is_plain(i));
    }
}

SlottedText RowTemplate::compile() const {
    SlottedText compiled = compile_as(kSampleRows[0]);
    // With another number the same text: no other number of the template was taken for the row's.
    return compiled == compile_as(kSampleRows[1]) ? compiled : SlottedText();
}

// Replaces the tags by slots, one column after another as the step-by-step form does, finishes the text for a
// sample row and makes that row's number a slot too. Empty for a text that can't be compiled.
SlottedText RowTemplate::compile_as(std::int16_t sample_row) const {
    std::string text = text_;
    for (std::size_t i = 0; i < tags_.size(); ++i)
        tags_[i].replace_in(text, SlottedText::mark(static_cast<int>(i) + 1));
    const auto marks = std::ranges::count(text, SlottedText::kMark);
    content_.finish(text, sample_row);
    // A button that was removed together with a value in it depends on that value, and what is left of a tag
    // could be completed by one.
    if (std::ranges::count(text, SlottedText::kMark) != marks || text.find("#~") != std::string::npos)
        return {};
    return SlottedText(replace_all(text, std::to_string(sample_row - 1), SlottedText::mark(kRowIndexSlot)));
}

void RowTemplate::append(std::string& out, std::int16_t row) {
    if (std::exchange(may_compile_, false))
        compiled_ = compile();
    if (!append_compiled(out, row))
        append_step_by_step(out, row);
}

// False, with nothing appended, when this row has to be replaced step by step.
bool RowTemplate::append_compiled(std::string& out, std::int16_t row) const {
    const std::size_t start = out.size();
    const bool complete = !compiled_.empty() && compiled_.append(out, [&](int slot, std::string& to) {
        if (slot != kRowIndexSlot)
            return append_value(to, static_cast<std::size_t>(slot) - 1, row);
        to += std::to_string(row - 1);
        return true;
    });
    // In a longer row the positions of tags in values may pass the 16-bit limit.
    if (complete && trusts_values_ && out.size() - start >= kLastPosition) {
        out.resize(start);
        return false;
    }
    return complete;
}

// False when the value is trusted and could take part in a tag.
bool RowTemplate::append_value(std::string& out, std::size_t column, std::int16_t row) const {
    const std::size_t start = out.size();
    content_.append_value(out, column, row, nullptr);
    if (is_blank(std::string_view(out).substr(start)))
        out.replace(start, std::string::npos, "&nbsp;");
    return !trusts_values_ || out.find_first_of("#~", start) == std::string::npos;
}

std::string RowTemplate::filled(std::int16_t row, HeldValues& held) const {
    std::string text = held.hold_marks(text_);
    std::string value;
    for (std::size_t i = 0; i < tags_.size(); ++i) {
        if (!tags_[i].occurs_in(text))
            continue;
        value.clear();
        content_.append_value(value, i, row, &held);
        tags_[i].replace_in(text, shown_value(value));
    }
    return text;
}

void RowTemplate::append_step_by_step(std::string& out, std::int16_t row) const {
    HeldValues held(trusts_values_);
    std::string text = filled(row, held);
    content_.finish(text, row);
    held.release(text);
    out += text;
}

} // namespace tabrixdb
