#include "automation/log_text.h"

#include "automation/text.h"

#include <algorithm>

namespace tabrixdb {

namespace {

constexpr std::string_view kCut = "...";
constexpr std::string_view kMask = "***";
constexpr std::string_view kBlanks = " \t";

// C0, DEL, C1, and the separators of lines and paragraphs.
bool breaks_line(char32_t c) noexcept {
    return c < 0x20 || (c >= 0x7F && c < 0xA0) || c == 0x2028 || c == 0x2029;
}

// The first `most` bytes or fewer, in whole characters.
std::string_view beginning(std::string_view text, std::size_t most) noexcept {
    if (text.size() <= most)
        return text;
    while (most > 0 && (static_cast<unsigned char>(text[most]) & 0xC0) == 0x80)
        --most;
    return text.substr(0, most);
}

// Behind the value that begins at `at` with a quote or a brace, or the end of its line. A sign within it is
// doubled; a script doubles all quotes of its literals once more.
std::size_t end_of_quoted(std::string_view text, std::size_t at) {
    const char close = text[at] == '{' ? '}' : text[at];
    std::size_t end = std::min(text.find_first_not_of(text[at], at), text.size());
    const std::size_t signs = end - at;
    if (end == text.size() || text[end] == ';')
        return end; // empty
    const char ends[] = {close, '\r', '\n'};
    while ((end = text.find_first_of(std::string_view(ends, sizeof ends), end)) != std::string_view::npos) {
        if (text[end] != close)
            return end;
        const std::size_t behind = std::min(text.find_first_not_of(close, end), text.size());
        const std::size_t run = behind - end;
        end = behind;
        if (run % (2 * signs) >= signs)
            return end;
    }
    return text.size();
}

std::size_t end_of_password(std::string_view text, std::size_t at) {
    if (at < text.size() && std::string_view("\"'{").find(text[at]) != std::string_view::npos)
        at = end_of_quoted(text, at);
    return std::min(text.find_first_of(";\r\n", at), text.size());
}

// Where the next password's value starts, behind its "="; npos: there is none.
std::size_t find_password(std::string_view text, std::size_t from) {
    while ((from = text.find_first_of("pP", from)) != std::string_view::npos) {
        const std::string_view rest = text.substr(from);
        ++from;
        for (const std::string_view key : {"password", "pwd"}) {
            if (!equal_ignore_case(rest.substr(0, key.size()), key))
                continue;
            const std::size_t sign = rest.find_first_not_of(kBlanks, key.size());
            if (sign != std::string_view::npos && rest[sign] == '=')
                return from - 1 + std::min(rest.find_first_not_of(kBlanks, sign + 1), rest.size());
        }
    }
    return from;
}

} // namespace

std::string one_line(std::string_view text) {
    std::string line;
    line.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t start = at;
        if (breaks_line(next_code_point(text, at)))
            line += ' ';
        else
            line += text.substr(start, at - start);
    }
    return line;
}

std::string shortened(std::string_view text, std::size_t most) {
    const std::string_view kept = beginning(text, most);
    return std::string(kept).append(kept.size() < text.size() ? kCut : "");
}

std::string quoted_line(std::string_view text, std::size_t most) {
    const std::string_view kept = beginning(text, most);
    std::string line = "\"";
    for (const char c : one_line(kept)) {
        if (c == '"' || c == '\\')
            line += '\\';
        line += c;
    }
    return line.append("\"").append(kept.size() < text.size() ? kCut : "");
}

std::string without_passwords(std::string_view text) {
    std::string out;
    std::size_t done = 0;
    for (std::size_t value; (value = find_password(text, done)) != std::string_view::npos;) {
        const std::size_t end = end_of_password(text, value);
        out.append(text.substr(done, value - done)).append(end > value ? kMask : "");
        done = end;
    }
    return out.append(text.substr(done));
}

} // namespace tabrixdb
