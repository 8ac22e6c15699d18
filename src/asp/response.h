#pragma once

#include "asp/http.h"
#include "asp/response_cookies.h"
#include "automation/interrupt.h"
#include "platform/page.h"

#include <optional>
#include <string>
#include <string_view>

namespace tabrixdb::asp {

// Most bytes of one page's output (ASP 0251): what an endless loop can fill before its time is over.
inline constexpr std::size_t kMaxResponseBytes = std::size_t{128} * 1024 * 1024;

// The Response object. The whole output is held until the page ends; Flush, and writing with Buffer off,
// only fix what came before, as if it had left. Belongs to one page; detach() cuts it from the page's
// Interrupt when that ends.
class Response final : public platform::Response {
public:
    // `interrupt` is told of End; `code_page` encodes the output.
    Response(Interrupt& interrupt, std::uint32_t code_page);

    const ClassInfo& class_info() const override;

    void write(std::string_view html) override;
    std::string text_of(std::string_view bytes) const override;
    void end() override;

    bool ended() const override { return ended_; }

    void set_failed() override;

    void detach() noexcept { interrupt_ = nullptr; }

    // For the host. Takes what was not flushed, and the page's own headers, back.
    void reset();

    bool flushed() const noexcept { return flushed_; }

    bool is_html() const noexcept;

    bool empty() const noexcept { return body_.empty(); }

    int status_code() const noexcept { return status_; }

    void set_status_code(int status) { status_ = status; }

    void set_content_type(const std::string& type);
    // Headers for what is a visitor's own, as far as the page has not said it itself: `cache` as
    // Cache-Control, unless that or Expires is set; `frame_ancestors`, the sites that may show it in a frame,
    // unless it has a Content-Security-Policy or X-Frame-Options. Empty ones are left out.
    void add_private_headers(const std::string& cache, const std::string& frame_ancestors);
    // The response as it stands; the object is empty afterwards.
    HttpResponse take();

    // What pages call.
    void write_value(const Variant& value);
    void write_bytes(const Variant& bytes);
    void clear();
    void flush();
    void redirect(const std::string& address);
    void add_header(const std::string& name, const std::string& value);
    void append_to_log(const std::string& text);
    void set_code_page(std::int32_t code_page); // of what is written from now on

private:
    bool buffered() const { return buffered_; }

    void set_buffered(bool buffered);

    std::string content_type() const { return content_type_; }

    std::string charset() const { return charset_; }

    void set_charset(const std::string& charset);

    std::int32_t code_page() const { return static_cast<std::int32_t>(code_page_); }

    std::int32_t lcid() const;
    void set_lcid(std::int32_t lcid);
    std::string status() const;
    void set_status(const std::string& status);

    Variant expires() const { return expires_; }

    void set_expires(const Variant& minutes);

    Variant expires_absolute() const { return expires_absolute_; }

    void set_expires_absolute(const Variant& date);

    std::string cache_control() const { return cache_control_.value_or("private"); }

    void set_cache_control(const std::string& value);
    bool is_client_connected() const;

    Ref<ResponseCookies> cookies() const { return cookies_; }

    void append(std::string_view bytes);
    void check_headers_open() const;

    Interrupt* interrupt_;
    std::string body_;
    std::size_t flushed_bytes_ = 0;
    bool flushed_ = false;
    bool buffered_ = true;
    bool ended_ = false;
    int status_ = 200;
    bool status_chosen_ = false; // by the page
    std::string reason_;
    std::string content_type_ = "text/html";
    std::string charset_;
    std::uint32_t code_page_;
    std::optional<std::string> cache_control_;
    Variant expires_, expires_absolute_;
    std::string expires_header_;
    Headers headers_;
    Ref<ResponseCookies> cookies_;

public:
    // Asked by IsClientConnected.
    std::function<bool()> client_connected = [] { return true; };
    // Where AppendToLog writes.
    std::function<void(std::string_view)> log = [](std::string_view) {};
};

// A date of a script, which is local time, as seconds since 1970.
std::time_t local_time(double days);

} // namespace tabrixdb::asp
