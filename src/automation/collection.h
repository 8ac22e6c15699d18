#pragma once

#include "automation/object.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tabrixdb {

// An insertion-ordered collection whose items can be looked up by a string key (ignoring case) or by a
// 1-based index. Seen by pages as Count, Item (the default member), Add, Remove and For Each.
class Collection : public Object {
public:
    const ClassInfo& class_info() const override;

    std::int32_t count() const noexcept { return static_cast<std::int32_t>(items_.size()); }

    // Adds at the end. Error 457 when the key is taken; an empty key means none.
    void add(Variant item, std::string_view key = {});

    bool contains(std::string_view key) const { return keys_.find(key) != keys_.end(); }

    // By key; Error 5 when there is none.
    const Variant& item(std::string_view key) const { return items_[position(key)].value; }

    // By 1-based index; Error 9 outside.
    const Variant& item(std::int32_t index) const { return items_[position(index)].value; }

    // The key of the item at a 1-based index; "" when it has none. Error 9 outside.
    const std::string& key(std::int32_t index) const { return items_[position(index)].key; }

    // The object under a key or index, as T; Error 13 when it is something else.
    template <class T, class Key>
    Ref<T> get(Key key) const {
        const Variant& value = item(key);
        T* object = value.is_object() ? dynamic_cast<T*>(value.object()) : nullptr;
        if (!object)
            raise_mismatch();
        return Ref<T>(object);
    }

    void remove(std::string_view key) { remove_at(position(key)); }

    void remove(std::int32_t index) { remove_at(position(index)); }

    std::unique_ptr<Enumerator> enumerate() override;

private:
    struct Item {
        Variant value;
        std::string key;
    };

    std::size_t position(std::string_view key) const;
    std::size_t position(std::int32_t index) const;
    std::size_t position_of(const Variant& key_or_index) const;
    void remove_at(std::size_t position);
    [[noreturn]] static void raise_mismatch();

    // The members as pages call them.
    Variant item_by(const Variant& key_or_index) const { return items_[position_of(key_or_index)].value; }

    void add_item(const Variant& item, const Variant& key, const Variant& before, const Variant& after);

    void remove_by(const Variant& key_or_index) { remove_at(position_of(key_or_index)); }

    std::vector<Item> items_;
    std::unordered_map<std::string, std::size_t, IgnoreCaseHash, IgnoreCaseEqual> keys_;
};

} // namespace tabrixdb
