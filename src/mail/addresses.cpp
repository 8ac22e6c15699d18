#include "mail/addresses.h"

#include "automation/error.h"
#include "automation/text.h"
#include "mail/encoding.h"

#include <algorithm>

namespace tabrixdb::mail {

namespace {

constexpr std::size_t kMaxLocal = 64;
constexpr std::size_t kMaxAddress = 254;

[[noreturn]] void refuse(std::string_view entry) {
    throw Error(kErrorCall, "Not a mail address: '" + std::string(entry) + "'", "CDONTS.NewMail");
}

bool is_alphanumeric(char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

bool is_dotted(std::string_view text, std::string_view special) {
    if (text.empty() || text.starts_with('.') || text.ends_with('.') ||
        text.find("..") != std::string_view::npos)
        return false;
    return std::ranges::all_of(text, [&](char c) {
        return is_alphanumeric(c) || c == '.' || special.find(c) != std::string_view::npos;
    });
}

bool is_address(std::string_view text) {
    const std::size_t at = text.rfind('@');
    return at != std::string_view::npos && at <= kMaxLocal && text.size() <= kMaxAddress &&
           is_dotted(text.substr(0, at), "!#$%&'*+-/=?^_`{|}~") && is_dotted(text.substr(at + 1), "-");
}

// The entries of a list: separators within quotes and brackets separate nothing.
std::vector<std::string> entries_of(std::string_view list) {
    std::vector<std::string> entries(1);
    bool quoted = false, bracketed = false;
    for (std::size_t i = 0; i < list.size(); ++i) {
        const char c = list[i];
        if (quoted && c == '\\' && i + 1 < list.size()) {
            entries.back() += c;
            entries.back() += list[++i];
            continue;
        }
        if (c == '"')
            quoted = !quoted;
        else if (!quoted && (c == '<' || c == '>'))
            bracketed = c == '<';
        if ((c == ',' || c == ';') && !quoted && !bracketed)
            entries.emplace_back();
        else
            entries.back() += c;
    }
    return entries;
}

std::string unquoted(std::string_view name) {
    if (name.size() < 2 || !name.starts_with('"') || !name.ends_with('"'))
        return std::string(name);
    std::string plain;
    for (std::size_t i = 1; i + 1 < name.size(); ++i) {
        if (name[i] == '\\' && i + 2 < name.size())
            ++i;
        plain += name[i];
    }
    return plain;
}

Mailbox parse_mailbox(std::string_view entry) {
    const std::size_t open = entry.rfind('<');
    if (open == std::string_view::npos) {
        if (!is_address(entry))
            refuse(entry);
        return {"", std::string(entry)};
    }
    if (!entry.ends_with('>'))
        refuse(entry);
    const std::string_view address = trimmed(entry.substr(open + 1, entry.size() - open - 2));
    if (!is_address(address))
        refuse(entry);
    return {unquoted(trimmed(entry.substr(0, open))), std::string(address)};
}

} // namespace

std::vector<Mailbox> parse_addresses(std::string_view list) {
    std::vector<Mailbox> mailboxes;
    for (const std::string& entry : entries_of(one_line(list))) {
        if (trimmed(entry).empty())
            continue;
        if (mailboxes.size() == kMaxAddresses)
            throw Error(kErrorCall,
                        "A message has at most " + std::to_string(kMaxAddresses) + " addresses in a list",
                        "CDONTS.NewMail");
        mailboxes.push_back(parse_mailbox(trimmed(entry)));
    }
    return mailboxes;
}

} // namespace tabrixdb::mail
