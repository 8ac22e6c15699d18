#pragma once

#include "platform/page.h"

namespace tabrixdb::asp {

class Page;

// The Server object of one page.
class Server final : public platform::Server {
public:
    explicit Server(Page& page) : page_(&page) {}

    const ClassInfo& class_info() const override;

    std::string map_path(std::string_view virtual_path) override;
    std::string url_encode(std::string_view text) override;

    void detach() noexcept { page_ = nullptr; }

private:
    Page& page() const;

    Ref<Object> create_object(const std::string& program_id);

    std::string map(const std::string& path) { return map_path(path); }

    std::string encode_html(const std::string& text) const;

    std::string encode_url(const std::string& text) { return url_encode(text); }

    std::int32_t script_timeout() const;
    void set_script_timeout(std::int32_t seconds);
    void execute(const std::string& path);
    void transfer(const std::string& path);
    Ref<Object> last_error() const;

    Page* page_;
};

} // namespace tabrixdb::asp
