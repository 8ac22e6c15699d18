#pragma once

#include "automation/variant.h"

#include <cstdint>
#include <string_view>

namespace tabrixdb::vbscript {

// Where a token begins: a piece of the Source and a byte offset into its text. Turned into line and column
// only when a message needs them (place.h).
struct Place {
    std::uint32_t piece = 0;
    std::uint32_t offset = 0;
};

enum class TokenKind : std::uint8_t {
    End,
    LineBreak,
    Literal,         // a whole Piece::Kind::Literal
    ExpressionPiece, // the beginning of a Piece::Kind::Expression
    Name,
    Value, // a number, string or date: Token::value
    // Punctuation and operators written in signs.
    Colon,
    Comma,
    Dot,
    OpenBracket,
    CloseBracket,
    Equal,
    NotEqual,
    Less,
    LessEqual,
    Greater,
    GreaterEqual,
    Ampersand,
    Plus,
    Minus,
    Star,
    Slash,
    Backslash,
    Caret,
    // Reserved words. Default, Error, Explicit, Property and Step are names that mean something only in
    // their place.
    And,
    ByRef,
    ByVal,
    Call,
    Case,
    Class,
    Const,
    Dim,
    Do,
    Each,
    Else,
    ElseIf,
    EmptyWord,
    EndWord,
    Eqv,
    Erase,
    Exit,
    False,
    For,
    Function,
    GoTo,
    If,
    Imp,
    In,
    Is,
    Let,
    Loop,
    Me,
    Mod,
    New,
    Next,
    Not,
    Nothing,
    Null,
    On,
    Option,
    Or,
    Preserve,
    Private,
    Public,
    ReDim,
    Resume,
    Select,
    Set,
    Stop,
    Sub,
    Then,
    To,
    True,
    Until,
    Wend,
    While,
    With,
    Xor,
};

struct Token {
    TokenKind kind = TokenKind::End;
    bool after_blank = false; // blanks on the same line stand before it
    bool bracketed = false;   // a name in [brackets], which is never a contextual word
    Place place;
    std::string_view text; // of a name or reserved word, without brackets
    Variant value;

    // Anything that may stand after a dot.
    bool is_word() const noexcept { return kind == TokenKind::Name || kind >= TokenKind::And; }

    bool ends_statement() const noexcept {
        return kind == TokenKind::LineBreak || kind == TokenKind::Colon || kind == TokenKind::End;
    }
};

} // namespace tabrixdb::vbscript
