#include "asp/turnstile.h"

namespace tabrixdb::asp {

bool Turnstile::enter(std::function<void()> turn) {
    {
        const std::lock_guard lock(mutex_);
        if (busy_) {
            if (waiting_.size() == kMaxWaiting)
                return false;
            waiting_.push_back(std::move(turn));
            return true;
        }
        busy_ = true;
    }
    turn();
    return true;
}

void Turnstile::leave() {
    std::function<void()> next;
    {
        const std::lock_guard lock(mutex_);
        if (waiting_.empty()) {
            busy_ = false;
            return;
        }
        next = std::move(waiting_.front());
        waiting_.pop_front();
    }
    next();
}

bool Turnstile::busy() const {
    const std::lock_guard lock(mutex_);
    return busy_;
}

} // namespace tabrixdb::asp
