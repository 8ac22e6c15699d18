#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <vector>

namespace tabrixdb::vbscript {

// A stack of slots that never move: what is pushed stays where it is until it is popped, so pointers into it
// may be kept. Slots are value-initialized once; whoever pops leaves them as they were.
template <class T>
class ChunkStack {
public:
    struct Mark {
        std::size_t chunk = 0;
        std::size_t used = 0;
    };

    Mark mark() const noexcept { return at_; }

    // `count` slots side by side.
    T* push(std::size_t count) {
        while (at_.chunk < chunks_.size() && at_.used + count > chunks_[at_.chunk].size) {
            ++at_.chunk;
            at_.used = 0;
        }
        if (at_.chunk == chunks_.size()) {
            const std::size_t size = std::max(count, kChunk);
            chunks_.push_back({std::make_unique<T[]>(size), size});
        }
        T* const first = chunks_[at_.chunk].slots.get() + at_.used;
        at_.used += count;
        return first;
    }

    void pop(Mark to) noexcept { at_ = to; }

private:
    static constexpr std::size_t kChunk = 1024;

    struct Chunk {
        std::unique_ptr<T[]> slots;
        std::size_t size;
    };

    std::vector<Chunk> chunks_;
    Mark at_;
};

} // namespace tabrixdb::vbscript
