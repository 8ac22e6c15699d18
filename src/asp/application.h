#pragma once

#include "asp/session_store.h"
#include "asp/values.h"
#include "platform/page.h"

#include <condition_variable>
#include <functional>
#include <mutex>

namespace tabrixdb::asp {

// What all pages of a site share. Values only: an object would be used by several threads at once. Arrays
// are copied on their way in and out.
class ApplicationState {
public:
    // `page` is whoever asks; a lock that another page holds is waited for until the waiting page's Interrupt
    // stops it.
    Variant read(const void* page, const Variant& key);
    void write(const void* page, const Variant& key, const Variant& value);
    void remove(const void* page, const Variant& key);
    void remove_all(const void* page);
    std::vector<std::string> keys();
    std::string key_of(const Variant& key_or_index);

    void lock(const void* page);
    void unlock(const void* page);
    // The page has ended: what it locked is free.
    void release(const void* page);

private:
    // The mutex, once no other page holds the lock; no ownership when the page was stopped meanwhile.
    std::unique_lock<std::mutex> enter(const void* page);

    std::mutex mutex_;
    std::condition_variable freed_;
    Values values_;
    const void* holder_ = nullptr;
    int depth_ = 0;
};

// The Application object of one page.
class Application final : public platform::Application, public ValueOwner {
public:
    // The session of the page's client; one is made when there is none yet and `create` says so, otherwise
    // nullptr.
    using Visitor = std::function<SessionState*(bool create)>;

    // `visitor`: empty when what pages export is everybody's.
    Application(ApplicationState& state, Visitor visitor) : state_(&state), visitor_(std::move(visitor)) {}

    const ClassInfo& class_info() const override;
    std::unique_ptr<Enumerator> enumerate() override;

    Variant value(std::string_view key) override { return read(Variant(key)); }

    void set_value(std::string_view key, const Variant& value) override { write(Variant(key), value); }

    void set_own_value(std::string_view key, const Variant& value) override;

    void lock() override { state().lock(this); }

    void unlock() override { state().unlock(this); }

    // The page has ended: its locks are freed, and the object can do nothing more.
    void detach();

private:
    ApplicationState& state() const;

    Variant read(const Variant& key) override;

    void write(const Variant& key, Variant value) override { state().write(this, key, value); }

    void remove(const Variant& key) override { state().remove(this, key); }

    void remove_all() override { state().remove_all(this); }

    std::vector<std::string> keys() override { return state().keys(); }

    std::string key_of(const Variant& key_or_index) override { return state().key_of(key_or_index); }

    void let_item(const Variant& key, const Variant& value) { write(key, value_of(value)); }

    void set_item(const Variant& key, const Variant& value) { write(key, value); }

    Ref<Contents> contents() { return make_ref<Contents>(Ref<Object>(this), *this); }

    Ref<Object> static_objects() const { return make_empty_collection(); }

    ApplicationState* state_;
    Visitor visitor_;
};

} // namespace tabrixdb::asp
