#include "mail/encoding.h"

#include "automation/text.h"

#include <algorithm>
#include <vector>

namespace tabrixdb::mail {

namespace {

constexpr std::size_t kLine = 76; // of encoded lines, and where headers are folded
constexpr std::string_view kBreak = "\r\n";

bool is_control(char32_t c) {
    return c < ' ' || (c >= 0x7F && c < 0xA0) || c == 0x2028 || c == 0x2029;
}

bool is_printable(std::string_view text) {
    return std::ranges::all_of(text, [](char c) { return c >= ' ' && c < 0x7F; });
}

std::string base64_line(std::string_view bytes) {
    constexpr std::string_view kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string out;
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        const auto byte = [&](std::size_t at) {
            return at < bytes.size() ? static_cast<unsigned char>(bytes[at]) : 0U;
        };
        const std::uint32_t three = byte(i) << 16 | byte(i + 1) << 8 | byte(i + 2);
        for (int digit = 0; digit < 4; ++digit)
            out += i + static_cast<std::size_t>(digit) > bytes.size()
                       ? '='
                       : kDigits[three >> (18 - 6 * digit) & 63];
    }
    return out;
}

char hex_digit(unsigned value) {
    return "0123456789ABCDEF"[value & 15];
}

std::string escaped(char mark, char byte) {
    const auto value = static_cast<unsigned char>(byte);
    return {mark, hex_digit(value >> 4), hex_digit(value)};
}

// Words of at most 75 characters, a line each; no character is cut.
std::string encoded_words(std::string_view text) {
    constexpr std::size_t kBytes = 45; // 60 digits, and 12 characters around them
    std::string out;
    for (std::size_t at = 0; at < text.size();) {
        std::size_t end = std::min(at + kBytes, text.size());
        while (end < text.size() && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80)
            --end;
        out +=
            (out.empty() ? "=?utf-8?B?" : "\r\n =?utf-8?B?") + base64_line(text.substr(at, end - at)) + "?=";
        at = end;
    }
    return out;
}

// Broken at blanks; nullopt-like "" when a word is longer than a line.
std::string folded(std::string_view text, std::size_t before) {
    std::string out;
    std::size_t column = before;
    for (const std::string_view word : split(text, ' ')) {
        if (word.size() >= kLine)
            return {};
        if (!out.empty() && column + 1 + word.size() > kLine) {
            out += kBreak;
            column = 0;
        }
        if (!out.empty())
            out += ' ';
        out += word;
        column += word.size() + 1;
    }
    return out;
}

} // namespace

std::string one_line(std::string_view text) {
    std::string line;
    bool blank = false;
    for (std::size_t at = 0; at < text.size();) {
        const char32_t c = next_code_point(text, at);
        if (is_control(c)) {
            blank = true;
            continue;
        }
        if (blank && c != ' ' && !line.empty() && line.back() != ' ')
            line += ' ';
        blank = blank && c == ' ';
        append_utf8(line, c >= 0xD800 && c <= 0xDFFF ? U'\xFFFD' : c);
    }
    return std::string(trimmed(line));
}

std::string header_text(std::string_view text, std::size_t before) {
    // What looks like an encoded word would be read as one.
    if (is_printable(text) && text.find("=?") == std::string_view::npos &&
        text.find("  ") == std::string_view::npos)
        if (std::string plain = folded(text, before); !plain.empty() || text.empty())
            return plain;
    // The first word has a line of its own when the name leaves it no room.
    const bool room = before + 12 + base64_line(text.substr(0, 45)).size() <= kLine;
    return (room ? "" : "\r\n ") + encoded_words(text);
}

std::string display_name(std::string_view text) {
    constexpr std::size_t kLongest = 50;
    if (text.empty())
        return {};
    if (!is_printable(text) || text.size() > kLongest || text.find("=?") != std::string_view::npos)
        return encoded_words(text);
    std::string quoted = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\')
            quoted += '\\';
        quoted += c;
    }
    return quoted + '"';
}

std::string parameter(std::string_view name, std::string_view value) {
    const std::string start = ";\r\n " + std::string(name);
    if (is_printable(value) && value.find_first_of("\"\\") == std::string_view::npos && value.size() <= 60)
        return start + "=\"" + std::string(value) + '"';
    // Pieces that are numbered, each on its line.
    constexpr std::size_t kPiece = 50;
    std::vector<std::string> pieces(1, "utf-8''");
    for (const char c : value) {
        const bool plain = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
                           c == '.' || c == '-' || c == '_';
        if (pieces.back().size() > kPiece)
            pieces.emplace_back();
        pieces.back() += plain ? std::string(1, c) : escaped('%', c);
    }
    if (pieces.size() == 1)
        return start + "*=" + pieces.front();
    std::string out;
    for (std::size_t i = 0; i < pieces.size(); ++i)
        out += start + '*' + std::to_string(i) + "*=" + pieces[i];
    return out;
}

std::string base64(std::string_view bytes) {
    constexpr std::size_t kBytes = kLine / 4 * 3;
    std::string out;
    out.reserve(bytes.size() / kBytes * (kLine + kBreak.size()) + kLine * 2);
    for (std::size_t at = 0; at < bytes.size(); at += kBytes) {
        out += base64_line(bytes.substr(at, kBytes));
        out += kBreak;
    }
    return out;
}

std::string quoted_printable(std::string_view text) {
    std::string out;
    std::size_t column = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '\r' || c == '\n') {
            if (c == '\r' && i + 1 < text.size() && text[i + 1] == '\n')
                ++i;
            out += kBreak;
            column = 0;
            continue;
        }
        const bool before_break = i + 1 == text.size() || text[i + 1] == '\r' || text[i + 1] == '\n';
        const bool plain = (c > ' ' && c < 0x7F && c != '=') || ((c == ' ' || c == '\t') && !before_break);
        const std::string piece = plain ? std::string(1, c) : escaped('=', c);
        if (column + piece.size() >= kLine) { // room for the "=" of a soft break
            out += "=\r\n";
            column = 0;
        }
        out += piece;
        column += piece.size();
    }
    return column == 0 ? out : out + std::string(kBreak);
}

} // namespace tabrixdb::mail
