#include "scripting/pattern.h"

#include "automation/error.h"
#include "automation/interrupt.h"
#include "automation/text.h"

#include <algorithm>
#include <new>

#define PCRE2_CODE_UNIT_WIDTH 8
#include <pcre2.h>

namespace tabrixdb::scripting {

namespace {

// Steps that one place of a text may cost, and the memory for the ways back: patterns that need more try the
// same thing over and over.
constexpr std::uint32_t kMaxSteps = 5'000'000;
constexpr std::uint32_t kMaxKilobytes = 64 * 1024;

// The library counts its steps anew at every place: between two looks at the Interrupt it gets few places at
// first, and more while they cost next to nothing.
constexpr std::size_t kFirstWindow = 4;
constexpr std::chrono::milliseconds kShort{1};
constexpr std::chrono::milliseconds kLong{20};

template <auto Free>
struct Freed {
    template <class T>
    void operator()(T* given) const noexcept {
        Free(given);
    }
};

using Code = std::unique_ptr<pcre2_code, Freed<pcre2_code_free>>;
using CompileContext = std::unique_ptr<pcre2_compile_context, Freed<pcre2_compile_context_free>>;
using MatchContext = std::unique_ptr<pcre2_match_context, Freed<pcre2_match_context_free>>;
using MatchData = std::unique_ptr<pcre2_match_data, Freed<pcre2_match_data_free>>;

constexpr std::int32_t kSyntaxError = 5017;
constexpr std::int32_t kUnexpectedQuantifier = 5018;
constexpr std::int32_t kExpectedSquareBracket = 5019;
constexpr std::int32_t kExpectedBracket = 5020;
constexpr std::int32_t kInvalidRange = 5021;

// --- From the scripts' syntax to the library's -------------------------------------------------------

// The library knows more than scripts do; what means something to it only is refused or taken literally.
class Translation {
public:
    Translation(std::string_view source, bool multi_line) : source_(source), multi_line_(multi_line) {}

    std::string result() {
        while (at_ < source_.size())
            next();
        return std::move(out_);
    }

private:
    char peek(std::size_t ahead) const noexcept {
        return at_ + ahead < source_.size() ? source_[at_ + ahead] : '\0';
    }

    void take(std::size_t count) {
        out_.append(source_, at_, count);
        at_ += count;
    }

    void next() {
        const char c = source_[at_];
        const bool was_quantifier = std::exchange(after_quantifier_, false);
        switch (c) {
        case '\\':
            return escape();
        case '[':
            return character_class();
        case '(':
            return group();
        case '^':
        case '$':
            return edge(c);
        case '+':
            if (was_quantifier) // would be possessive
                throw Error(kUnexpectedQuantifier);
            [[fallthrough]];
        case '*':
        case '?':
        case '}':
            after_quantifier_ = !was_quantifier || c != '?';
            return take(1);
        default:
            return take(1);
        }
    }

    // A letter that means nothing after a backslash is itself.
    void escape() {
        constexpr std::string_view kMeaning = "bBcdDfnrsStuvwWx";
        const char c = peek(1);
        const bool is_letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
        if (at_ + 1 == source_.size())
            throw Error(kSyntaxError);
        if (is_letter && kMeaning.find(c) == std::string_view::npos)
            ++at_;
        else
            take(1);
        take(1);
    }

    // A bracket inside begins no class of its own.
    void character_class() {
        take(peek(1) == '^' ? 2 : 1);
        while (at_ < source_.size() && source_[at_] != ']') {
            if (source_[at_] == '\\') {
                escape();
                continue;
            }
            if (source_[at_] == '[')
                out_ += '\\';
            take(1);
        }
        if (at_ == source_.size())
            throw Error(kExpectedSquareBracket);
        take(1);
    }

    void group() {
        if (peek(1) == '*')
            throw Error(kUnexpectedQuantifier);
        if (peek(1) != '?')
            return take(1);
        if (peek(2) != ':' && peek(2) != '=' && peek(2) != '!')
            throw Error(kSyntaxError);
        take(3);
    }

    // Lines end at either character of a line break.
    void edge(char c) {
        ++at_;
        if (!multi_line_)
            out_ += c;
        else
            out_ += c == '^' ? "(?<![^\\n\\r])" : "(?![^\\n\\r])";
    }

    std::string_view source_;
    bool multi_line_;
    std::size_t at_ = 0;
    bool after_quantifier_ = false;
    std::string out_;
};

std::int32_t error_number(int code) noexcept {
    switch (code) {
    case PCRE2_ERROR_MISSING_SQUARE_BRACKET:
        return kExpectedSquareBracket;
    case PCRE2_ERROR_CLASS_RANGE_ORDER:
        return kInvalidRange;
    case PCRE2_ERROR_QUANTIFIER_INVALID:
        return kUnexpectedQuantifier;
    case PCRE2_ERROR_MISSING_CLOSING_PARENTHESIS:
        return kExpectedBracket;
    case PCRE2_ERROR_PATTERN_TOO_LARGE:
    case PCRE2_ERROR_PATTERN_TOO_COMPLICATED:
    case PCRE2_ERROR_PARENTHESES_NEST_TOO_DEEP:
    case PCRE2_ERROR_HEAP_FAILED:
        return 7;
    default:
        return kSyntaxError;
    }
}

PCRE2_SPTR units(std::string_view text) noexcept {
    return reinterpret_cast<PCRE2_SPTR>(text.data());
}

// The same positions with nothing malformed: what is no character becomes one of as many bytes.
std::string repaired(std::string_view text) {
    std::string result(text);
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t begin = at;
        const char32_t code = next_code_point(text, at);
        if (code >= 0xD800 && code <= 0xDFFF)
            result.replace(begin, 3, "\xEF\xBF\xBD");
        else if (at - begin == 1 && static_cast<unsigned char>(text[begin]) >= 0x80)
            result[begin] = '\x1A';
    }
    return result;
}

} // namespace

