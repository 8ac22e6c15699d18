#pragma once

#include <deque>
#include <functional>
#include <mutex>

namespace tabrixdb::asp {

// Lets one request of a session through at a time, in their order. A request that has to wait is kept as
// a function, not as a thread.
class Turnstile {
public:
    // Calls `turn` when nobody is inside: at once, or from a later leave(), on that thread. false, and `turn`
    // is dropped, when kMaxWaiting wait already.
    bool enter(std::function<void()> turn);
    // Said once by each that was let in.
    void leave();

    bool busy() const;

private:
    // One browser opens six connections; more than this waiting is a client that does not wait for answers.
    static constexpr std::size_t kMaxWaiting = 64;

    mutable std::mutex mutex_;
    bool busy_ = false;
    std::deque<std::function<void()>> waiting_;
};

} // namespace tabrixdb::asp
