#include "vbscript/code_builder.h"

#include <cstring>

namespace tabrixdb::vbscript {

void CodeBuilder::mark(Place place, bool is_statement) {
    std::vector<Mark>& marks = program_.marks;
    if (!marks.empty() && marks.back().code == here()) {
        marks.back().place = place;
        marks.back().is_statement |= is_statement;
    } else {
        marks.push_back({here(), place, is_statement});
    }
}

Operand CodeBuilder::constant(const Variant& value) {
    std::string key(1, static_cast<char>(value.type()));
    if (value.is_string()) {
        key.append(value.text().view());
    } else if (!value.is_object() && !value.is_empty() && !value.is_null()) {
        const std::int64_t bits = value.type() == Type::Boolean ? value.boolean() : value.whole();
        char bytes[sizeof bits];
        std::memcpy(bytes, &bits, sizeof bits);
        key.append(bytes, sizeof bits);
    }
    const Operand next(Operand::Kind::Constant, program_.constants.size());
    const auto [entry, is_new] = constants_.try_emplace(std::move(key), next);
    if (is_new)
        program_.constants.push_back(value);
    return entry->second;
}

Operand CodeBuilder::link(std::string_view name) {
    const Operand next(Operand::Kind::Global, program_.links.size());
    const auto [entry, is_new] = links_.try_emplace(std::string(name), next);
    if (is_new)
        program_.links.push_back({std::string(name)});
    return entry->second;
}

Operand CodeBuilder::member(std::string_view name) {
    const auto [entry, is_new] =
        members_.try_emplace(std::string(name), Operand::number(program_.members.size()));
    if (is_new)
        program_.members.emplace_back(name);
    return entry->second;
}

Operand CodeBuilder::list(const std::vector<Operand>& operands) {
    const Operand first = Operand::number(program_.operands.size());
    program_.operands.insert(program_.operands.end(), operands.begin(), operands.end());
    return first;
}

void CodeBuilder::land(std::uint32_t jump, std::uint32_t target) {
    Instruction& instruction = program_.code[jump];
    const Operand to = Operand::number(target);
    switch (instruction.code) {
    case OpCode::Jump:
    case OpCode::LoopBack:
        instruction.a = to;
        break;
    case OpCode::JumpIf:
        instruction.b = to;
        break;
    case OpCode::ForStart:
        program_.operands[instruction.c.number() + 3] = to;
        break;
    case OpCode::ForEachStart:
        program_.operands[instruction.c.number() + 1] = to;
        break;
    default:
        instruction.c = to;
    }
}

Operand FrameLayout::take(Operand::Kind kind, std::vector<std::uint32_t>& free, std::uint32_t& total) {
    std::uint32_t index = total;
    if (free.empty()) {
        ++total;
    } else {
        index = free.back();
        free.pop_back();
    }
    return in_use_.emplace_back(kind, index);
}

void FrameLayout::release(std::size_t mark) {
    for (; in_use_.size() > mark; in_use_.pop_back()) {
        const Operand last = in_use_.back();
        (last.is_temporary() ? free_slots_ : free_references_).push_back(last.index());
    }
}

} // namespace tabrixdb::vbscript
