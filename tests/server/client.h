#pragma once

#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <string_view>

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace tabrixdb::server {

// A connection to a server on this machine, as bytes.
class Client {
public:
    explicit Client(std::uint16_t port) : socket_(socket(AF_INET, SOCK_STREAM, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(port);
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        if (connect(socket_, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0)
            throw std::runtime_error("cannot connect");
    }

    ~Client() { close(socket_); }

    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    void send(std::string_view bytes) const {
        while (!bytes.empty()) {
            const ssize_t sent = ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
            if (sent <= 0)
                return; // the server has closed; what it said can still be read
            bytes.remove_prefix(static_cast<std::size_t>(sent));
        }
    }

    struct Answer {
        int status = 0; // 0: the connection ended before an answer
        std::string head, body;

        // The value of a header; "" when it is not there.
        std::string header(const std::string& name) const {
            const std::size_t at = head.find("\r\n" + name + ": ");
            if (at == std::string::npos)
                return {};
            const std::size_t from = at + name.size() + 4;
            return head.substr(from, head.find("\r\n", from) - from);
        }
    };

    Answer read(bool has_body = true) {
        Answer answer;
        std::size_t end;
        while ((end = read_.find("\r\n\r\n")) == std::string::npos)
            if (!read_more())
                return {};
        answer.head = read_.substr(0, end + 2);
        read_.erase(0, end + 4);
        answer.status = std::atoi(answer.head.c_str() + answer.head.find(' '));
        const std::size_t length = std::strtoul(answer.header("Content-Length").c_str(), nullptr, 10);
        while (has_body && read_.size() < length && read_more()) {
        }
        if (has_body) {
            answer.body = read_.substr(0, length);
            read_.erase(0, length);
        }
        return answer;
    }

    Answer ask(std::string_view request) {
        send(request);
        return read(!request.starts_with("HEAD"));
    }

    // Waits for the server to close; true when it sent nothing before.
    bool ends_silently() { return !read_more() && read_.empty(); }

private:
    bool read_more() {
        char buffer[16 * 1024];
        const ssize_t count = recv(socket_, buffer, sizeof buffer, 0);
        if (count <= 0)
            return false;
        read_.append(buffer, static_cast<std::size_t>(count));
        return true;
    }

    int socket_;
    std::string read_;
};

} // namespace tabrixdb::server