// --- Pattern ---------------------------------------------------------------------------------------

struct Pattern::Compiled {
    Code code;
    std::uint32_t groups = 0;
};

Pattern::Pattern(std::string_view source, bool ignore_case, bool multi_line)
    : compiled_(std::make_unique<Compiled>()) {
    if (source.size() > kMaxLength)
        throw Error(7);
    const CompileContext context(pcre2_compile_context_create(nullptr));
    if (!context)
        throw std::bad_alloc();
    pcre2_set_newline(context.get(), PCRE2_NEWLINE_LF);
    pcre2_set_parens_nest_limit(context.get(), kMaxNesting);
    const std::string translated = Translation(source, multi_line).result();
    const std::uint32_t options = PCRE2_UTF | PCRE2_ALT_BSUX | PCRE2_ALLOW_EMPTY_CLASS |
                                  PCRE2_DOLLAR_ENDONLY | PCRE2_MATCH_UNSET_BACKREF | PCRE2_NEVER_BACKSLASH_C |
                                  PCRE2_USE_OFFSET_LIMIT | (ignore_case ? PCRE2_CASELESS : 0U);
    int error = 0;
    PCRE2_SIZE place = 0;
    compiled_->code.reset(
        pcre2_compile(units(translated), translated.size(), options, &error, &place, context.get()));
    if (!compiled_->code)
        throw Error(error_number(error));
    pcre2_pattern_info(compiled_->code.get(), PCRE2_INFO_CAPTURECOUNT, &compiled_->groups);
}

Pattern::~Pattern() = default;

std::size_t Pattern::groups() const noexcept {
    return compiled_->groups;
}

// --- PatternSearch ---------------------------------------------------------------------------------

struct PatternSearch::Buffers {
    MatchData data;
    MatchContext context;
};

PatternSearch::PatternSearch(const Pattern& pattern, std::string_view text)
    : pattern_(pattern),
      text_(text),
      buffers_(std::make_unique<Buffers>()),
      parts_(pattern.groups() + 1),
      window_(kFirstWindow) {
    buffers_->data.reset(pcre2_match_data_create_from_pattern(pattern.compiled_->code.get(), nullptr));
    buffers_->context.reset(pcre2_match_context_create(nullptr));
    if (!buffers_->data || !buffers_->context)
        throw std::bad_alloc();
    pcre2_set_match_limit(buffers_->context.get(), kMaxSteps);
    pcre2_set_heap_limit(buffers_->context.get(), kMaxKilobytes);
}

PatternSearch::~PatternSearch() = default;

int PatternSearch::match(std::size_t last_start) {
    pcre2_set_offset_limit(buffers_->context.get(), last_start);
    const auto run = [&] {
        return pcre2_match(pattern_.compiled_->code.get(), units(text_), text_.size(), at_,
                           is_checked_ ? PCRE2_NO_UTF_CHECK : 0U, buffers_->data.get(),
                           buffers_->context.get());
    };
    const auto is_malformed = [](int result) {
        return result <= PCRE2_ERROR_UTF8_ERR1 && result >= PCRE2_ERROR_UTF8_ERR21;
    };
    int found = run();
    if (is_malformed(found)) {
        repaired_ = repaired(text_);
        text_ = repaired_;
        found = run();
    }
    is_checked_ = !is_malformed(found);
    return found;
}

// Searches from at_ on, a window of places after the other.
bool PatternSearch::find() {
    using Clock = Interrupt::Clock;
    for (;;) {
        const std::size_t last_start = std::min(at_ + window_, text_.size());
        const Clock::time_point before = Clock::now();
        const int found = match(last_start);
        const Clock::duration taken = Clock::now() - before;
        if (taken < kShort)
            window_ *= 4;
        else if (taken > kLong)
            window_ = std::max<std::size_t>(window_ / 4, 1);
        if (found > 0)
            return true;
        if (found == PCRE2_ERROR_NOMEMORY)
            throw std::bad_alloc();
        if (found != PCRE2_ERROR_NOMATCH)
            throw Error(kErrorCall, "The regular expression needs too many steps for this text");
        Interrupt* const run = Interrupt::current();
        if (last_start == text_.size() || (run && run->check()))
            return false;
        at_ = last_start + 1;
        while (at_ < text_.size() && (static_cast<unsigned char>(text_[at_]) & 0xC0) == 0x80)
            ++at_; // to the beginning of a character
    }
}

bool PatternSearch::next() {
    if (at_ > text_.size() || !find()) {
        at_ = text_.size() + 1;
        return false;
    }
    const PCRE2_SIZE* const offsets = pcre2_get_ovector_pointer(buffers_->data.get());
    for (std::size_t i = 0; i < parts_.size(); ++i) {
        parts_[i] = {};
        if (offsets[2 * i] != PCRE2_UNSET)
            parts_[i] = {static_cast<std::uint32_t>(offsets[2 * i]),
                         static_cast<std::uint32_t>(offsets[2 * i + 1])};
    }
    at_ = parts_[0].end;
    if (parts_[0].end == parts_[0].begin) { // an empty match: on with the next character
        if (at_ < text_.size())
            next_code_point(text_, at_);
        else
            ++at_;
    }
    return true;
}

} // namespace tabrixdb::scripting
