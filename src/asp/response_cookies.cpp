#include "asp/response_cookies.h"

#include "asp/asp_error.h"
#include "asp/encoding.h"
#include "asp/response.h"
#include "asp/values.h"
#include "automation/conversions.h"
#include "automation/member.h"

#include <algorithm>

namespace tabrixdb::asp {

namespace {

// Most cookies of one response and sub-keys of one cookie: browsers keep far fewer.
constexpr std::size_t kMaxCookies = 300;

// An attribute's text must not end the attribute or the header.
void check_attribute(const std::string& text) {
    if (std::ranges::any_of(text, [](char c) { return c == ';' || static_cast<unsigned char>(c) < ' '; }))
        throw Error(kErrorCall);
}

} // namespace

const ClassInfo& ResponseCookie::class_info() const {
    static const ClassInfo info(
        "IWriteCookie", "",
        {property<&ResponseCookie::item, &ResponseCookie::set_item>("Item", {{"Key", Variant::missing()}})
             .as_default(),
         property<&ResponseCookie::has_keys>("HasKeys"),
         property<&ResponseCookie::expires, &ResponseCookie::set_expires>("Expires"),
         property<&ResponseCookie::path, &ResponseCookie::set_path>("Path"),
         property<&ResponseCookie::domain, &ResponseCookie::set_domain>("Domain"),
         field<&ResponseCookie::secure_>("Secure"), field<&ResponseCookie::http_only_>("HttpOnly")});
    return info;
}

std::string ResponseCookie::item(const Variant& key) const {
    if (key.is_missing())
        return keys_.empty() ? value_ : encoded_value();
    const Text name = to_text(key);
    const auto found =
        std::ranges::find_if(keys_, [&](const auto& k) { return equal_ignore_case(k.first, name); });
    return found == keys_.end() ? std::string() : found->second;
}

void ResponseCookie::set_item(const Variant& key, const Variant& value) {
    std::string text;
    append_text(text, value_of(value));
    if (key.is_missing()) {
        value_ = std::move(text);
        keys_.clear();
        return;
    }
    const Text name = to_text(key);
    const auto found =
        std::ranges::find_if(keys_, [&](const auto& k) { return equal_ignore_case(k.first, name); });
    if (found != keys_.end())
        found->second = std::move(text);
    else if (keys_.size() == kMaxCookies)
        throw Error(kErrorCall);
    else
        keys_.emplace_back(name.str(), std::move(text));
    value_.clear();
}

void ResponseCookie::set_expires(const Variant& date) {
    expires_ = Variant::date(to_date(date));
    expires_at_ = local_time(expires_.real());
}

void ResponseCookie::set_path(const std::string& path) {
    check_attribute(path);
    path_ = path;
}

void ResponseCookie::set_domain(const std::string& domain) {
    check_attribute(domain);
    domain_ = domain;
}

std::string ResponseCookie::encoded_value() const {
    if (keys_.empty())
        return url_encode(value_);
    std::string text;
    for (const auto& [name, value] : keys_) {
        text.append(text.empty() ? "" : "&").append(url_encode(name));
        text.append("=").append(url_encode(value));
    }
    return text;
}

std::string ResponseCookie::header() const {
    std::string text = url_encode(name_) + '=' + encoded_value();
    if (expires_at_)
        text += "; expires=" + http_date(*expires_at_);
    if (!domain_.empty())
        text += "; domain=" + domain_;
    text += "; path=" + path_;
    if (secure_)
        text += "; secure";
    if (http_only_)
        text += "; HttpOnly";
    return text;
}

const ClassInfo& ResponseCookies::class_info() const {
    static const ClassInfo info("IRequestDictionary", "",
                                {property<&ResponseCookies::item>("Item", {"Name"}).as_default(),
                                 property<&ResponseCookies::count>("Count")});
    return info;
}

std::unique_ptr<Enumerator> ResponseCookies::enumerate() {
    std::vector<std::string> names;
    for (const Ref<ResponseCookie>& cookie : cookies_)
        names.push_back(cookie->name());
    return enumerate_texts(std::move(names));
}

Ref<ResponseCookie> ResponseCookies::item(const std::string& name) {
    for (const Ref<ResponseCookie>& cookie : cookies_)
        if (equal_ignore_case(cookie->name(), name))
            return cookie;
    if (cookies_.size() == kMaxCookies)
        throw Error(kErrorCall);
    return cookies_.emplace_back(make_ref<ResponseCookie>(name));
}

} // namespace tabrixdb::asp
