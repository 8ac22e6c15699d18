#pragma once

#include "vbscript/source.h"
#include "vbscript/token.h"

namespace tabrixdb::vbscript {

// Cuts a Source into tokens, piece after piece, with a LineBreak after each piece. Comments and line
// continuations leave no token. Tokens point into the Source, which has to stay.
class Lexer {
public:
    // The platform's limit; longer names are compile error 1030.
    static constexpr std::size_t kMaxNameLength = 255;

    explicit Lexer(const Source& source);

    // The next token; End for ever after the last. Raises compile errors 1007 and 1030 to 1033.
    Token next();

private:
    Token scan();
    bool skip_blanks();
    void skip_line();
    bool at_line_break() const noexcept;
    void take_line_break() noexcept;
    void next_piece() noexcept;

    Token token(TokenKind kind, std::size_t length);
    Token scan_word();
    Token scan_bracketed_name();
    Token scan_string();
    Token scan_number();
    Token scan_radix_number(unsigned bits_per_digit);
    Token scan_date();
    Token scan_sign();
    bool radix_number_follows() const noexcept;

    char peek(std::size_t ahead = 0) const noexcept {
        return at_ + ahead < text_.size() ? text_[at_ + ahead] : '\0';
    }

    Place here() const noexcept { return {piece_, static_cast<std::uint32_t>(at_)}; }

    [[noreturn]] void fail(std::int32_t number) const;

    const Source& source_;
    std::uint32_t piece_ = 0;
    std::string_view text_;
    std::size_t at_ = 0;
    bool piece_started_ = false;
    bool after_blank_ = false;
    TokenKind previous_ = TokenKind::LineBreak;
};

} // namespace tabrixdb::vbscript
