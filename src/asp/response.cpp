#include "asp/response.h"

#include "asp/asp_error.h"
#include "asp/code_page.h"
#include "asp/encoding.h"
#include "automation/conversions.h"
#include "automation/locale.h"
#include "automation/member.h"

#include <algorithm>
#include <charconv>

namespace tabrixdb::asp {

namespace {

constexpr std::string_view kObject = "Response object";
constexpr std::int32_t kErrorLocale = 447;

// A header's text must not start a header of its own.
void check_header_text(std::string_view text) {
    if (std::ranges::any_of(text, [](char c) { return static_cast<unsigned char>(c) < ' ' && c != '\t'; }))
        throw Error(kErrorCall);
}

bool is_header_name(std::string_view name) {
    return !name.empty() && std::ranges::all_of(name, [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
               std::string_view("!#$%&'*+-.^_`|~").find(c) != std::string_view::npos;
    });
}

// Headers that the server computes itself; what a page says of them would break the connection.
bool is_servers_header(std::string_view name) {
    for (const std::string_view own : {"Content-Length", "Transfer-Encoding", "Connection", "Date"})
        if (equal_ignore_case(name, own))
            return true;
    return false;
}

} // namespace

std::time_t local_time(double days) {
    const DateParts parts = date_parts(days);
    std::tm time{};
    time.tm_year = parts.year - 1900;
    time.tm_mon = parts.month - 1;
    time.tm_mday = parts.day;
    time.tm_hour = parts.hour;
    time.tm_min = parts.minute;
    time.tm_sec = parts.second;
    time.tm_isdst = -1;
    return std::mktime(&time);
}

Response::Response(Interrupt& interrupt, std::uint32_t code_page)
    : interrupt_(&interrupt),
      code_page_(code_page),
      cookies_(make_ref<ResponseCookies>()) {}

const ClassInfo& Response::class_info() const {
    static const ClassInfo info(
        "IResponse", "",
        {method<&Response::write_value>("Write", {"Text"}),
         method<&Response::write_bytes>("BinaryWrite", {"Bytes"}), method<&Response::end>("End"),
         method<&Response::clear>("Clear"), method<&Response::flush>("Flush"),
         method<&Response::redirect>("Redirect", {"Address"}),
         method<&Response::add_header>("AddHeader", {"Name", "Value"}),
         method<&Response::append_to_log>("AppendToLog", {"Text"}),
         property<&Response::buffered, &Response::set_buffered>("Buffer"),
         property<&Response::content_type, &Response::set_content_type>("ContentType"),
         property<&Response::charset, &Response::set_charset>("Charset"),
         property<&Response::code_page, &Response::set_code_page>("CodePage"),
         property<&Response::lcid, &Response::set_lcid>("LCID"),
         property<&Response::status, &Response::set_status>("Status"),
         property<&Response::expires, &Response::set_expires>("Expires"),
         property<&Response::expires_absolute, &Response::set_expires_absolute>("ExpiresAbsolute"),
         property<&Response::cache_control, &Response::set_cache_control>("CacheControl"),
         property<&Response::is_client_connected>("IsClientConnected"),
         property<&Response::cookies>("Cookies")});
    return info;
}

// --- Output ----------------------------------------------------------------------------------------

void Response::append(std::string_view bytes) {
    if (bytes.size() > kMaxResponseBytes - std::min(body_.size(), kMaxResponseBytes))
        throw asp_error(251, kObject);
    body_ += bytes;
    flushed_ = flushed_ || !buffered_;
}

void Response::write(std::string_view html) {
    if (code_page_ == kUtf8)
        append(html);
    else
        append(encode_text(html, code_page_));
}

// Under UTF-8 bytes pass write() as they are, valid or not.
std::string Response::text_of(std::string_view bytes) const {
    return code_page_ == kUtf8 ? std::string(bytes) : decode_bytes(std::string(bytes), code_page_);
}

void Response::write_value(const Variant& value) {
    if (value.is_string() && !value.text().is_bytes())
        return write(value.text());
    std::string text;
    append_text(text, value_of(value));
    write(text);
}

void Response::write_bytes(const Variant& bytes) {
    const Variant value = value_of(bytes);
    if (!value.is_byte_array() && !(value.is_string() && value.text().is_bytes()))
        throw Error(kErrorMismatch);
    append(value.text());
}

void Response::end() {
    ended_ = true;
    if (interrupt_)
        interrupt_->stop(Interrupt::Reason::Ended);
}

void Response::set_failed() {
    if (!flushed_ && !status_chosen_)
        status_ = 500;
}

void Response::clear() {
    if (!buffered_)
        throw asp_error(159, kObject);
    body_.resize(flushed_bytes_);
}

void Response::flush() {
    if (!buffered_)
        throw asp_error(159, kObject);
    flushed_ = true;
    flushed_bytes_ = body_.size();
}

void Response::redirect(const std::string& address) {
    check_headers_open();
    if (address.empty())
        throw asp_error(158, kObject);
    const std::string location = encode_location(address);
    body_.clear();
    status_ = 302;
    status_chosen_ = true;
    reason_.clear();
    headers_.push_back({"Location", location});
    content_type_ = "text/html";
    write("<html><head><title>Object moved</title></head>\r\n<body><h1>Object moved</h1>This object may be "
          "found "
          "<a href=\"" +
          html_encode(location) + "\">here</a>.</body></html>\r\n");
    end();
}

void Response::set_buffered(bool buffered) {
    if (buffered != buffered_ && !body_.empty())
        throw asp_error(157, kObject);
    buffered_ = buffered;
}

bool Response::is_client_connected() const {
    return client_connected();
}

void Response::append_to_log(const std::string& text) {
    log(text);
}

// --- Headers ---------------------------------------------------------------------------------------

void Response::check_headers_open() const {
    if (flushed_)
        throw asp_error(156, kObject);
}

void Response::add_header(const std::string& name, const std::string& value) {
    check_headers_open();
    if (!is_header_name(name))
        throw Error(kErrorCall);
    check_header_text(value);
    if (equal_ignore_case(name, "Content-Type"))
        content_type_ = value;
    else if (!is_servers_header(name))
        headers_.push_back({name, value});
}

void Response::set_content_type(const std::string& type) {
    check_headers_open();
    check_header_text(type);
    content_type_ = type;
}

void Response::set_charset(const std::string& charset) {
    check_headers_open();
    check_header_text(charset);
    charset_ = charset;
}

void Response::set_code_page(std::int32_t code_page) {
    if (!is_code_page(static_cast<std::uint32_t>(code_page)))
        throw Error(kErrorCall);
    code_page_ = static_cast<std::uint32_t>(code_page);
}

std::int32_t Response::lcid() const {
    return static_cast<std::int32_t>(Locale::current().lcid);
}

void Response::set_lcid(std::int32_t lcid) {
    const Locale* locale = Locale::find(static_cast<std::uint32_t>(lcid));
    if (!locale)
        throw Error(kErrorLocale);
    set_current_locale(*locale);
}

std::string Response::status() const {
    return std::to_string(status_) + ' ' + (reason_.empty() ? std::string(reason_phrase(status_)) : reason_);
}

void Response::set_status(const std::string& status) {
    check_headers_open();
    check_header_text(status);
    int code = 0;
    const auto [end, error] = std::from_chars(status.data(), status.data() + status.size(), code);
    if (error != std::errc() || code < 200 || code > 599) // 1xx would not be an answer
        throw Error(kErrorCall);
    status_ = code;
    status_chosen_ = true;
    reason_ = status.substr(
        std::min<std::size_t>(static_cast<std::size_t>(end - status.data()) + 1, status.size()));
}

void Response::set_expires(const Variant& minutes) {
    check_headers_open();
    const double value = to_double(minutes);
    constexpr double kTenYears = 60.0 * 24 * 366 * 10; // further off means nothing to a cache
    expires_ = minutes;
    expires_header_ = http_date(std::time(nullptr) +
                                static_cast<std::time_t>(std::clamp(value, -kTenYears, kTenYears) * 60));
}

void Response::set_expires_absolute(const Variant& date) {
    check_headers_open();
    expires_absolute_ = Variant::date(to_date(date));
    expires_header_ = http_date(local_time(expires_absolute_.real()));
}

void Response::set_cache_control(const std::string& value) {
    check_headers_open();
    check_header_text(value);
    cache_control_ = value;
}

// --- For the host ----------------------------------------------------------------------------------

void Response::reset() {
    body_.resize(flushed_bytes_);
    headers_.clear();
    content_type_ = "text/html";
    charset_.clear();
}

bool Response::is_html() const noexcept {
    return contains_ignore_case(content_type_, "html");
}

void Response::add_private_headers(const std::string& cache, const std::string& frame_ancestors) {
    const auto says = [&](std::string_view name) { return find_header(headers_, name) != nullptr; };
    if (!cache.empty() && !cache_control_ && expires_header_.empty() && !says("Cache-Control") &&
        !says("Expires") && !says("Pragma"))
        cache_control_ = cache;
    // Browsers take the policy in place of X-Frame-Options, which may be stricter.
    if (!frame_ancestors.empty() && !says("Content-Security-Policy") && !says("X-Frame-Options"))
        headers_.push_back({"Content-Security-Policy", "frame-ancestors " + frame_ancestors});
}

HttpResponse Response::take() {
    HttpResponse response{.status = status_, .headers = {}, .body = std::move(body_)};
    std::string type = content_type_;
    const bool is_text = type.size() >= 5 && equal_ignore_case(std::string_view(type).substr(0, 5), "text/");
    if (!charset_.empty())
        type += "; charset=" + charset_;
    else if (is_text && !contains_ignore_case(type, "charset"))
        type.append("; charset=").append(charset_name(code_page_));
    response.headers.push_back({"Content-Type", std::move(type)});
    response.headers.push_back({"Cache-Control", cache_control()});
    if (!expires_header_.empty())
        response.headers.push_back({"Expires", expires_header_});
    for (const Ref<ResponseCookie>& cookie : cookies_->all())
        response.headers.push_back({"Set-Cookie", cookie->header()});
    std::ranges::move(headers_, std::back_inserter(response.headers));
    return response;
}

} // namespace tabrixdb::asp
