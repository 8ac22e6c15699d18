#include "automation/collection.h"

#include "automation/member.h"

#include <algorithm>

namespace tabrixdb {

namespace {

// The standard text with the key that it is about.
[[noreturn]] void raise_about(std::int32_t number, std::string_view key) {
    throw Error(number, std::string(error_text(number)) + ": '" + std::string(key) + "'");
}

// Walks by position, so that a page may add or remove while it walks.
class CollectionEnumerator final : public Enumerator {
public:
    explicit CollectionEnumerator(Ref<Collection> collection) : collection_(std::move(collection)) {}

    bool next(Variant& item) override {
        if (at_ >= collection_->count())
            return false;
        item = collection_->item(++at_);
        return true;
    }

private:
    Ref<Collection> collection_;
    std::int32_t at_ = 0;
};

} // namespace

const ClassInfo& Collection::class_info() const {
    static const ClassInfo info("Collection", "",
                                {
                                    property<&Collection::item_by>("Item", {"Index"}).as_default(),
                                    property<&Collection::count>("Count"),
                                    method<&Collection::add_item>("Add", {"Item",
                                                                          {"Key", Variant::missing()},
                                                                          {"Before", Variant::missing()},
                                                                          {"After", Variant::missing()}}),
                                    method<&Collection::remove_by>("Remove", {"Index"}),
                                });
    return info;
}

void Collection::add(Variant item, std::string_view key) {
    if (!key.empty() && !keys_.try_emplace(std::string(key), items_.size()).second)
        raise_about(kErrorDuplicateKey, key);
    items_.push_back({std::move(item), std::string(key)});
}

void Collection::add_item(const Variant& item, const Variant& key, const Variant& before,
                          const Variant& after) {
    const std::string name = key.is_missing() ? std::string() : to_text(key).str();
    if (before.is_missing() && after.is_missing())
        return add(item, name);
    const std::size_t at = after.is_missing() ? position_of(before) : position_of(after) + 1;
    add(item, name);
    std::rotate(items_.begin() + static_cast<std::ptrdiff_t>(at), items_.end() - 1, items_.end());
    for (std::size_t i = at; i < items_.size(); ++i)
        if (!items_[i].key.empty())
            keys_[items_[i].key] = i;
}

std::size_t Collection::position(std::string_view key) const {
    const auto found = keys_.find(key);
    if (found == keys_.end())
        raise_about(kErrorCall, key);
    return found->second;
}

std::size_t Collection::position(std::int32_t index) const {
    if (index < 1 || index > count())
        throw Error(kErrorSubscript);
    return static_cast<std::size_t>(index - 1);
}

std::size_t Collection::position_of(const Variant& key_or_index) const {
    const Variant value = value_of(key_or_index);
    return value.is_string() ? position(value.text().view()) : position(to_long(value));
}

void Collection::remove_at(std::size_t position) {
    if (!items_[position].key.empty())
        keys_.erase(items_[position].key);
    items_.erase(items_.begin() + static_cast<std::ptrdiff_t>(position));
    for (std::size_t i = position; i < items_.size(); ++i)
        if (!items_[i].key.empty())
            keys_[items_[i].key] = i;
}

void Collection::raise_mismatch() {
    throw Error(kErrorMismatch);
}

std::unique_ptr<Enumerator> Collection::enumerate() {
    return std::make_unique<CollectionEnumerator>(Ref<Collection>(this));
}

} // namespace tabrixdb
