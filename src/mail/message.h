#pragma once

#include "mail/addresses.h"

#include <chrono>
#include <string>
#include <utility>
#include <vector>

namespace tabrixdb::mail {

struct Attachment {
    std::string name; // of the file, as the reader sees it
    std::string bytes;
};

enum class Importance : unsigned char { Low = 0, Normal = 1, High = 2 };

// A message before it is written. All texts are UTF-8; controls in what becomes a header are blanks there.
struct Message {
    Mailbox from;
    std::vector<Mailbox> to, cc, bcc;
    std::string subject;
    std::string body;
    bool html = false;
    Importance importance = Importance::Normal;
    std::string base;     // address that relative links of an HTML body count from; may be empty
    std::string location; // address of the body itself; may be empty
    std::vector<std::pair<std::string, std::string>> headers; // further ones, their names checked
    std::vector<Attachment> attachments;
};

// Whether a page may set a header of this name itself: a proper name, and none that the message is made of.
bool is_free_header(std::string_view name);

// The message in MIME, Error 5 for a header of addresses that holds none: lines of ASCII that end in CR LF.
// `id` is unique and goes into Message-ID; `with_bcc` writes the hidden recipients, too, for whoever hands
// the message on.
std::string to_mime(const Message& message, std::chrono::system_clock::time_point date, std::string_view id,
                    bool with_bcc);

} // namespace tabrixdb::mail
