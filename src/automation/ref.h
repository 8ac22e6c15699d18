#pragma once

#include <cstddef>
#include <type_traits>
#include <utility>

namespace tabrixdb {

// Base of everything that is counted by reference: starts at zero, is destroyed when the last Ref lets
// go. The count is not atomic: an object belongs to one thread at a time (the thread of the request, or
// the one that holds the session's lock). What threads share at once (compiled pages, cached templates)
// is held by std::shared_ptr instead.
//
// The last release destroys at once; within a very deep chain of destructions (a list whose every node holds
// the next), at the latest when the outermost one ends.
class Counted {
public:
    Counted() noexcept = default;
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;

    void add_ref() const noexcept { ++references_; }

    void release() const noexcept {
        if (--references_ == 0)
            destroy();
    }

    // How many references are held now; for decisions such as "may I change it in place".
    std::size_t references() const noexcept { return references_; }

protected:
    virtual ~Counted() = default;

private:
    void destroy() const noexcept;

    mutable std::size_t references_ = 0;
};

// An owning pointer to a Counted object; empty means Nothing.
template <class T>
class Ref {
public:
    Ref() noexcept = default;

    Ref(std::nullptr_t) noexcept {}

    explicit Ref(T* object) noexcept : object_(object) {
        if (object_)
            object_->add_ref();
    }

    Ref(const Ref& other) noexcept : Ref(other.object_) {}

    Ref(Ref&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    template <class U>
    requires std::is_convertible_v<U*, T*> Ref(const Ref<U>& other)
    noexcept : Ref(static_cast<T*>(other.get())) {}

    ~Ref() {
        if (object_)
            object_->release();
    }

    Ref& operator=(Ref other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }

    T* get() const noexcept { return object_; }

    T& operator*() const noexcept { return *object_; }

    T* operator->() const noexcept { return object_; }

    explicit operator bool() const noexcept { return object_ != nullptr; }

    friend bool operator==(const Ref& a, const Ref& b) noexcept { return a.object_ == b.object_; }

private:
    T* object_ = nullptr;
};

template <class T, class... Arguments>
Ref<T> make_ref(Arguments&&... arguments) {
    return Ref<T>(new T(std::forward<Arguments>(arguments)...));
}

} // namespace tabrixdb
