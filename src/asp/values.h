#pragma once

#include "automation/object.h"
#include "automation/text.h"

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tabrixdb::asp {

// Named values in the order in which they were first set; keys ignore case. What Session and Application
// keep. Not thread-safe.
class Values {
public:
    // Empty for a key that is not there.
    Variant get(std::string_view key) const;
    void set(std::string_view key, Variant value);
    void remove(std::string_view key);

    void clear() noexcept {
        entries_.clear();
        index_.clear();
    }

    std::size_t size() const noexcept { return entries_.size(); }

    std::vector<std::string> keys() const;
    // The key that a script means: a text itself, a number the position from 1 on (Error 9 outside).
    std::string key_of(const Variant& key_or_index) const;

private:
    struct Entry {
        std::string key;
        Variant value;
    };

    std::vector<Entry> entries_;
    std::unordered_map<std::string, std::size_t, IgnoreCaseHash, IgnoreCaseEqual> index_;
};

// Session and Application, as their Contents sees them.
class ValueOwner {
public:
    virtual ~ValueOwner() = default;
    virtual Variant read(const Variant& key) = 0;
    virtual void write(const Variant& key, Variant value) = 0; // a value or a reference, as it stands
    virtual void remove(const Variant& key) = 0;
    virtual void remove_all() = 0;
    virtual std::vector<std::string> keys() = 0;
    virtual std::string key_of(const Variant& key_or_index) = 0;
};

// Session.Contents and Application.Contents: Item (default), Key, Count, Remove, RemoveAll, For Each.
class Contents final : public Object {
public:
    // `holder` keeps `owner` alive.
    Contents(Ref<Object> holder, ValueOwner& owner) : holder_(std::move(holder)), owner_(owner) {}

    const ClassInfo& class_info() const override;
    std::unique_ptr<Enumerator> enumerate() override;

private:
    Variant item(const Variant& key) { return owner_.read(key); }

    void let_item(const Variant& key, const Variant& value) { owner_.write(key, value_of(value)); }

    void set_item(const Variant& key, const Variant& value) { owner_.write(key, value); }

    std::string key(const Variant& index) { return owner_.key_of(index); }

    std::int32_t count() { return static_cast<std::int32_t>(owner_.keys().size()); }

    void remove(const Variant& key) { owner_.remove(key); }

    void remove_all() { owner_.remove_all(); }

    Ref<Object> holder_;
    ValueOwner& owner_;
};

// An empty collection with the members of Contents: StaticObjects, which this host has none of.
Ref<Object> make_empty_collection();

// For Each over texts.
std::unique_ptr<Enumerator> enumerate_texts(std::vector<std::string> texts);

// True for Response, Request, Session, Application and Server, which belong to one page.
bool is_page_object(const Variant& value) noexcept;

} // namespace tabrixdb::asp
