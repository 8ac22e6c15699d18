#pragma once

#include "vbscript/program.h"

#include <string>
#include <unordered_map>
#include <vector>

namespace tabrixdb::vbscript {

// Appends to a Program under construction: instructions, marks, and the tables that they index, each entry
// once.
class CodeBuilder {
public:
    explicit CodeBuilder(Program& program) : program_(program) {}

    std::uint32_t here() const noexcept { return static_cast<std::uint32_t>(program_.code.size()); }

    // The index of the new instruction.
    std::uint32_t emit(Instruction instruction) {
        program_.code.push_back(instruction);
        return here() - 1;
    }

    // From here on the code belongs to `place`.
    void mark(Place place, bool is_statement);

    Operand constant(const Variant& value);
    Operand link(std::string_view name);   // Kind::Global
    Operand member(std::string_view name); // a number

    Operand cache() noexcept { return Operand::number(program_.caches++); }

    Operand list(const std::vector<Operand>& operands); // a number

    // Lets a jump go to the next instruction, or to `target`.
    void land(std::uint32_t jump) { land(jump, here()); }

    void land(std::uint32_t jump, std::uint32_t target);

private:
    Program& program_;
    std::unordered_map<std::string, Operand> constants_; // by type and bytes
    std::unordered_map<std::string, Operand, IgnoreCaseHash, IgnoreCaseEqual> links_;
    std::unordered_map<std::string, Operand, IgnoreCaseHash, IgnoreCaseEqual> members_;
};

// The slots of one frame while its code is made.
class FrameLayout {
public:
    Operand local() { return Operand(Operand::Kind::Local, slots_++); }

    Operand parameter_reference() { return Operand(Operand::Kind::Reference, references_++); }

    Operand temporary() { return take(Operand::Kind::Temporary, free_slots_, slots_); }

    // A temporary that is read more than once.
    Operand held() { return Operand(Operand::Kind::Local, temporary().index()); }

    Operand reference() { return take(Operand::Kind::Reference, free_references_, references_); }

    std::size_t in_use() const noexcept { return in_use_.size(); }

    // Gives back what was taken since `mark`.
    void release(std::size_t mark);

    std::uint32_t slots() const noexcept { return slots_; }

    std::uint32_t references() const noexcept { return references_; }

private:
    Operand take(Operand::Kind kind, std::vector<std::uint32_t>& free, std::uint32_t& total);

    std::uint32_t slots_ = 0;
    std::uint32_t references_ = 0;
    std::vector<std::uint32_t> free_slots_;
    std::vector<std::uint32_t> free_references_;
    std::vector<Operand> in_use_;
};

} // namespace tabrixdb::vbscript
