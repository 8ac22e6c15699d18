#include "automation/conversions.h"
#include "automation/operators.h"
#include "vbscript/machine_state.h"

namespace tabrixdb::vbscript {

namespace {

// The buffer for joining is kept from one use to the next, up to this many bytes.
constexpr std::size_t kKeptScratch = std::size_t{1} << 20;

// Byte strings, and texts that begin with what may be the second half of a character, are joined two at a
// time by the general operator.
bool joins_plainly(const Variant& value) noexcept {
    if (!value.is_string())
        return !value.is_object() && !value.is_array() && !value.is_byte_array();
    const std::string_view text = value.text().view();
    return !value.text().is_bytes() && (text.empty() || static_cast<unsigned char>(text.front()) != 0xED);
}

// Objects that only the operands hold (a field of a record, ...) give way to their values.
void read_objects(const Frame& frame, const Operand* list, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        if (list[i].is_temporary() && frame[list[i]].is_object())
            frame[list[i]] = value_of(frame[list[i]]);
}

} // namespace

// The operands' texts one behind the other; each joins plainly.
Text Machine::State::join(const Frame& frame, const Operand* list, std::size_t count) {
    scratch_.clear();
    for (std::size_t i = 0; i < count; ++i) {
        const Variant& value = frame[list[i]];
        if (!value.is_string())
            append_text(scratch_, value);
        else if (scratch_.size() + value.text().size() > kMaxTextBytes)
            throw Error(14);
        else
            scratch_.append(value.text().view());
    }
    Text joined(scratch_);
    if (scratch_.capacity() > kKeptScratch)
        scratch_ = std::string();
    return joined;
}

void Machine::State::concatenate(Frame& frame, const Instruction& instruction) {
    const Operand* const list = frame.list(instruction.c);
    read_objects(frame, list, instruction.count);
    bool plainly = true;
    bool all_null = true;
    for (std::size_t i = 0; i < instruction.count; ++i) {
        const Variant& value = frame[list[i]];
        plainly = plainly && joins_plainly(value);
        all_null = all_null && value.is_null();
    }
    if (all_null) {
        frame[instruction.a] = Variant::null();
    } else if (plainly) {
        frame[instruction.a] = Variant(join(frame, list, instruction.count));
    } else {
        Variant result = value_of(frame[list[0]]);
        for (std::size_t i = 1; i < instruction.count; ++i)
            result = tabrixdb::concatenate(std::move(result), frame[list[i]]);
        frame[instruction.a] = std::move(result);
    }
}

void Machine::State::append(Frame& frame, const Instruction& instruction) {
    const Operand* const list = frame.list(instruction.c);
    Variant& target = frame[instruction.a];
    if (instruction.b.exists()) { // what the target held before the operands were read
        Variant before = std::exchange(frame[instruction.b], Variant());
        if (!identical(target, before))
            target = std::move(before);
    }
    read_objects(frame, list, instruction.count);
    bool plainly = target.is_string() && !target.text().is_bytes();
    bool only_texts = true;
    for (std::size_t i = 0; i < instruction.count; ++i) {
        const Variant& value = frame[list[i]];
        plainly = plainly && joins_plainly(value) && &value != &target;
        only_texts = only_texts && value.is_string();
    }
    if (!plainly) {
        Variant result = value_of(target);
        for (std::size_t i = 0; i < instruction.count; ++i)
            result = tabrixdb::concatenate(std::move(result), frame[list[i]]);
        target = std::move(result);
    } else if (only_texts) {
        for (std::size_t i = 0; i < instruction.count; ++i)
            target.text().append(frame[list[i]].text());
    } else {
        target.text().append(join(frame, list, instruction.count));
    }
}

} // namespace tabrixdb::vbscript
