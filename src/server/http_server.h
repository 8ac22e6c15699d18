#pragma once

#include "asp/site.h"
#include "server/settings.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace tabrixdb::server {

// Serves a site over HTTP. One thread of the HTTP library holds all connections and sends files; a request
// for a page that has arrived whole is run by a worker from start to end, and its answer goes back to the
// first thread, so that no client, however slow, keeps a worker.
class HttpServer {
public:
    // Listens at once. Raises std::system_error when the address can't be had. `site` outlives this.
    HttpServer(asp::Site& site, const Settings& settings);
    // As stop().
    ~HttpServer();
    HttpServer(const HttpServer&) = delete;
    HttpServer& operator=(const HttpServer&) = delete;

    std::uint16_t port() const noexcept;
    // "http://127.0.0.1:8080/"
    std::string address() const;

    // Accepts nothing more, lets pages that run end (those that take longer than `grace` are stopped), sends
    // their answers, and closes. Safe to call twice.
    void stop(std::chrono::seconds grace = kGrace);

    static constexpr std::chrono::seconds kGrace{3};

private:
    class State;
    std::unique_ptr<State> state_;
};

} // namespace tabrixdb::server
