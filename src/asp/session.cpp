#include "asp/session.h"

#include "asp/asp_error.h"
#include "asp/code_page.h"
#include "automation/conversions.h"
#include "automation/locale.h"
#include "automation/member.h"

namespace tabrixdb::asp {

namespace {

constexpr std::string_view kObject = "Session object";

void check_can_be_kept(const Variant& value) {
    if (is_page_object(value)) // it ends with its page
        throw asp_error(197, kObject);
}

} // namespace

const ClassInfo& Session::class_info() const {
    static const ClassInfo info = [] {
        Member item = property<&Session::read, &Session::let_item>("Value", {"Key"});
        item.set = method<&Session::set_item>("", {"Key", "Value"}).get;
        return ClassInfo("ISessionObject", "",
                         {std::move(item).as_default(), property<&Session::contents>("Contents"),
                          property<&Session::static_objects>("StaticObjects"),
                          property<&Session::session_id>("SessionID"),
                          property<&Session::timeout, &Session::set_timeout>("Timeout"),
                          property<&Session::lcid, &Session::set_lcid>("LCID"),
                          property<&Session::code_page, &Session::set_code_page>("CodePage"),
                          method<&Session::abandon>("Abandon"), method<&Session::renew>("Renew")});
    }();
    return info;
}

std::unique_ptr<Enumerator> Session::enumerate() {
    return enumerate_texts(keys());
}

void Session::check_has_page() const {
    if (!owner_)
        throw asp_error(115, kObject, "the page has no session");
}

SessionState& Session::state() {
    check_has_page();
    if (!state_)
        state_ = owner_->create_session();
    return *state_;
}

Variant Session::value(std::string_view key) {
    return state_ ? state_->values.get(key) : Variant();
}

void Session::set_value(std::string_view key, const Variant& value) {
    check_can_be_kept(value);
    state().values.set(key, value);
}

Variant Session::read(const Variant& key) {
    return state_ ? state_->values.get(state_->values.key_of(key)) : Variant();
}

void Session::write(const Variant& key, Variant value) {
    set_value(key_of(key), value);
}

void Session::remove(const Variant& key) {
    if (state_)
        state_->values.remove(key_of(key));
}

void Session::remove_all() {
    if (state_)
        state_->values.clear();
}

std::vector<std::string> Session::keys() {
    return state_ ? state_->values.keys() : std::vector<std::string>();
}

std::string Session::key_of(const Variant& key_or_index) {
    return state_ ? state_->values.key_of(key_or_index) : Values().key_of(key_or_index);
}

Ref<Contents> Session::contents() {
    return make_ref<Contents>(Ref<Object>(this), *this);
}

void Session::set_timeout(std::int32_t minutes) {
    if (minutes < 1 || minutes > kMaxSessionMinutes)
        throw Error(kErrorCall);
    state().minutes = minutes;
}

std::int32_t Session::lcid() const {
    return static_cast<std::int32_t>(state_ && state_->lcid ? *state_->lcid : Locale::current().lcid);
}

void Session::set_lcid(std::int32_t lcid) {
    constexpr std::int32_t kErrorLocale = 447;
    const Locale* locale = Locale::find(static_cast<std::uint32_t>(lcid));
    if (!locale)
        throw Error(kErrorLocale);
    state().lcid = static_cast<std::uint32_t>(lcid);
    set_current_locale(*locale);
}

std::int32_t Session::code_page() const {
    return static_cast<std::int32_t>(state_ && state_->code_page ? *state_->code_page : kUtf8);
}

void Session::set_code_page(std::int32_t code_page) {
    if (!is_code_page(static_cast<std::uint32_t>(code_page)))
        throw Error(kErrorCall);
    state().code_page = static_cast<std::uint32_t>(code_page);
}

void Session::abandon() {
    if (state_)
        state_->abandoned = true; // it ends with the page; until then its values can be read
}

// A visitor without a session has no ID that anybody could know.
void Session::renew() {
    check_has_page();
    if (state_ && !state_->abandoned)
        owner_->renew_session(*state_);
}

} // namespace tabrixdb::asp
