#pragma once

#include "asp/http.h"
#include "asp/request_collections.h"
#include "platform/page.h"

#include <memory>

namespace tabrixdb::asp {

// What Request tells beyond the request itself.
struct RequestPlace {
    std::string physical_path; // of the page
    std::string site_root;
    std::uint32_t code_page;
};

// The Request object. Each collection is read when it is first asked for.
class Request final : public platform::Request {
public:
    Request(std::shared_ptr<const HttpRequest> http, RequestPlace place)
        : http_(std::move(http)),
          place_(std::move(place)) {}

    const ClassInfo& class_info() const override;

    std::string value(std::string_view name) override;
    std::optional<std::string> form_value(std::string_view name) override;
    std::optional<std::string> query_value(std::string_view name) override;
    std::string server_variable(std::string_view name) override;

    std::string query_string() override { return http_->query; }

    Pairs query_parameters() override;
    Pairs form_fields() override;

private:
    Variant item(const Variant& name);
    Ref<RequestDictionary> query();
    Ref<RequestDictionary> form();
    Ref<RequestCookies> cookies();
    Ref<RequestDictionary> variables();
    Ref<RequestDictionary> client_certificate();

    std::int32_t total_bytes() const { return static_cast<std::int32_t>(http_->body.size()); }

    Variant binary_read(std::int32_t& count);
    bool is_form() const;

    std::shared_ptr<const HttpRequest> http_;
    RequestPlace place_;
    Ref<RequestDictionary> query_, form_, variables_, certificate_;
    Ref<RequestCookies> cookies_;
    std::size_t bytes_read_ = 0;
    bool binary_ = false; // the body belongs to BinaryRead
};

} // namespace tabrixdb::asp
