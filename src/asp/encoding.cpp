#include "asp/encoding.h"

#include "asp/asp_error.h"
#include "asp/code_page.h"
#include "automation/text.h"

#include <algorithm>

namespace tabrixdb::asp {

namespace {

bool is_alphanumeric(char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

void append_escape(std::string& out, char c) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    const auto byte = static_cast<unsigned char>(c);
    out += '%';
    out += kDigits[byte >> 4];
    out += kDigits[byte & 15];
}

int hex_digit(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    return -1;
}

} // namespace

std::string url_encode(std::string_view bytes) {
    std::string out;
    out.reserve(bytes.size() + bytes.size() / 4);
    for (const char c : bytes) {
        if (is_alphanumeric(c))
            out += c;
        else if (c == ' ')
            out += '+';
        else
            append_escape(out, c);
    }
    return out;
}

std::string encode_location(std::string_view address) {
    std::string out;
    out.reserve(address.size());
    for (const char c : address) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte <= ' ' || byte >= 0x7F || std::string_view("\"<>\\^`{|}").find(c) != std::string_view::npos)
            append_escape(out, c);
        else
            out += c;
    }
    return out;
}

std::string html_encode(std::string_view text) {
    std::string out;
    out.reserve(text.size() + text.size() / 8);
    for (std::size_t at = 0; at < text.size();) {
        switch (const char c = text[at]) {
        case '&':
            out += "&amp;";
            break;
        case '<':
            out += "&lt;";
            break;
        case '>':
            out += "&gt;";
            break;
        case '"':
            out += "&quot;";
            break;
        default:
            if (static_cast<unsigned char>(c) >= 0x80) {
                out += "&#" + std::to_string(static_cast<std::uint32_t>(next_code_point(text, at))) + ';';
                continue;
            }
            out += c;
        }
        ++at;
    }
    return out;
}

std::string percent_decode(std::string_view text, bool plus_is_blank) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '%' && i + 2 < text.size() && hex_digit(text[i + 1]) >= 0 && hex_digit(text[i + 2]) >= 0) {
            out += static_cast<char>(hex_digit(text[i + 1]) * 16 + hex_digit(text[i + 2]));
            i += 2;
        } else {
            out += c == '+' && plus_is_blank ? ' ' : c;
        }
    }
    return out;
}

Fields decode_form(std::string_view text, std::uint32_t code_page) {
    Fields fields;
    const auto decode = [&](std::string_view part) {
        return decode_bytes(percent_decode(part, true), code_page);
    };
    for (std::size_t from = 0; from < text.size();) {
        const std::size_t end = std::min(text.find('&', from), text.size());
        const std::string_view field = text.substr(from, end - from);
        from = end + 1;
        if (field.empty())
            continue;
        if (fields.size() == kMaxFields)
            throw asp_error(104, "Request object");
        const std::size_t equals = std::min(field.find('='), field.size());
        fields.emplace_back(decode(field.substr(0, equals)),
                            decode(field.substr(std::min(equals + 1, field.size()))));
    }
    return fields;
}

} // namespace tabrixdb::asp
