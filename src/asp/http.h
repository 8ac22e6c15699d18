#pragma once

#include <cstdint>
#include <ctime>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tabrixdb::asp {

struct Header {
    std::string name;
    std::string value;
};

using Headers = std::vector<Header>;

// The value of the first header of that name (ignoring case), or nullptr.
const std::string* find_header(const Headers& headers, std::string_view name) noexcept;

// A host as the Host header gives it: "shop" and "81" of "shop:81", "[::1]" and "" of "[::1]".
struct HostParts {
    std::string_view name, port;
};

HostParts split_host(std::string_view host) noexcept;

// What a page is asked. Immutable while the page runs; shared by its objects, which a session may keep.
struct HttpRequest {
    std::string method = "GET";
    std::string path;  // virtual path of the page, decoded: "/demo/orders.asp"
    std::string query; // raw text after "?", without it
    std::string protocol = "HTTP/1.1";
    Headers headers;
    std::string body;
    bool secure = false; // the client came by https
    std::string remote_address = "127.0.0.1";
    std::string server_address = "127.0.0.1";
    std::uint16_t server_port = 80;
    std::function<bool()> client_connected = [] { return true; };
};

struct HttpResponse {
    int status = 200;
    Headers headers; // without Content-Length, Date and Connection, which the server adds
    std::string body;
};

// "Not Found" for 404; "" for a status without a phrase of its own.
std::string_view reason_phrase(int status) noexcept;

// "Sun, 06 Nov 1994 08:49:37 GMT", and back; nullopt for any other form.
std::string http_date(std::time_t time);
std::optional<std::time_t> parse_http_date(const std::string& text);

} // namespace tabrixdb::asp
