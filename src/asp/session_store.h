#pragma once

#include "asp/exports.h"
#include "asp/turnstile.h"
#include "asp/values.h"

#include <chrono>
#include <cstdint>
#include <list>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace tabrixdb::asp {

using Clock = std::chrono::steady_clock;

// The name of the cookie that carries a session's ID.
inline constexpr std::string_view kSessionCookie = "TABRIXSESSION";
// Longest Session.Timeout, in minutes: a day, as on the platform.
inline constexpr std::int32_t kMaxSessionMinutes = 1440;

// What a session keeps between requests. Used by whoever is inside its turnstile; `id` is changed by the
// store alone.
struct SessionState {
    // `site_exports` outlives this.
    SessionState(std::string session_id, std::int32_t session_number, std::int32_t session_minutes,
                 Exports& site_exports)
        : id(std::move(session_id)),
          number(session_number),
          minutes(session_minutes),
          exports(site_exports) {}

    ~SessionState() { exports.drop(this); }

    SessionState(const SessionState&) = delete;
    SessionState& operator=(const SessionState&) = delete;

    std::string id;            // the cookie's value: a secret of the client
    const std::int32_t number; // Session.SessionID, which pages may show
    Values values;
    std::int32_t minutes;
    std::optional<std::uint32_t> lcid;
    std::optional<std::uint32_t> code_page;
    bool abandoned = false;
    Exports& exports; // of the site; this session owns some of them, also outside of its turnstile
    Turnstile turnstile;
};

// The sessions of a site, in memory. Thread-safe.
class SessionStore {
public:
    // `minutes`: Session.Timeout of new sessions.
    explicit SessionStore(std::int32_t minutes, std::size_t max_sessions = kMaxSessions,
                          const ExportLimits& limits = {});

    // A new session with 128 random bits for an ID. When there are too many, one that its client never came
    // back to goes, otherwise the one that was not used for longest.
    std::shared_ptr<SessionState> create();
    // A session that no client ever names, for as long as somebody holds it.
    std::shared_ptr<SessionState> create_passing();
    // The session that a client names, which counts as its use; nullptr when there is none.
    std::shared_ptr<SessionState> find(std::string_view id);
    // Gives the session another ID; from now on the old one names none. Called inside its turnstile.
    void renew(SessionState& session);
    // The session was used until now.
    void touch(const SessionState& session);
    void remove(const SessionState& session);
    // Ends the sessions that were not used for their minutes.
    void sweep(Clock::time_point now);

    std::size_t size() const;

    // Sessions kept at once.
    static constexpr std::size_t kMaxSessions = 10'000;

private:
    struct Kept {
        std::shared_ptr<SessionState> session;
        Clock::time_point last_used;
        bool returned = false; // its client has sent the ID back
    };

    using List = std::list<Kept>; // the longest unused first

    List& list_of(const Kept& kept) { return kept.returned ? returned_ : fresh_; }

    std::shared_ptr<SessionState> make_room();

    const std::int32_t minutes_;
    const std::size_t max_sessions_;
    Exports exports_; // outlives the sessions
    mutable std::mutex mutex_;
    List fresh_, returned_;
    std::unordered_map<std::string_view, List::iterator> by_id_; // keys lie in the sessions
    std::int32_t next_number_;
};

// One request's turn in a session: the session is left when this ends.
class SessionLease {
public:
    SessionLease() = default;

    // The turnstile was entered by the caller. `id`: with which the session was asked for. Whoever waited
    // for his turn while the session got another ID may not know that, so that he has no session.
    SessionLease(SessionStore& store, std::shared_ptr<SessionState> session, std::string_view id)
        : store_(&store),
          session_(std::move(session)),
          overtaken_(session_->id != id) {}

    SessionLease(SessionLease&&) = default;

    SessionLease& operator=(SessionLease&& other) noexcept {
        release();
        store_ = other.store_;
        session_ = std::move(other.session_);
        overtaken_ = other.overtaken_;
        return *this;
    }

    ~SessionLease() { release(); }

    // nullptr without a session, and for one that was abandoned or renewed while this waited for its turn.
    SessionState* session() const {
        return session_ && !overtaken_ && !session_->abandoned ? session_.get() : nullptr;
    }

    // Whether the session was renewed while this waited.
    bool overtaken() const { return overtaken_; }

    // The same, to be kept.
    std::shared_ptr<SessionState> shared() const { return session() ? session_ : nullptr; }

    // Leaves the session; an abandoned one ends.
    void release();

private:
    SessionStore* store_ = nullptr;
    std::shared_ptr<SessionState> session_;
    bool overtaken_ = false;
};

} // namespace tabrixdb::asp
