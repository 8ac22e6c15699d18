#include "vbscript/program.h"

#include <algorithm>

namespace tabrixdb::vbscript {

std::int32_t Class::find(std::string_view member) const noexcept {
    const auto found = index.find(member);
    return found == index.end() ? -1 : found->second;
}

std::size_t Program::bytes() const noexcept {
    std::size_t bytes = sizeof(Program) + code.size() * sizeof(Instruction) +
                        operands.size() * sizeof(Operand) +
                        (constants.size() + links.size() + members.size()) * 64;
    for (const auto& text : source.texts)
        bytes += text->size();
    return bytes;
}

Place Program::place_of(std::uint32_t code_index) const noexcept {
    const auto after = std::ranges::upper_bound(marks, code_index, {}, &Mark::code);
    return after == marks.begin() ? Place() : std::prev(after)->place;
}

std::uint32_t Program::next_statement(std::uint32_t code_index) const noexcept {
    auto mark = std::ranges::upper_bound(marks, code_index, {}, &Mark::code);
    mark = std::find_if(mark, marks.end(), [](const Mark& at) { return at.is_statement; });
    return mark->code; // each procedure ends with a statement's mark for its Return
}

} // namespace tabrixdb::vbscript
