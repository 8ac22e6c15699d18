#include "template/slotted_text.h"

namespace tabrixdb {

std::string SlottedText::mark(int slot) {
    return kMark + std::to_string(slot) + kMark;
}

SlottedText::SlottedText(std::string_view marked) {
    std::size_t at = 0;
    for (std::size_t start; (start = marked.find(kMark, at)) != std::string_view::npos;) {
        const std::size_t end = marked.find(kMark, start + 1);
        const std::string slot(marked.substr(start + 1, end - start - 1));
        pieces_.push_back({std::string(marked.substr(at, start - at)), std::stoi(slot)});
        at = end + 1;
    }
    pieces_.push_back({std::string(marked.substr(at)), kNoSlot});
}

} // namespace tabrixdb
