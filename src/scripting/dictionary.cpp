#include "scripting/dictionary.h"

#include "automation/array.h"
#include "automation/conversions.h"
#include "automation/error.h"
#include "automation/member.h"

namespace tabrixdb::scripting {

namespace {

constexpr std::int32_t kErrorNoKey = 32811; // Element not found

class KeyEnumerator final : public Enumerator {
public:
    explicit KeyEnumerator(Variant keys) : keys_(std::move(keys)) {}

    bool next(Variant& item) override {
        if (at_ == keys_.array()->size())
            return false;
        item = keys_.array()->elements()[at_++];
        return true;
    }

private:
    Variant keys_;
    std::size_t at_ = 0;
};

} // namespace

const ClassInfo& Dictionary::class_info() const {
    static const ClassInfo info = [] {
        Member item = property<&Dictionary::item, &Dictionary::let_item>("Item", {"Key"});
        item.set = method<&Dictionary::set_item>("", {"Key", "Value"}).get;
        Member key{.name = "Key", .parameters = {"Key"}};
        key.let = method<&Dictionary::rename>("", {"Key", "NewKey"}).get;
        return ClassInfo(
            "Dictionary", "Scripting.Dictionary",
            {std::move(item).as_default(), std::move(key), method<&Dictionary::add>("Add", {"Key", "Item"}),
             method<&Dictionary::exists>("Exists", {"Key"}), method<&Dictionary::remove>("Remove", {"Key"}),
             method<&Dictionary::remove_all>("RemoveAll"), method<&Dictionary::keys>("Keys"),
             method<&Dictionary::items>("Items"), property<&Dictionary::count>("Count"),
             property<&Dictionary::compare_mode, &Dictionary::set_compare_mode>("CompareMode")});
    }();
    return info;
}

std::unique_ptr<Enumerator> Dictionary::enumerate() {
    return std::make_unique<KeyEnumerator>(keys());
}

// What tells keys apart: their kind, then their text.
std::string Dictionary::index_of(const Variant& key) const {
    if (key.is_array() || key.is_byte_array())
        throw Error(kErrorCall);
    if (key.is_object())
        return "o" + std::to_string(reinterpret_cast<std::uintptr_t>(key.object()));
    if (key.is_string())
        return "s" + (ignore_case_ ? fold(key.text()) : key.text().str());
    if (key.is_null())
        return "0";
    return "n" + number_text(to_double(key));
}

Variant& Dictionary::item_at(const Variant& key) {
    const auto [found, added] = index_.try_emplace(index_of(key));
    if (added)
        found->second = items_.insert(items_.end(), {key, Variant()});
    return found->second->value;
}

Variant Dictionary::item(const Variant& key) {
    return item_at(key);
}

void Dictionary::add(const Variant& key, const Variant& value) {
    if (exists(key))
        throw Error(kErrorDuplicateKey);
    item_at(key) = value;
}

bool Dictionary::exists(const Variant& key) const {
    return index_.contains(index_of(key));
}

void Dictionary::remove(const Variant& key) {
    const auto found = index_.find(index_of(key));
    if (found == index_.end())
        throw Error(kErrorNoKey, "Element not found");
    items_.erase(found->second);
    index_.erase(found);
}

void Dictionary::remove_all() {
    index_.clear();
    items_.clear();
}

void Dictionary::rename(const Variant& key, const Variant& new_key) {
    const auto found = index_.find(index_of(key));
    if (found == index_.end())
        throw Error(kErrorNoKey, "Element not found");
    if (exists(new_key))
        throw Error(kErrorDuplicateKey);
    const Items::iterator item = found->second;
    index_.erase(found);
    item->key = new_key;
    index_.emplace(index_of(new_key), item);
}

Variant Dictionary::keys() const {
    std::vector<Variant> keys;
    for (const Item& item : items_)
        keys.push_back(item.key);
    return make_ref<Array>(std::move(keys));
}

Variant Dictionary::items() const {
    std::vector<Variant> values;
    for (const Item& item : items_)
        values.push_back(item.value);
    return make_ref<Array>(std::move(values));
}

void Dictionary::set_compare_mode(std::int32_t mode) {
    if (!items_.empty() || mode < 0 || mode > 1) // the keys that are there were compared otherwise
        throw Error(kErrorCall);
    ignore_case_ = mode == 1;
}

} // namespace tabrixdb::scripting
