#include "automation/ref.h"

#include <cstdint>

namespace tabrixdb {

namespace {

// Destructors within destructors up to here, well within any thread's stack; a script can chain objects
// and arrays without end.
constexpr int kMaxNesting = 100;

thread_local int nesting = 0;
// What is to be destroyed when the nesting is back at zero: a list through the objects' own counters, which
// nobody needs any more. It takes no memory, which may be short at that time.
thread_local std::size_t waiting = 0;

} // namespace

void Counted::destroy() const noexcept {
    if (nesting == kMaxNesting) {
        references_ = waiting;
        waiting = reinterpret_cast<std::uintptr_t>(this);
        return;
    }
    ++nesting;
    delete this;
    if (nesting == 1) {
        while (waiting != 0) {
            const auto* next = reinterpret_cast<const Counted*>(waiting);
            waiting = next->references_;
            delete next;
        }
    }
    --nesting;
}

} // namespace tabrixdb
