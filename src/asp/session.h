#pragma once

#include "asp/session_store.h"
#include "asp/values.h"
#include "platform/page.h"

#include <functional>

namespace tabrixdb::asp {

// The Session object of one page. The client's session is made when something is first written into it, so
// that a visitor who only reads costs nothing.
class Session final : public platform::Session, public ValueOwner {
public:
    // `state`: nullptr when the client has no session yet; `create` makes one.
    Session(SessionState* state, std::function<SessionState*()> create)
        : state_(state),
          create_(std::move(create)) {}

    const ClassInfo& class_info() const override;
    std::unique_ptr<Enumerator> enumerate() override;

    Variant value(std::string_view key) override;
    void set_value(std::string_view key, const Variant& value) override;

    // The page has ended: the object may live on, the session is not its any more.
    void detach() noexcept {
        state_ = nullptr;
        create_ = nullptr;
    }

private:
    SessionState& state(); // makes one; ASP 0115 without a page

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

    SessionState* state_;
    std::function<SessionState*()> create_;
};

} // namespace tabrixdb::asp
