#pragma once

#include "mail/message.h"
#include "mail/smtp.h"

#include <chrono>
#include <deque>
#include <mutex>
#include <string>
#include <string_view>

namespace tabrixdb::mail {

// What a site's settings say about mail; the defaults are those of docs/settings.md.
struct Settings {
    std::string pickup =
        "mail"; // folder into which messages are written when there is no server; relative: to the site
    SmtpServer server; // its address empty: none
    unsigned errors_per_hour = 20;
};

// Where a site's messages go. Used by many threads at once.
class PostOffice {
public:
    // `root`: the site's folder.
    PostOffice(Settings settings, const std::string& root);

    // Sends a message, or puts it into the pickup folder as a file of its own, ".eml". Error 5 without a
    // sender or a recipient; errors of the server and the disk.
    void post(const Message& message) const;

    // Whether one more mail about an error of that page may be sent within this hour; it counts when it may.
    // One page gets a quarter of the mails, so that it can't keep those of the others back.
    bool admit_error(std::string_view page);

private:
    const Settings settings_;
    const std::string pickup_; // absolute
    std::mutex mutex_;

    struct ErrorMail {
        std::chrono::steady_clock::time_point time;
        std::string page;
    };

    std::deque<ErrorMail> errors_; // of the last hour
};

} // namespace tabrixdb::mail
