#pragma once

#include "asp/http.h"
#include "automation/object.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tabrixdb::asp {

// Response.Cookies(name): a value, or sub-keys with values, and the cookie's attributes. Assigning the value
// takes the sub-keys away and the other way round.
class ResponseCookie final : public Object {
public:
    explicit ResponseCookie(std::string name) : name_(std::move(name)) {}

    const ClassInfo& class_info() const override;

    const std::string& name() const { return name_; }

    // The text of a Set-Cookie header.
    std::string header() const;

private:
    std::string item(const Variant& key) const;
    void set_item(const Variant& key, const Variant& value);

    bool has_keys() const { return !keys_.empty(); }

    Variant expires() const { return expires_; }

    void set_expires(const Variant& date);
    void set_path(const std::string& path);
    void set_domain(const std::string& domain);

    std::string path() const { return path_; }

    std::string domain() const { return domain_; }

    std::string encoded_value() const;

    std::string name_;
    std::string value_;
    std::vector<std::pair<std::string, std::string>> keys_;
    Variant expires_;
    std::optional<std::time_t> expires_at_;
    std::string path_ = "/";
    std::string domain_;
    bool secure_ = false;
    bool http_only_ = false;
};

// Response.Cookies.
class ResponseCookies final : public Object {
public:
    const ClassInfo& class_info() const override;
    std::unique_ptr<Enumerator> enumerate() override;

    const std::vector<Ref<ResponseCookie>>& all() const { return cookies_; }

    void clear() { cookies_.clear(); }

private:
    Ref<ResponseCookie> item(const std::string& name);

    std::int32_t count() const { return static_cast<std::int32_t>(cookies_.size()); }

    std::vector<Ref<ResponseCookie>> cookies_;
};

} // namespace tabrixdb::asp
