#pragma once

#include "asp/session_store.h"
#include "asp/values.h"
#include "platform/page.h"

namespace tabrixdb::asp {

// What the Session object asks of its page.
class SessionOwner {
public:
    virtual ~SessionOwner() = default;
    virtual SessionState* create_session() = 0;
    virtual void renew_session(SessionState& session) = 0;
};

// The Session object of one page. The client's session is made when something is first written into it, so
// that a visitor who only reads costs nothing.
class Session final : public platform::Session, public ValueOwner {
public:
    // `state`: nullptr when the client has no session yet. `owner`: nullptr for a page without sessions.
    Session(SessionState* state, SessionOwner* owner) : state_(state), owner_(owner) {}

    const ClassInfo& class_info() const override;
    std::unique_ptr<Enumerator> enumerate() override;

    Variant value(std::string_view key) override;
    void set_value(std::string_view key, const Variant& value) override;

    // The page has ended: the object may live on, the session is not its any more.
    void detach() noexcept {
        state_ = nullptr;
        owner_ = nullptr;
    }

private:
    void check_has_page() const; // ASP 0115 without one, or when it has no sessions
    SessionState& state();       // makes one

    Variant read(const Variant& key) override;
    void write(const Variant& key, Variant value) override;
    void remove(const Variant& key) override;
    void remove_all() override;
    std::vector<std::string> keys() override;
    std::string key_of(const Variant& key_or_index) override;

    void let_item(const Variant& key, const Variant& value) { write(key, value_of(value)); }

    void set_item(const Variant& key, const Variant& value) { write(key, value); }

    Ref<Contents> contents();

    Ref<Object> static_objects() const { return make_empty_collection(); }

    std::int32_t session_id() { return state().number; }

    std::int32_t timeout() { return state().minutes; }

    void set_timeout(std::int32_t minutes);
    std::int32_t lcid() const;
    void set_lcid(std::int32_t lcid);
    std::int32_t code_page() const;
    void set_code_page(std::int32_t code_page);
    void abandon();
    void renew();

    SessionState* state_;
    SessionOwner* owner_;
};

} // namespace tabrixdb::asp
