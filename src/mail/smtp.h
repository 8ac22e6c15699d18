#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tabrixdb::mail {

struct SmtpServer {
    std::string address; // "smtp://host:port", "smtps://host:port"
    std::string user;    // empty: without log-in
    std::string password;
    bool require_tls =
        true; // of smtp://: nothing is sent, no password above all, before the connection is encrypted
    std::string ca_file; // certificates to trust in place of the system's; empty: the system's
};

// Hands a message, lines of ASCII, to a server for these addresses. Raises Error 0x80040213 with what the
// server or the connection said. Ends when the page that runs on this thread is out of time.
void send_by_smtp(const SmtpServer& server, const std::string& from, const std::vector<std::string>& to,
                  std::string_view message);

} // namespace tabrixdb::mail
