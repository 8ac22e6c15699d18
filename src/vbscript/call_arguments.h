#pragma once

#include "vbscript/instance.h"
#include "vbscript/machine_state.h"

namespace tabrixdb::vbscript {

// The pointers of a call's arguments, on a stack of the machine for the time of the call.
class CallArguments {
public:
    enum class Of : std::uint8_t { Function };

    // The variables, temporaries and constants themselves, for functions that change none of them. Where
    // reading one may run script, they are copied to `copies`, so that it changes nothing for the others.
    CallArguments(Of, ChunkStack<Variant*>& stack, ChunkStack<Variant>& copies, const Frame& frame,
                  const Operand* list, std::size_t count)
        : CallArguments(stack, count) {
        copies_ = &copies;
        copies_mark_ = copies.mark();
        const bool may_run_script = Instance::any_alive();
        for (std::size_t i = 0; i < count; ++i) {
            Variant& value = frame[list[i]];
            pointers_[i] = may_run_script ? copy(value) : &value;
        }
    }

    // For callees that may write to what they get: constants are copied to `copies`. `last` comes behind
    // them when it is not null.
    CallArguments(ChunkStack<Variant*>& stack, ChunkStack<Variant>& copies, const Frame& frame,
                  const Operand* list, std::size_t count, Variant* last = nullptr)
        : CallArguments(stack, count + (last != nullptr)) {
        copies_ = &copies;
        copies_mark_ = copies.mark();
        for (std::size_t i = 0; i < count; ++i) {
            Variant& value = frame[list[i]];
            pointers_[i] = list[i].kind() == Operand::Kind::Constant ? copy(value) : &value;
        }
        if (last)
            pointers_[count] = last;
    }

    ~CallArguments() {
        for (std::size_t i = 0; i < copied_; ++i)
            *pointers_to_copies_[i] = Variant();
        if (copies_)
            copies_->pop(copies_mark_);
        stack_.pop(mark_);
    }

    CallArguments(const CallArguments&) = delete;
    CallArguments& operator=(const CallArguments&) = delete;

    Arguments span() const noexcept { return {pointers_, count_}; }

private:
    CallArguments(ChunkStack<Variant*>& stack, std::size_t count)
        : stack_(stack),
          mark_(stack.mark()),
          count_(count),
          pointers_(stack.push(2 * count)),
          pointers_to_copies_(pointers_ + count) {}

    Variant* copy(const Variant& value) {
        Variant* const slot = copies_->push(1);
        *slot = value;
        pointers_to_copies_[copied_++] = slot;
        return slot;
    }

    ChunkStack<Variant*>& stack_;
    ChunkStack<Variant*>::Mark mark_;
    ChunkStack<Variant>* copies_ = nullptr;
    ChunkStack<Variant>::Mark copies_mark_;
    std::size_t count_;
    std::size_t copied_ = 0;
    Variant** pointers_;
    Variant** pointers_to_copies_;
};

// Where reading a value may run script, what an object in C++ was given stays alive for the time of the call,
// whatever that script does to the variables.
class HeldValues {
public:
    HeldValues(ChunkStack<Variant>& stack, Arguments arguments)
        : stack_(stack),
          mark_(stack.mark()),
          count_(Instance::any_alive() ? arguments.size() : 0),
          values_(stack.push(count_)) {
        for (std::size_t i = 0; i < count_; ++i)
            values_[i] = *arguments[i];
    }

    ~HeldValues() {
        for (std::size_t i = 0; i < count_; ++i)
            values_[i] = Variant();
        stack_.pop(mark_);
    }

    HeldValues(const HeldValues&) = delete;
    HeldValues& operator=(const HeldValues&) = delete;

private:
    ChunkStack<Variant>& stack_;
    ChunkStack<Variant>::Mark mark_;
    std::size_t count_;
    Variant* values_;
};

inline void empty_temporaries(const Frame& frame, const Operand* list, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        if (list[i].is_temporary())
            frame[list[i]] = Variant();
}

} // namespace tabrixdb::vbscript
