// Messages of any text: whatever a page puts into addresses, subject, headers and names stays within its
// header.
#include "automation/error.h"
#include "mail/encoding.h"
#include "mail/message.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

using namespace tabrixdb;

void check(bool holds) {
    if (!holds)
        std::abort();
}

// The next of several texts, which end in a zero byte.
std::string take(std::string_view& data) {
    const std::size_t end = std::min(data.find('\0'), data.size());
    std::string text(data.substr(0, end));
    data.remove_prefix(std::min(end + 1, data.size()));
    return text;
}

std::vector<mail::Mailbox> addresses(std::string_view list) {
    try {
        return mail::parse_addresses(list);
    } catch (const Error&) { // an entry that is no address
        return {};
    }
}

void check_lines(std::string_view text) {
    constexpr std::size_t kLongest = 400; // an address and its brackets; the limit of the standard is 998
    for (std::size_t from = 0; from < text.size();) {
        const std::size_t end = text.find("\r\n", from);
        check(end != std::string_view::npos && end - from <= kLongest);
        check(std::ranges::all_of(text.substr(from, end - from),
                                  [](char c) { return (c >= ' ' && c < 0x7F) || c == '\t'; }));
        from = end + 2;
    }
}

void check_headers(std::string_view text) {
    constexpr auto kNames = std::to_array<std::string_view>(
        {"Date: ", "Message-ID: ", "From: ", "To: ", "Cc: ", "Bcc: ", "Subject: ", "Content-Base: ",
         "Content-Type: ", "Content-Transfer-Encoding: ", "MIME-Version: ", "X-Page: "});
    const std::string_view head = text.substr(0, text.find("\r\n\r\n"));
    for (std::size_t from = 0; from < head.size();) {
        const std::string_view line = head.substr(from, head.find("\r\n", from) - from);
        check(line.starts_with(' ') ||
              std::ranges::any_of(kNames, [&](std::string_view name) { return line.starts_with(name); }));
        from += line.size() + 2;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view rest(reinterpret_cast<const char*>(data), size);
    mail::Message message;
    message.from = {take(rest), "shop@site.example"};
    message.to = addresses(take(rest));
    message.bcc = addresses(take(rest));
    message.subject = take(rest);
    message.base = take(rest);
    message.headers = {{"X-Page", take(rest)}};
    if (const std::string name = take(rest); !name.empty())
        message.attachments.push_back({name, std::string(rest)});
    message.body = rest;
    message.html = size % 2 == 0;
    for (const mail::Mailbox& mailbox : message.to)
        check(mailbox.address.find_first_of(" \r\n<>\"") == std::string::npos);
    const std::string text =
        mail::to_mime(message, std::chrono::system_clock::time_point(), "0123456789abcdef", true);
    check_lines(text);
    check_headers(text);
    const std::string line = mail::one_line(message.subject);
    check(mail::one_line(line) == line);
    return 0;
}
