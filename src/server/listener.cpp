#include "server/listener.h"

#include <cerrno>
#include <memory>
#include <system_error>
#include <utility>

#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace tabrixdb::server {

namespace {

constexpr int kBacklog = 511; // connections that wait to be accepted; the kernel may lower it

[[noreturn]] void fail(int error, const std::error_category& category, const std::string& host,
                       std::uint16_t port) {
    throw std::system_error(error, category, "cannot listen on " + host + ':' + std::to_string(port));
}

std::string numeric(const sockaddr_storage& address, socklen_t size) {
    char text[NI_MAXHOST] = "";
    getnameinfo(reinterpret_cast<const sockaddr*>(&address), size, text, sizeof text, nullptr, 0,
                NI_NUMERICHOST);
    return text;
}

} // namespace

Listener::Listener(const std::string& host, std::uint16_t port) {
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_flags = AI_PASSIVE | AI_NUMERICSERV;
    addrinfo* found = nullptr;
    if (getaddrinfo(host.c_str(), std::to_string(port).c_str(), &hints, &found) != 0)
        fail(EADDRNOTAVAIL, std::generic_category(), host, port);
    const std::unique_ptr<addrinfo, decltype(&freeaddrinfo)> addresses(found, freeaddrinfo);
    socket_ =
        ::socket(found->ai_family, found->ai_socktype | SOCK_CLOEXEC | SOCK_NONBLOCK, found->ai_protocol);
    const int on = 1;
    if (socket_ < 0 || setsockopt(socket_, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on) != 0 ||
        bind(socket_, found->ai_addr, found->ai_addrlen) != 0 || listen(socket_, kBacklog) != 0) {
        const int error = errno;
        close();
        fail(error, std::generic_category(), host, port);
    }
    sockaddr_storage bound{};
    socklen_t size = sizeof bound;
    getsockname(socket_, reinterpret_cast<sockaddr*>(&bound), &size);
    port_ = ntohs(bound.ss_family == AF_INET6 ? reinterpret_cast<sockaddr_in6&>(bound).sin6_port
                                              : reinterpret_cast<sockaddr_in&>(bound).sin_port);
}

void Listener::close() noexcept {
    if (socket_ >= 0)
        ::close(std::exchange(socket_, -1));
}

std::string peer_address(int socket) {
    sockaddr_storage address{};
    socklen_t size = sizeof address;
    return getpeername(socket, reinterpret_cast<sockaddr*>(&address), &size) == 0 ? numeric(address, size)
                                                                                  : "";
}

std::string own_address(int socket) {
    sockaddr_storage address{};
    socklen_t size = sizeof address;
    return getsockname(socket, reinterpret_cast<sockaddr*>(&address), &size) == 0 ? numeric(address, size)
                                                                                  : "";
}

} // namespace tabrixdb::server
