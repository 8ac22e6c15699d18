#pragma once

#include <cstdint>
#include <string>

namespace tabrixdb::server {

// A socket that listens until close().
class Listener {
public:
    // `host` is an address or a name; port 0 takes any free one. Raises std::system_error with both in its
    // text.
    Listener(const std::string& host, std::uint16_t port);

    ~Listener() { close(); }

    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    int socket() const noexcept { return socket_; }

    void close() noexcept;

    std::uint16_t port() const noexcept { return port_; }

private:
    int socket_ = -1;
    std::uint16_t port_ = 0;
};

// The address of a socket's other end, or of its own, as a number: "127.0.0.1", "::1".
std::string peer_address(int socket);
std::string own_address(int socket);

} // namespace tabrixdb::server
