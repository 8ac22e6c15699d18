#pragma once

#include "asp/encoding.h"
#include "automation/object.h"
#include "automation/text.h"

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tabrixdb::asp {

// Names with their values, names in the order in which they came first and without regard to case.
class MultiMap {
public:
    struct Entry {
        std::string name;
        std::vector<std::string> values;

        std::string joined() const; // by ", "
    };

    MultiMap() = default;
    explicit MultiMap(Fields fields);

    void add(std::string name, std::string value);
    const Entry* find(std::string_view name) const noexcept;
    // By name, or by position from 1 on (Error 9 outside); nullptr for a name that is not there.
    const Entry* pick(const Variant& name_or_index) const;

    const std::vector<Entry>& entries() const noexcept { return entries_; }

    std::vector<std::string> names() const;

private:
    std::vector<Entry> entries_;
    std::unordered_map<std::string, std::size_t, IgnoreCaseHash, IgnoreCaseEqual> index_;
};

// The values of one name: `Request.Form("x")`, `(i)`, `.Count`; as a value they are joined by ", ", and Empty
// when there is none.
class StringList final : public Object {
public:
    explicit StringList(std::vector<std::string> values) : values_(std::move(values)) {}

    const ClassInfo& class_info() const override;
    std::unique_ptr<Enumerator> enumerate() override;

private:
    Variant item(const Variant& index) const;

    std::int32_t count() const { return static_cast<std::int32_t>(values_.size()); }

    std::vector<std::string> values_;
};

// Request.QueryString, .Form and .ServerVariables: a StringList a name, also for one that is not there;
// without a name the text that it was read from.
class RequestDictionary final : public Object {
public:
    RequestDictionary(MultiMap items, std::string raw) : items_(std::move(items)), raw_(std::move(raw)) {}

    const ClassInfo& class_info() const override;
    std::unique_ptr<Enumerator> enumerate() override;

    const MultiMap& items() const noexcept { return items_; }

private:
    Variant item(const Variant& name) const;
    std::string key(std::int32_t index) const;

    std::int32_t count() const { return static_cast<std::int32_t>(items_.entries().size()); }

    MultiMap items_;
    std::string raw_;
};

// Request.Cookies(name): the value, or with a name the value of a sub-key.
class RequestCookie final : public Object {
public:
    RequestCookie(std::string value, MultiMap keys) : value_(std::move(value)), keys_(std::move(keys)) {}

    const ClassInfo& class_info() const override;
    std::unique_ptr<Enumerator> enumerate() override;

private:
    Variant item(const Variant& key) const;
    std::string key(std::int32_t index) const;

    bool has_keys() const { return !keys_.entries().empty(); }

    std::int32_t count() const { return static_cast<std::int32_t>(keys_.entries().size()); }

    std::string value_;
    MultiMap keys_;
};

// Request.Cookies.
class RequestCookies final : public Object {
public:
    // `headers`: the texts of the Cookie headers.
    RequestCookies(const std::vector<std::string>& headers, std::uint32_t code_page);

    const ClassInfo& class_info() const override;
    std::unique_ptr<Enumerator> enumerate() override;

    // nullptr when the browser sent none of that name.
    Ref<RequestCookie> named(std::string_view name) const;
    // The decoded value; nullptr likewise.
    const std::string* value(std::string_view name) const;

private:
    Ref<RequestCookie> item(const Variant& name) const;
    std::string key(std::int32_t index) const;

    std::int32_t count() const { return static_cast<std::int32_t>(values_.entries().size()); }

    MultiMap raw_;    // as sent
    MultiMap values_; // decoded
    std::uint32_t code_page_;
};

// The name=value pairs of Cookie headers, as they were sent.
Fields parse_cookies(std::string_view header);

} // namespace tabrixdb::asp
