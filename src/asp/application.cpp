#include "asp/application.h"

#include "asp/asp_error.h"
#include "automation/array.h"
#include "automation/interrupt.h"
#include "automation/member.h"

#include <chrono>

namespace tabrixdb::asp {

namespace {

constexpr std::string_view kObject = "Application object";
// How often a page that waits for a lock looks whether it has to stop.
constexpr std::chrono::milliseconds kLookUp{50};

// Arrays within arrays that can be kept: copying them takes stack.
constexpr int kMaxNesting = 32;

// A copy that shares nothing but texts, whose counts are atomic. Objects are refused (ASP 0197).
Variant unshared(const Variant& value, int depth = 0) {
    if (value.is_object() || depth > kMaxNesting)
        throw asp_error(197, kObject);
    if (!value.is_array())
        return value;
    Variant copy(Array::clone(*value.array()));
    for (Variant& element : copy.array()->elements())
        element = unshared(element, depth + 1);
    return copy;
}

bool stopped() {
    Interrupt* interrupt = Interrupt::current();
    return interrupt && interrupt->check();
}

} // namespace

std::unique_lock<std::mutex> ApplicationState::enter(const void* page) {
    std::unique_lock lock(mutex_);
    while (holder_ && holder_ != page) {
        freed_.wait_for(lock, kLookUp);
        if (stopped()) {
            lock.unlock();
            return lock;
        }
    }
    return lock;
}

Variant ApplicationState::read(const void*, const Variant& key) {
    const std::lock_guard lock(mutex_); // a lock keeps others from writing, not from reading
    return unshared(values_.get(values_.key_of(key)));
}

void ApplicationState::write(const void* page, const Variant& key, const Variant& value) {
    Variant copy = unshared(value);
    if (const auto lock = enter(page))
        values_.set(values_.key_of(key), std::move(copy));
}

void ApplicationState::remove(const void* page, const Variant& key) {
    if (const auto lock = enter(page))
        values_.remove(values_.key_of(key));
}

void ApplicationState::remove_all(const void* page) {
    if (const auto lock = enter(page))
        values_.clear();
}

std::vector<std::string> ApplicationState::keys() {
    const std::lock_guard lock(mutex_);
    return values_.keys();
}

std::string ApplicationState::key_of(const Variant& key_or_index) {
    const std::lock_guard lock(mutex_);
    return values_.key_of(key_or_index);
}

void ApplicationState::lock(const void* page) {
    if (const auto lock = enter(page)) {
        holder_ = page;
        ++depth_;
    }
}

void ApplicationState::unlock(const void* page) {
    const std::lock_guard lock(mutex_);
    if (holder_ != page || --depth_ > 0)
        return;
    holder_ = nullptr;
    freed_.notify_all();
}

void ApplicationState::release(const void* page) {
    const std::lock_guard lock(mutex_);
    if (holder_ != page)
        return;
    holder_ = nullptr;
    depth_ = 0;
    freed_.notify_all();
}

const ClassInfo& Application::class_info() const {
    static const ClassInfo info = [] {
        Member item = property<&Application::read, &Application::let_item>("Value", {"Key"});
        item.set = method<&Application::set_item>("", {"Key", "Value"}).get;
        return ClassInfo("IApplicationObject", "",
                         {std::move(item).as_default(), property<&Application::contents>("Contents"),
                          property<&Application::static_objects>("StaticObjects"),
                          method<&Application::lock>("Lock"), method<&Application::unlock>("UnLock")});
    }();
    return info;
}

std::unique_ptr<Enumerator> Application::enumerate() {
    return enumerate_texts(keys());
}

void Application::detach() {
    if (state_)
        state_->release(this);
    state_ = nullptr;
    visitor_ = nullptr;
}

void Application::set_own_value(std::string_view key, const Variant& value) {
    if (!visitor_)
        return set_value(key, value);
    SessionState* const session = visitor_(true);
    session->exports.set_value(session, key, unshared(value));
}

// The page that sends a picture reads it as everybody's values are read.
Variant Application::read(const Variant& key) {
    if (SessionState* const session = visitor_ ? visitor_(false) : nullptr)
        if (Variant own = session->exports.value(session, state().key_of(key)); !own.is_empty())
            return own;
    return state().read(this, key);
}

ApplicationState& Application::state() const {
    if (!state_)
        throw asp_error(115, kObject);
    return *state_;
}

} // namespace tabrixdb::asp
