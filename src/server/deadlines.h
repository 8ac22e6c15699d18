#pragma once

#include <chrono>
#include <list>
#include <mutex>

namespace tabrixdb::server {

// By when each open connection must have delivered the request that it is sending. A client that sends a
// byte now and then is never idle; it is here that it ends. Thread-safe.
class Deadlines {
public:
    using Clock = std::chrono::steady_clock;

    // A request may take `request` to arrive; `idle` is how long a connection may stay open before it.
    Deadlines(std::chrono::seconds idle, std::chrono::seconds request) : idle_(idle), request_(request) {}

    struct Connection {
        int socket;
        Clock::time_point deadline;
        std::list<Connection>::iterator self;
    };

    // The socket stays open until remove().
    Connection* add(int socket);
    void remove(Connection* connection);
    // The first line of a request is there.
    void begin_request(Connection* connection);
    // The whole request is there: the server takes the time that it takes.
    void end_request(Connection* connection);
    // The answer has been sent.
    void await_next(Connection* connection);

    // Shuts down the connections whose time is over; whoever reads from them sees their end.
    void sweep(Clock::time_point now);

private:
    void set(Connection* connection, Clock::time_point deadline);

    const std::chrono::seconds idle_, request_;
    std::mutex mutex_;
    std::list<Connection> connections_;
};

} // namespace tabrixdb::server
