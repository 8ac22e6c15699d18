#pragma once

#include "vbscript/machine_state.h"

namespace tabrixdb::vbscript {

// The pointers of a call's arguments, on a stack of the machine for the time of the call.
class CallArguments {
public:
    // The variables, temporaries and constants themselves: for callees that change none of them.
    CallArguments(ChunkStack<Variant*>& stack, const Frame& frame, const Operand* list, std::size_t count)
        : CallArguments(stack, count) {
        for (std::size_t i = 0; i < count; ++i)
            pointers_[i] = &frame[list[i]];
    }

    // The same for callees that may write to what they get: constants are copied to `copies` first.
    // `last` comes behind them when it is not null.
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

inline void empty_temporaries(const Frame& frame, const Operand* list, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        if (list[i].is_temporary())
            frame[list[i]] = Variant();
}

} // namespace tabrixdb::vbscript
