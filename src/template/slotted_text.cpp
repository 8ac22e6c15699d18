#include "template/slotted_text.h"

#include <charconv>

namespace tabrixdb {

std::string SlottedText::mark(int slot) {
    return kMark + std::to_string(slot) + kMark;
}

std::optional<SlottedText::Mark> SlottedText::mark_at(std::string_view text, std::size_t at) {
    if (at >= text.size() || text[at] != kMark)
        return std::nullopt;
    Mark mark;
    const char* const last = text.data() + text.size();
    const auto [end, error] = std::from_chars(text.data() + at + 1, last, mark.slot);
    if (error != std::errc() || mark.slot < 0 || end == last || *end != kMark)
        return std::nullopt;
    mark.end = static_cast<std::size_t>(end - text.data()) + 1;
    return mark;
}

SlottedText::SlottedText(std::string_view marked) {
    std::size_t done = 0;
    for (std::size_t at = 0; (at = marked.find(kMark, at)) != std::string_view::npos;) {
        const std::optional<Mark> mark = mark_at(marked, at);
        if (!mark) {
            ++at;
            continue;
        }
        pieces_.push_back({std::string(marked.substr(done, at - done)), mark->slot});
        at = done = mark->end;
    }
    pieces_.push_back({std::string(marked.substr(done)), kNoSlot});
}

} // namespace tabrixdb
