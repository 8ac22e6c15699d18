#include "vbscript/lexer.h"

#include "automation/conversions.h"
#include "automation/locale.h"
#include "vbscript/place.h"

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <string>
#include <unordered_map>

namespace tabrixdb::vbscript {

namespace {

using Words = std::unordered_map<std::string_view, TokenKind, IgnoreCaseHash, IgnoreCaseEqual>;

const Words& reserved_words() {
    using enum TokenKind;
    static const Words words = {
        {"And", And},         {"ByRef", ByRef},
        {"ByVal", ByVal},     {"Call", Call},
        {"Case", Case},       {"Class", Class},
        {"Const", Const},     {"Dim", Dim},
        {"Do", Do},           {"Each", Each},
        {"Else", Else},       {"ElseIf", ElseIf},
        {"Empty", EmptyWord}, {"End", EndWord},
        {"Eqv", Eqv},         {"Erase", Erase},
        {"Exit", Exit},       {"False", False},
        {"For", For},         {"Function", Function},
        {"GoTo", GoTo},       {"If", If},
        {"Imp", Imp},         {"In", In},
        {"Is", Is},           {"Let", Let},
        {"Loop", Loop},       {"Me", Me},
        {"Mod", Mod},         {"New", New},
        {"Next", Next},       {"Not", Not},
        {"Nothing", Nothing}, {"Null", Null},
        {"On", On},           {"Option", Option},
        {"Or", Or},           {"Preserve", Preserve},
        {"Private", Private}, {"Public", Public},
        {"ReDim", ReDim},     {"Resume", Resume},
        {"Select", Select},   {"Set", Set},
        {"Stop", Stop},       {"Sub", Sub},
        {"Then", Then},       {"To", To},
        {"True", True},       {"Until", Until},
        {"Wend", Wend},       {"While", While},
        {"With", With},       {"Xor", Xor},
    };
    return words;
}

constexpr std::size_t kLongestReservedWord = 8;

bool is_letter(char c) noexcept {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool is_digit(char c) noexcept {
    return c >= '0' && c <= '9';
}

bool is_name_part(char c) noexcept {
    return is_letter(c) || is_digit(c) || c == '_';
}

bool is_blank(char c) noexcept {
    return c == ' ' || c == '\t' || c == '\v' || c == '\f';
}

// The value of a digit in a number of 2^bits, or -1.
int digit_value(char c, unsigned bits) noexcept {
    int value = -1;
    if (is_digit(c))
        value = c - '0';
    else if (is_letter(c))
        value = (c | 0x20) - 'a' + 10;
    return value < (1 << bits) ? value : -1;
}

bool ends_operand(TokenKind kind) noexcept {
    return kind == TokenKind::Name || kind == TokenKind::Value || kind == TokenKind::CloseBracket;
}

} // namespace

Lexer::Lexer(const Source& source) : source_(source) {
    if (!source_.pieces.empty())
        text_ = source_.pieces.front().text;
}

void Lexer::fail(std::int32_t number) const {
    raise_compile_error(source_, here(), number);
}

Token Lexer::next() {
    Token result = scan();
    previous_ = result.kind;
    return result;
}

void Lexer::next_piece() noexcept {
    ++piece_;
    at_ = 0;
    piece_started_ = false;
    text_ = piece_ < source_.pieces.size() ? source_.pieces[piece_].text : std::string_view();
}

Token Lexer::token(TokenKind kind, std::size_t length) {
    Token result;
    result.kind = kind;
    result.after_blank = after_blank_;
    result.place = here();
    result.text = text_.substr(at_, length);
    at_ += length;
    return result;
}

bool Lexer::at_line_break() const noexcept {
    return peek() == '\n' || peek() == '\r';
}

void Lexer::take_line_break() noexcept {
    at_ += peek() == '\r' && peek(1) == '\n' ? 2 : 1;
}

void Lexer::skip_line() {
    while (at_ < text_.size() && !at_line_break())
        ++at_;
}

// Blanks, and line continuations after a blank. True when there were blanks on this line.
bool Lexer::skip_blanks() {
    bool blanks = false;
    for (;;) {
        while (is_blank(peek())) {
            ++at_;
            blanks = true;
        }
        if (peek() != '_')
            return blanks;
        std::size_t end = at_ + 1;
        while (end < text_.size() && is_blank(text_[end]))
            ++end;
        if (end == text_.size() || (text_[end] != '\n' && text_[end] != '\r'))
            fail(1032);
        at_ = end;
        take_line_break();
        while (is_blank(peek()))
            ++at_;
        blanks = false;
    }
}

Token Lexer::scan() {
    after_blank_ = false;
    if (piece_ >= source_.pieces.size()) {
        Token end;
        end.place = source_.pieces.empty()
                        ? Place()
                        : Place{piece_ - 1, static_cast<std::uint32_t>(source_.pieces.back().text.size())};
        return end;
    }
    if (!piece_started_) {
        piece_started_ = true;
        const Piece::Kind kind = source_.pieces[piece_].kind;
        if (kind == Piece::Kind::Literal) {
            Token literal = token(TokenKind::Literal, 0);
            at_ = text_.size();
            return literal;
        }
        if (kind == Piece::Kind::Expression)
            return token(TokenKind::ExpressionPiece, 0);
        if (piece_ == 0 && text_.starts_with("\xEF\xBB\xBF"))
            at_ = 3; // byte order mark
    }
    after_blank_ = skip_blanks();
    if (peek() == '\'')
        skip_line();
    if (at_ == text_.size()) {
        Token end = token(TokenKind::LineBreak, 0);
        next_piece();
        return end;
    }
    if (at_line_break()) {
        Token end = token(TokenKind::LineBreak, 0);
        take_line_break();
        return end;
    }
    const char c = peek();
    if (is_letter(c))
        return scan_word();
    if (is_digit(c) || (c == '.' && is_digit(peek(1))))
        return scan_number();
    switch (c) {
    case '[':
        return scan_bracketed_name();
    case '"':
        return scan_string();
    case '#':
        return scan_date();
    case '&':
        if (radix_number_follows())
            return scan_radix_number((peek(1) | 0x20) == 'h' ? 4 : 3);
        return token(TokenKind::Ampersand, 1);
    default:
        return scan_sign();
    }
}

Token Lexer::scan_word() {
    std::size_t end = at_ + 1;
    while (end < text_.size() && is_name_part(text_[end]))
        ++end;
    const std::size_t length = end - at_;
    if (length > kMaxNameLength)
        fail(1030);
    const std::string_view word = text_.substr(at_, length);
    if (previous_ != TokenKind::Dot && equal_ignore_case(word, "rem")) {
        skip_line();
        return scan();
    }
    TokenKind kind = TokenKind::Name;
    if (length <= kLongestReservedWord) {
        const auto found = reserved_words().find(word);
        if (found != reserved_words().end())
            kind = found->second;
    }
    return token(kind, length);
}

Token Lexer::scan_bracketed_name() {
    std::size_t end = at_ + 1;
    while (end < text_.size() && text_[end] != ']' && text_[end] != '\n' && text_[end] != '\r')
        ++end;
    if (end == text_.size() || text_[end] != ']')
        fail(1007);
    const std::string_view name = text_.substr(at_ + 1, end - at_ - 1);
    if (name.size() > kMaxNameLength)
        fail(1030);
    Token result = token(TokenKind::Name, end + 1 - at_);
    result.text = name;
    result.bracketed = true;
    return result;
}

Token Lexer::scan_string() {
    std::size_t end = at_ + 1;
    bool doubled = false;
    for (;; ++end) {
        if (end >= text_.size() || text_[end] == '\n' || text_[end] == '\r')
            fail(1033);
        if (text_[end] != '"')
            continue;
        if (end + 1 < text_.size() && text_[end + 1] == '"') {
            doubled = true;
            ++end;
        } else {
            break;
        }
    }
    const std::string_view inside = text_.substr(at_ + 1, end - at_ - 1);
    Token result = token(TokenKind::Value, end + 1 - at_);
    result.value = doubled ? Variant(replace_all(inside, "\"\"", "\"")) : Variant(inside);
    return result;
}

Token Lexer::scan_number() {
    std::size_t end = at_;
    bool whole = true;
    const auto digits = [&] {
        while (end < text_.size() && is_digit(text_[end]))
            ++end;
    };
    digits();
    if (end < text_.size() && text_[end] == '.') {
        whole = false;
        ++end;
        digits();
    }
    if (end < text_.size() && (text_[end] | 0x20) == 'e') {
        std::size_t exponent = end + 1;
        if (exponent < text_.size() && (text_[exponent] == '+' || text_[exponent] == '-'))
            ++exponent;
        if (exponent < text_.size() && is_digit(text_[exponent])) {
            whole = false;
            end = exponent;
            digits();
        }
    }
    const std::string_view written = text_.substr(at_, end - at_);
    Variant value;
    std::int64_t integer = 0;
    if (whole &&
        std::from_chars(written.data(), written.data() + written.size(), integer).ec == std::errc()) {
        value = Variant::integer(integer);
    } else {
        const double real = std::strtod(std::string(written).c_str(), nullptr);
        if (real == HUGE_VAL)
            fail(1031);
        value = Variant(real);
    }
    Token result = token(TokenKind::Value, written.size());
    result.value = std::move(value);
    return result;
}

// `&` is an operator and the first sign of &HFF. It begins a number when digits of that base follow, up to
// the end of the word, and when it can't be meant as an operator.
bool Lexer::radix_number_follows() const noexcept {
    const char base = static_cast<char>(peek(1) | 0x20);
    if (base != 'h' && base != 'o')
        return false;
    const unsigned bits = base == 'h' ? 4 : 3;
    std::size_t end = at_ + 2;
    while (end < text_.size() && digit_value(text_[end], bits) >= 0)
        ++end;
    if (end == at_ + 2 || (end < text_.size() && is_name_part(text_[end])))
        return false;
    if (!ends_operand(previous_))
        return true;
    return previous_ == TokenKind::Name && after_blank_;
}

Token Lexer::scan_radix_number(unsigned bits_per_digit) {
    std::uint64_t bits = 0;
    std::size_t end = at_ + 2;
    for (; end < text_.size(); ++end) {
        const int digit = digit_value(text_[end], bits_per_digit);
        if (digit < 0)
            break;
        bits = (bits << bits_per_digit) | static_cast<std::uint64_t>(digit);
        if (bits > UINT32_MAX)
            fail(1031);
    }
    const bool is_long = end < text_.size() && text_[end] == '&';
    Token result = token(TokenKind::Value, end + is_long - at_);
    const auto half = static_cast<std::int16_t>(bits);
    if (bits > UINT16_MAX || is_long)
        result.value = Variant(static_cast<std::int32_t>(static_cast<std::uint32_t>(bits)));
    else if (half == INT16_MIN) // deliberate: &H8000 is a Long, as the platform has it
        result.value = Variant(std::int32_t{INT16_MIN});
    else
        result.value = Variant(half);
    return result;
}

Token Lexer::scan_date() {
    std::size_t end = at_ + 1;
    while (end < text_.size() && text_[end] != '#' && text_[end] != '\n' && text_[end] != '\r')
        ++end;
    if (end >= text_.size() || text_[end] != '#')
        fail(1032);
    // Date literals are read the same way whatever the page's locale is.
    const LocaleScope english(*Locale::find(1033));
    const std::optional<double> days = parse_date(text_.substr(at_ + 1, end - at_ - 1));
    if (!days)
        fail(1002);
    Token result = token(TokenKind::Value, end + 1 - at_);
    result.value = Variant::date(*days);
    return result;
}

Token Lexer::scan_sign() {
    using enum TokenKind;
    const char second = peek(1);
    switch (peek()) {
    case ':':
        return token(Colon, 1);
    case ',':
        return token(Comma, 1);
    case '.':
        return token(Dot, 1);
    case '(':
        return token(OpenBracket, 1);
    case ')':
        return token(CloseBracket, 1);
    case '+':
        return token(Plus, 1);
    case '-':
        return token(Minus, 1);
    case '*':
        return token(Star, 1);
    case '/':
        return token(Slash, 1);
    case '\\':
        return token(Backslash, 1);
    case '^':
        return token(Caret, 1);
    case '=':
        if (second == '<')
            return token(LessEqual, 2);
        return second == '>' ? token(GreaterEqual, 2) : token(Equal, 1);
    case '<':
        if (second == '=')
            return token(LessEqual, 2);
        return second == '>' ? token(NotEqual, 2) : token(Less, 1);
    case '>':
        if (second == '=')
            return token(GreaterEqual, 2);
        return second == '<' ? token(NotEqual, 2) : token(Greater, 1);
    default:
        fail(1032);
    }
}

} // namespace tabrixdb::vbscript
