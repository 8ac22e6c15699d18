#include "ado/sql_words.h"

#include <algorithm>

namespace tabrixdb::ado {

namespace {

constexpr std::string_view kWordSigns = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_$";

} // namespace

std::string_view SqlWords::next() noexcept {
    skip_blanks();
    start_ = at_;
    if (at_ >= sql_.size())
        return {};
    const char c = sql_[at_];
    if (kWordSigns.find(c) != std::string_view::npos)
        at_ = std::min(sql_.find_first_not_of(kWordSigns, at_), sql_.size());
    else if (c == '\'' || c == '"' || c == '`')
        skip_to(c);
    else if (c == '[')
        skip_to(']');
    else
        ++at_;
    return sql_.substr(start_, at_ - start_);
}

void SqlWords::skip_blanks() noexcept {
    while (at_ < sql_.size()) {
        at_ = std::min(sql_.find_first_not_of(" \t\r\n\f", at_), sql_.size());
        std::string_view close;
        if (sql_.substr(at_).starts_with("--"))
            close = "\n";
        else if (sql_.substr(at_).starts_with("/*"))
            close = "*/";
        else
            return;
        const std::size_t found = sql_.find(close, at_ + 2);
        at_ = found == std::string_view::npos ? sql_.size() : found + close.size();
    }
}

// A doubled sign within reads as two texts side by side, which is as good here.
void SqlWords::skip_to(char sign) noexcept {
    const std::size_t found = sql_.find(sign, at_ + 1);
    at_ = found == std::string_view::npos ? sql_.size() : found + 1;
}

bool is_parameter(std::string_view sign) noexcept {
    return !sign.empty() && std::string_view("?:@$").find(sign.front()) != std::string_view::npos;
}

} // namespace tabrixdb::ado
