#include "mail/message.h"

#include "automation/text.h"
#include "mail/encoding.h"

#include <algorithm>
#include <array>
#include <ctime>
#include <span>

namespace tabrixdb::mail {

namespace {

constexpr std::string_view kBreak = "\r\n";

// Headers that the message writes itself, and those of its way.
constexpr auto kOwnHeaders = std::to_array<std::string_view>(
    {"From", "To", "Cc", "Bcc", "Subject", "Date", "Message-ID", "MIME-Version", "Importance", "X-Priority",
     "Content-Base", "Content-Location", "Content-Type", "Content-Transfer-Encoding", "Content-Disposition",
     "Return-Path", "Received", "Sender"});

// Free headers that hold addresses.
constexpr auto kAddressHeaders = std::to_array<std::string_view>(
    {"Reply-To", "Disposition-Notification-To", "Return-Receipt-To", "Errors-To", "Mail-Reply-To"});

bool is_one_of(std::span<const std::string_view> names, std::string_view name) {
    return std::ranges::any_of(names, [&](std::string_view one) { return equal_ignore_case(one, name); });
}

std::string date_text(std::chrono::system_clock::time_point date) {
    const std::time_t seconds = std::chrono::system_clock::to_time_t(date);
    std::tm utc{};
    gmtime_r(&seconds, &utc);
    constexpr const char* kDays[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
    constexpr const char* kMonths[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                       "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    char rest[32];
    std::strftime(rest, sizeof rest, " %Y %H:%M:%S +0000", &utc);
    return std::string(kDays[utc.tm_wday]) + ", " + std::to_string(utc.tm_mday) + ' ' + kMonths[utc.tm_mon] +
           rest;
}

class Writer {
public:
    void header(std::string_view name, std::string_view value) {
        out_ += name;
        out_ += ": ";
        out_ += value;
        out_ += kBreak;
    }

    void text_header(std::string_view name, std::string_view text) {
        header(name, header_text(one_line(text), name.size() + 2));
    }

    void addresses(std::string_view name, const std::vector<Mailbox>& mailboxes) {
        std::string list;
        for (const Mailbox& mailbox : mailboxes)
            list += (list.empty() ? "" : ",\r\n ") + shown(mailbox);
        if (!list.empty())
            header(name, list);
    }

    void body(const Message& message) {
        header("Content-Type", message.html ? "text/html; charset=utf-8" : "text/plain; charset=utf-8");
        // The encoding that reads better and is not much longer than the other.
        const auto other =
            std::ranges::count_if(message.body, [](char c) { return static_cast<signed char>(c) < 0; });
        const bool mostly_ascii = static_cast<std::size_t>(other) * 6 <= message.body.size();
        header("Content-Transfer-Encoding", mostly_ascii ? "quoted-printable" : "base64");
        out_ += kBreak;
        out_ += mostly_ascii ? quoted_printable(message.body) : base64(with_line_breaks(message.body));
    }

    void attachment(const Attachment& attachment) {
        const std::string name = one_line(attachment.name);
        header("Content-Type", "application/octet-stream" + parameter("name", name));
        header("Content-Disposition", "attachment" + parameter("filename", name));
        header("Content-Transfer-Encoding", "base64");
        out_ += kBreak;
        out_ += base64(attachment.bytes);
    }

    void boundary(const std::string& mark, bool last) {
        out_ += "--" + mark + (last ? "--" : "") + std::string(kBreak);
    }

    void blank() { out_ += kBreak; }

    std::string take() { return std::move(out_); }

private:
    static std::string shown(const Mailbox& mailbox) {
        const std::string name = display_name(one_line(mailbox.name));
        return name.empty() ? mailbox.address : name + "\r\n <" + mailbox.address + '>';
    }

    static std::string with_line_breaks(std::string_view text) {
        return replace_all(replace_all(replace_all(text, "\r\n", "\n"), "\r", "\n"), "\n", kBreak);
    }

    std::string out_;
};

void write_importance(Writer& out, Importance importance) {
    if (importance == Importance::Normal)
        return;
    const bool high = importance == Importance::High;
    out.header("Importance", high ? "high" : "low");
    out.header("X-Priority", high ? "1" : "5");
}

void write_headers(Writer& out, const Message& message, bool with_bcc) {
    out.addresses("From", {message.from});
    out.addresses("To", message.to);
    out.addresses("Cc", message.cc);
    if (with_bcc)
        out.addresses("Bcc", message.bcc);
    out.text_header("Subject", message.subject);
    write_importance(out, message.importance);
    if (!message.base.empty())
        out.text_header("Content-Base", message.base);
    if (!message.location.empty())
        out.text_header("Content-Location", message.location);
    for (const auto& [name, value] : message.headers) {
        if (is_one_of(kAddressHeaders, name))
            out.addresses(name, parse_addresses(value));
        else
            out.text_header(name, value);
    }
    out.header("MIME-Version", "1.0");
}

} // namespace

bool is_free_header(std::string_view name) {
    constexpr std::size_t kLongest = 60;
    const bool proper = !name.empty() && name.size() <= kLongest && std::ranges::all_of(name, [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '-' ||
               c == '_';
    });
    return proper && !is_one_of(kOwnHeaders, name);
}

std::string to_mime(const Message& message, std::chrono::system_clock::time_point date, std::string_view id,
                    bool with_bcc) {
    Writer out;
    out.header("Date", date_text(date));
    const std::string_view sender = message.from.address;
    out.header("Message-ID", '<' + std::string(id) + std::string(sender.substr(sender.rfind('@'))) + '>');
    write_headers(out, message, with_bcc);
    if (message.attachments.empty()) {
        out.body(message);
        return out.take();
    }
    // Nothing else can hold this line: the id is random, and base64 and headers have no "--".
    const std::string mark = "=_" + std::string(id);
    out.header("Content-Type", "multipart/mixed" + parameter("boundary", mark));
    out.blank();
    out.boundary(mark, false);
    out.body(message);
    for (const Attachment& attachment : message.attachments) {
        out.boundary(mark, false);
        out.attachment(attachment);
    }
    out.boundary(mark, true);
    return out.take();
}

} // namespace tabrixdb::mail
