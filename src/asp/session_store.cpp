#include "asp/session_store.h"

#include "asp/random_id.h"

#include <utility>
#include <vector>

namespace tabrixdb::asp {

SessionStore::SessionStore(std::int32_t minutes, std::size_t max_sessions, const ExportLimits& limits)
    : minutes_(minutes),
      max_sessions_(max_sessions),
      exports_(limits) {
    std::uint32_t start = 0;
    fill_random(&start, sizeof start);
    next_number_ = static_cast<std::int32_t>(start % 1'000'000'000);
}

std::shared_ptr<SessionState> SessionStore::create() {
    std::string id = random_id();
    std::shared_ptr<SessionState> ended; // freed after the lock
    const std::lock_guard lock(mutex_);
    ended = make_room();
    next_number_ = next_number_ % 2'000'000'000 + 1;
    auto session = std::make_shared<SessionState>(std::move(id), next_number_, minutes_, exports_);
    const auto at = fresh_.insert(fresh_.end(), {session, Clock::now()});
    by_id_.emplace(session->id, at);
    return session;
}

std::shared_ptr<SessionState> SessionStore::make_room() {
    if (by_id_.size() < max_sessions_)
        return nullptr;
    List& list = fresh_.empty() ? returned_ : fresh_;
    std::shared_ptr<SessionState> ended = std::move(list.front().session);
    by_id_.erase(ended->id);
    list.pop_front();
    return ended;
}

std::shared_ptr<SessionState> SessionStore::create_passing() {
    return std::make_shared<SessionState>("", 0, minutes_, exports_);
}

std::shared_ptr<SessionState> SessionStore::find(std::string_view id) {
    const std::lock_guard lock(mutex_);
    const auto found = by_id_.find(id);
    if (found == by_id_.end())
        return nullptr;
    const List::iterator kept = found->second;
    returned_.splice(returned_.end(), list_of(*kept), kept);
    kept->returned = true;
    kept->last_used = Clock::now();
    return kept->session;
}

void SessionStore::renew(SessionState& session) {
    std::string id = random_id();
    const std::lock_guard lock(mutex_);
    const auto found = by_id_.find(session.id);
    if (found == by_id_.end()) { // it had to make room
        session.id = std::move(id);
        return;
    }
    const List::iterator kept = found->second;
    by_id_.erase(found); // its key lies in the ID
    session.id = std::move(id);
    by_id_.emplace(session.id, kept);
}

void SessionStore::touch(const SessionState& session) {
    const std::lock_guard lock(mutex_);
    const auto found = by_id_.find(session.id);
    if (found == by_id_.end())
        return;
    const List::iterator kept = found->second;
    List& list = list_of(*kept);
    list.splice(list.end(), list, kept);
    kept->last_used = Clock::now();
}

void SessionStore::remove(const SessionState& session) {
    const std::lock_guard lock(mutex_);
    const auto found = by_id_.find(session.id);
    if (found == by_id_.end())
        return;
    const List::iterator kept = found->second;
    by_id_.erase(found);
    list_of(*kept).erase(kept);
}

void SessionStore::sweep(Clock::time_point now) {
    std::vector<std::shared_ptr<SessionState>> ended; // freed after the lock, whatever their values are
    const std::lock_guard lock(mutex_);
    for (List* list : {&fresh_, &returned_}) {
        for (auto kept = list->begin(); kept != list->end();) {
            const bool over = now - kept->last_used >= std::chrono::minutes(kept->session->minutes);
            if (!over || kept->session->turnstile.busy()) {
                ++kept;
                continue;
            }
            by_id_.erase(kept->session->id);
            ended.push_back(std::move(kept->session));
            kept = list->erase(kept);
        }
    }
}

std::size_t SessionStore::size() const {
    const std::lock_guard lock(mutex_);
    return by_id_.size();
}

void SessionLease::release() {
    if (!session_)
        return;
    const std::shared_ptr<SessionState> session = std::exchange(session_, nullptr);
    if (session->abandoned)
        store_->remove(*session);
    else if (!overtaken_)
        store_->touch(*session);
    session->turnstile.leave();
}

} // namespace tabrixdb::asp
