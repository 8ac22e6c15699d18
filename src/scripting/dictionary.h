#pragma once

#include "automation/object.h"

#include <list>
#include <string>
#include <unordered_map>

namespace tabrixdb::scripting {

// Scripting.Dictionary: values under keys, in the order in which they were added. Keys are texts or numbers;
// a number is another key than its text. Asking for a key that is not there adds it, with Empty.
class Dictionary final : public Object {
public:
    const ClassInfo& class_info() const override;
    std::unique_ptr<Enumerator> enumerate() override;

private:
    struct Item {
        Variant key;
        Variant value;
    };

    using Items = std::list<Item>;

    Variant item(const Variant& key);

    void let_item(const Variant& key, const Variant& value) { item_at(key) = value_of(value); }

    void set_item(const Variant& key, const Variant& value) { item_at(key) = value; }

    void add(const Variant& key, const Variant& value);
    bool exists(const Variant& key) const;
    void remove(const Variant& key);
    void remove_all();
    void rename(const Variant& key, const Variant& new_key);
    Variant keys() const;
    Variant items() const;

    std::int32_t count() const { return static_cast<std::int32_t>(items_.size()); }

    std::int32_t compare_mode() const { return ignore_case_ ? 1 : 0; }

    void set_compare_mode(std::int32_t mode);

    Variant& item_at(const Variant& key);
    std::string index_of(const Variant& key) const;

    Items items_;
    std::unordered_map<std::string, Items::iterator> index_;
    bool ignore_case_ = false;
};

} // namespace tabrixdb::scripting
