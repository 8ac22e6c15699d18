#include "asp/request_collections.h"

#include "asp/code_page.h"
#include "asp/values.h"
#include "automation/conversions.h"
#include "automation/error.h"
#include "automation/member.h"

#include <algorithm>

namespace tabrixdb::asp {

// --- MultiMap --------------------------------------------------------------------------------------

std::string MultiMap::Entry::joined() const {
    std::string text;
    for (const std::string& value : values)
        text.append(&value == &values.front() ? "" : ", ").append(value);
    return text;
}

MultiMap::MultiMap(Fields fields) {
    for (auto& [name, value] : fields)
        add(std::move(name), std::move(value));
}

void MultiMap::add(std::string name, std::string value) {
    const auto [at, added] = index_.try_emplace(name, entries_.size());
    if (added)
        entries_.push_back({std::move(name), {}});
    entries_[at->second].values.push_back(std::move(value));
}

const MultiMap::Entry* MultiMap::find(std::string_view name) const noexcept {
    const auto found = index_.find(name);
    return found == index_.end() ? nullptr : &entries_[found->second];
}

const MultiMap::Entry* MultiMap::pick(const Variant& name_or_index) const {
    if (!name_or_index.is_number())
        return find(to_text(name_or_index).view());
    const std::int32_t index = to_long(name_or_index);
    if (index < 1 || static_cast<std::size_t>(index) > entries_.size())
        throw Error(kErrorSubscript);
    return &entries_[static_cast<std::size_t>(index) - 1];
}

std::vector<std::string> MultiMap::names() const {
    std::vector<std::string> names;
    for (const Entry& entry : entries_)
        names.push_back(entry.name);
    return names;
}

namespace {

std::string name_at(const MultiMap& items, std::int32_t index) {
    return items.pick(Variant(index))->name;
}

} // namespace

// --- StringList ------------------------------------------------------------------------------------

const ClassInfo& StringList::class_info() const {
    static const ClassInfo info(
        "IStringList", "",
        {property<&StringList::item>("Item", {{"Index", Variant::missing()}}).as_default(),
         property<&StringList::count>("Count")});
    return info;
}

std::unique_ptr<Enumerator> StringList::enumerate() {
    return enumerate_texts(values_);
}

Variant StringList::item(const Variant& index) const {
    if (index.is_missing()) {
        if (values_.empty())
            return Variant();
        return Variant(values_.size() == 1 ? values_.front() : MultiMap::Entry{{}, values_}.joined());
    }
    const std::int32_t position = to_long(index);
    if (position < 1 || static_cast<std::size_t>(position) > values_.size())
        throw Error(kErrorSubscript);
    return Variant(values_[static_cast<std::size_t>(position) - 1]);
}

// --- RequestDictionary -----------------------------------------------------------------------------

const ClassInfo& RequestDictionary::class_info() const {
    static const ClassInfo info(
        "IRequestDictionary", "",
        {property<&RequestDictionary::item>("Item", {{"Name", Variant::missing()}}).as_default(),
         property<&RequestDictionary::key>("Key", {"Index"}), property<&RequestDictionary::count>("Count")});
    return info;
}

std::unique_ptr<Enumerator> RequestDictionary::enumerate() {
    return enumerate_texts(items_.names());
}

Variant RequestDictionary::item(const Variant& name) const {
    if (name.is_missing())
        return Variant(raw_);
    const MultiMap::Entry* entry = items_.pick(name);
    return make_ref<StringList>(entry ? entry->values : std::vector<std::string>());
}

std::string RequestDictionary::key(std::int32_t index) const {
    return name_at(items_, index);
}

// --- Cookies ---------------------------------------------------------------------------------------

Fields parse_cookies(std::string_view header) {
    Fields cookies;
    for (std::size_t from = 0; from < header.size() && cookies.size() < kMaxFields;) {
        const std::size_t end = std::min(header.find(';', from), header.size());
        std::string_view pair = header.substr(from, end - from);
        from = end + 1;
        pair.remove_prefix(std::min(pair.find_first_not_of(" \t"), pair.size()));
        pair = pair.substr(0, pair.find_last_not_of(" \t") + 1);
        const std::size_t equals = pair.find('=');
        if (equals != std::string_view::npos && equals > 0)
            cookies.emplace_back(pair.substr(0, equals), pair.substr(equals + 1));
    }
    return cookies;
}

RequestCookies::RequestCookies(const std::vector<std::string>& headers, std::uint32_t code_page)
    : code_page_(code_page) {
    for (const std::string& header : headers) {
        for (auto& [name, value] : parse_cookies(header)) {
            std::string decoded = decode_bytes(percent_decode(name, true), code_page);
            if (raw_.find(decoded)) // of two cookies of one name, the browser sends the nearer path first
                continue;
            raw_.add(decoded, value);
            values_.add(std::move(decoded), decode_bytes(percent_decode(value, true), code_page));
        }
    }
}

const ClassInfo& RequestCookies::class_info() const {
    static const ClassInfo info("IRequestDictionary", "",
                                {property<&RequestCookies::item>("Item", {"Name"}).as_default(),
                                 property<&RequestCookies::key>("Key", {"Index"}),
                                 property<&RequestCookies::count>("Count")});
    return info;
}

std::unique_ptr<Enumerator> RequestCookies::enumerate() {
    return enumerate_texts(raw_.names());
}

Ref<RequestCookie> RequestCookies::named(std::string_view name) const {
    const MultiMap::Entry* sent = raw_.find(name);
    if (!sent)
        return {};
    const std::string& text = sent->values.front();
    // Sub-keys are told by their "=", which an encoded value does not have.
    MultiMap keys(text.find('=') == std::string::npos ? Fields() : decode_form(text, code_page_));
    return make_ref<RequestCookie>(*value(name), std::move(keys));
}

const std::string* RequestCookies::value(std::string_view name) const {
    const MultiMap::Entry* entry = values_.find(name);
    return entry ? &entry->values.front() : nullptr;
}

Ref<RequestCookie> RequestCookies::item(const Variant& name) const {
    const MultiMap::Entry* entry = raw_.pick(name);
    return entry ? named(entry->name) : make_ref<RequestCookie>(std::string(), MultiMap());
}

std::string RequestCookies::key(std::int32_t index) const {
    return name_at(raw_, index);
}

const ClassInfo& RequestCookie::class_info() const {
    static const ClassInfo info(
        "IReadCookie", "",
        {property<&RequestCookie::item>("Item", {{"Key", Variant::missing()}}).as_default(),
         property<&RequestCookie::has_keys>("HasKeys"), property<&RequestCookie::key>("Key", {"Index"}),
         property<&RequestCookie::count>("Count")});
    return info;
}

std::unique_ptr<Enumerator> RequestCookie::enumerate() {
    return enumerate_texts(keys_.names());
}

Variant RequestCookie::item(const Variant& key) const {
    if (key.is_missing())
        return Variant(value_);
    const MultiMap::Entry* entry = keys_.pick(key);
    return Variant(entry ? entry->values.front() : std::string());
}

std::string RequestCookie::key(std::int32_t index) const {
    return name_at(keys_, index);
}

} // namespace tabrixdb::asp
