#include "server/deadlines.h"

#include <sys/socket.h>

namespace tabrixdb::server {

Deadlines::Connection* Deadlines::add(int socket) {
    const std::lock_guard lock(mutex_);
    const auto at = connections_.insert(connections_.end(), {socket, Clock::now() + request_, {}});
    at->self = at;
    return &*at;
}

void Deadlines::remove(Connection* connection) {
    const std::lock_guard lock(mutex_);
    connections_.erase(connection->self);
}

void Deadlines::set(Connection* connection, Clock::time_point deadline) {
    const std::lock_guard lock(mutex_);
    connection->deadline = deadline;
}

void Deadlines::begin_request(Connection* connection) {
    set(connection, Clock::now() + request_);
}

void Deadlines::end_request(Connection* connection) {
    set(connection, Clock::time_point::max());
}

void Deadlines::await_next(Connection* connection) {
    set(connection, Clock::now() + idle_ + request_);
}

void Deadlines::sweep(Clock::time_point now) {
    const std::lock_guard lock(mutex_);
    for (const Connection& connection : connections_)
        if (connection.deadline <= now)
            shutdown(connection.socket, SHUT_RDWR);
}

} // namespace tabrixdb::server
