#include "asp/values.h"

#include "automation/collection.h"
#include "automation/conversions.h"
#include "automation/error.h"
#include "automation/member.h"
#include "platform/page.h"

namespace tabrixdb::asp {

Variant Values::get(std::string_view key) const {
    const auto found = index_.find(key);
    return found == index_.end() ? Variant() : entries_[found->second].value;
}

void Values::set(std::string_view key, Variant value) {
    const auto [at, added] = index_.try_emplace(std::string(key), entries_.size());
    if (added)
        entries_.push_back({std::string(key), std::move(value)});
    else
        entries_[at->second].value = std::move(value);
}

void Values::remove(std::string_view key) {
    const auto found = index_.find(key);
    if (found == index_.end())
        return;
    const std::size_t position = found->second;
    index_.erase(found);
    entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(position));
    for (auto& [name, at] : index_)
        at -= at > position;
}

std::vector<std::string> Values::keys() const {
    std::vector<std::string> keys;
    keys.reserve(entries_.size());
    for (const Entry& entry : entries_)
        keys.push_back(entry.key);
    return keys;
}

std::string Values::key_of(const Variant& key_or_index) const {
    if (!key_or_index.is_number())
        return to_text(key_or_index).str();
    const std::int32_t index = to_long(key_or_index);
    if (index < 1 || static_cast<std::size_t>(index) > entries_.size())
        throw Error(kErrorSubscript);
    return entries_[static_cast<std::size_t>(index) - 1].key;
}

const ClassInfo& Contents::class_info() const {
    static const ClassInfo info = [] {
        Member item = property<&Contents::item, &Contents::let_item>("Item", {"Key"});
        item.set = method<&Contents::set_item>("", {"Key", "Value"}).get;
        return ClassInfo("IVariantDictionary", "",
                         {std::move(item).as_default(), property<&Contents::key>("Key", {"Index"}),
                          property<&Contents::count>("Count"), method<&Contents::remove>("Remove", {"Key"}),
                          method<&Contents::remove_all>("RemoveAll")});
    }();
    return info;
}

std::unique_ptr<Enumerator> Contents::enumerate() {
    return enumerate_texts(owner_.keys());
}

Ref<Object> make_empty_collection() {
    return make_ref<Collection>();
}

namespace {

class TextEnumerator final : public Enumerator {
public:
    explicit TextEnumerator(std::vector<std::string> texts) : texts_(std::move(texts)) {}

    bool next(Variant& item) override {
        if (at_ == texts_.size())
            return false;
        item = Variant(texts_[at_++]);
        return true;
    }

private:
    std::vector<std::string> texts_;
    std::size_t at_ = 0;
};

} // namespace

std::unique_ptr<Enumerator> enumerate_texts(std::vector<std::string> texts) {
    return std::make_unique<TextEnumerator>(std::move(texts));
}

bool is_page_object(const Variant& value) noexcept {
    const Object* object = value.is_object() ? value.object() : nullptr;
    return dynamic_cast<const platform::Response*>(object) ||
           dynamic_cast<const platform::Request*>(object) || dynamic_cast<const platform::Session*>(object) ||
           dynamic_cast<const platform::Server*>(object) ||
           dynamic_cast<const platform::Application*>(object);
}

} // namespace tabrixdb::asp
