#include "automation/text.h"

#include "automation/error.h"
#include "automation/interrupt.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

namespace tabrixdb {

// --- Text ------------------------------------------------------------------------------------------

Text::Block* Text::allocate(std::size_t capacity) {
    if (capacity > kMaxTextBytes || !Interrupt::hold(sizeof(Block) + capacity))
        throw Error(14);
    void* memory = std::malloc(sizeof(Block) + capacity);
    if (!memory) {
        Interrupt::let_go(sizeof(Block) + capacity);
        throw Error(14);
    }
    Block* block = new (memory) Block;
    block->capacity = capacity;
    return block;
}

void Text::drop() noexcept {
    if (block_->references.fetch_sub(1, std::memory_order_acq_rel) == 1) {
        Interrupt::let_go(sizeof(Block) + block_->capacity);
        block_->~Block();
        std::free(block_);
    }
}

Text::Text(std::string_view utf8) {
    if (utf8.empty())
        return;
    block_ = allocate(utf8.size());
    std::memcpy(block_->data(), utf8.data(), utf8.size());
    block_->size = utf8.size();
}

Text Text::bytes(std::string_view raw) {
    Text text;
    text.block_ = allocate(raw.size());
    std::copy(raw.begin(), raw.end(), text.block_->data());
    text.block_->size = raw.size();
    text.block_->is_bytes = true;
    return text;
}

std::size_t Text::units() const noexcept {
    if (!block_)
        return 0;
    std::size_t known = block_->units.load(std::memory_order_relaxed);
    if (known == kUnknown) {
        known = block_->is_bytes ? block_->size / 2 : utf16_length(view());
        block_->units.store(known, std::memory_order_relaxed);
    }
    return known;
}

namespace {

bool is_surrogate(std::string_view three, unsigned char low, unsigned char high) {
    const auto second = static_cast<unsigned char>(three[1]);
    return static_cast<unsigned char>(three[0]) == 0xED && second >= low && second <= high;
}

// True when `left` ends in a lone high surrogate and `right` begins with a lone low one.
bool halves_meet(std::string_view left, std::string_view right) {
    return left.size() >= 3 && right.size() >= 3 && is_surrogate(left.substr(left.size() - 3), 0xA0, 0xAF) &&
           is_surrogate(right, 0xB0, 0xBF);
}

char32_t surrogate_bits(std::string_view three) {
    return (static_cast<char32_t>(three[1] & 0x0F) << 6) | static_cast<char32_t>(three[2] & 0x3F);
}

} // namespace

// What units() will be after append(more), where it is cheap to tell: a length that is known stays so, and
// a loop that asks for it after each append costs its output and not its square.
std::size_t Text::units_after(std::string_view more) const noexcept {
    const std::size_t known = block_ ? block_->units.load(std::memory_order_relaxed) : 0;
    // A first byte that continues a character might complete a broken one.
    const bool separate = (static_cast<unsigned char>(more[0]) & 0xC0) != 0x80;
    return known == kUnknown || is_bytes() || !separate ? kUnknown : known + utf16_length(more);
}

void Text::append(std::string_view more) {
    if (more.empty())
        return;
    const bool alone = block_ && block_->references.load(std::memory_order_acquire) == 1;
    if (!is_bytes() && halves_meet(view(), more)) {
        std::string joined(view().substr(0, size() - 3));
        append_utf8(joined, 0x10000 + (surrogate_bits(view().substr(size() - 3)) << 10) +
                                surrogate_bits(more.substr(0, 3)));
        joined.append(more.substr(3));
        *this = Text(joined);
        return;
    }
    const std::size_t total = size() + more.size();
    const std::size_t units = units_after(more);
    if (!alone || block_->capacity < total) {
        if (total > kMaxTextBytes)
            throw Error(14);
        Block* grown =
            allocate(alone ? std::min(std::max(total, block_->capacity * 2), kMaxTextBytes) : total);
        grown->is_bytes = is_bytes();
        if (block_)
            std::memcpy(grown->data(), block_->data(), size());
        grown->size = size();
        std::memcpy(grown->data() + grown->size, more.data(), more.size());
        grown->size = total;
        grown->units.store(units, std::memory_order_relaxed);
        if (block_)
            drop();
        block_ = grown;
        return;
    }
    std::memmove(block_->data() + block_->size, more.data(), more.size());
    block_->size = total;
    block_->units.store(units, std::memory_order_relaxed);
}

// --- Unicode ---------------------------------------------------------------------------------------

namespace {

// Bytes of the sequence that starts with `lead`, by its lead byte alone; 1 for anything malformed.
std::size_t sequence_length(unsigned char lead) noexcept {
    if (lead >= 0xF0 && lead < 0xF5)
        return 4;
    if (lead >= 0xE0)
        return lead < 0xF0 ? 3 : 1;
    return lead >= 0xC2 ? 2 : 1;
}

// Whether a sequence with these first bytes is longer than its character needs, or behind the last character.
bool is_out_of_range(unsigned char lead, unsigned char second) noexcept {
    return (lead == 0xE0 && second < 0xA0) || (lead == 0xF0 && second < 0x90) ||
           (lead == 0xF4 && second > 0x8F);
}

// Length of a well-formed sequence at `at`, or 1.
std::size_t step(std::string_view utf8, std::size_t at) noexcept {
    const auto lead = static_cast<unsigned char>(utf8[at]);
    const std::size_t length = sequence_length(lead);
    if (at + length > utf8.size())
        return 1;
    for (std::size_t i = 1; i < length; ++i)
        if ((static_cast<unsigned char>(utf8[at + i]) & 0xC0) != 0x80)
            return 1;
    return length > 2 && is_out_of_range(lead, static_cast<unsigned char>(utf8[at + 1])) ? 1 : length;
}

} // namespace

namespace {

// How many of the bytes from `at` are ASCII, as far as whole words of eight go.
std::size_t ascii_run(std::string_view utf8, std::size_t at) noexcept {
    std::size_t end = at;
    for (; end + 8 <= utf8.size(); end += 8) {
        std::uint64_t word;
        std::memcpy(&word, utf8.data() + end, 8);
        if (word & 0x8080808080808080u)
            break;
    }
    return end - at;
}

} // namespace

std::size_t utf16_length(std::string_view utf8) noexcept {
    std::size_t units = 0;
    for (std::size_t at = 0; at < utf8.size();) {
        const std::size_t run = ascii_run(utf8, at);
        units += run;
        at += run;
        for (const std::size_t end = std::min(at + 8, utf8.size()); at < end;) {
            const std::size_t length = step(utf8, at);
            units += length == 4 ? 2 : 1;
            at += length;
        }
    }
    return units;
}

std::size_t byte_of_unit(std::string_view utf8, std::size_t unit) noexcept {
    std::size_t at = 0;
    for (std::size_t units = 0; at < utf8.size() && units < unit;) {
        const std::size_t run = std::min(ascii_run(utf8, at), unit - units);
        units += run;
        at += run;
        for (const std::size_t end = std::min(at + 8, utf8.size()); at < end && units < unit;) {
            const std::size_t length = step(utf8, at);
            units += length == 4 ? 2 : 1;
            at += length;
        }
    }
    return at;
}

void append_utf8(std::string& out, char32_t c) {
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | (c >> 6));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0 | (c >> 12));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (c >> 18));
        out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}

char32_t next_code_point(std::string_view utf8, std::size_t& at) noexcept {
    const auto lead = static_cast<unsigned char>(utf8[at]);
    const std::size_t length = step(utf8, at);
    if (length == 1) {
        ++at;
        return lead < 0x80 ? lead : 0xFFFD;
    }
    char32_t code_point = lead & (0xFF >> (length + 1));
    for (std::size_t i = 1; i < length; ++i)
        code_point = (code_point << 6) | (static_cast<unsigned char>(utf8[at + i]) & 0x3F);
    at += length;
    return code_point;
}

std::string to_utf16(std::string_view utf8) {
    std::string bytes;
    bytes.reserve(utf8.size() * 2);
    const auto add = [&bytes](char32_t unit) {
        bytes += static_cast<char>(unit & 0xFF);
        bytes += static_cast<char>(unit >> 8);
    };
    for (std::size_t at = 0; at < utf8.size();) {
        const char32_t c = next_code_point(utf8, at);
        if (c >= 0x10000) {
            add(0xD800 + ((c - 0x10000) >> 10));
            add(0xDC00 + ((c - 0x10000) & 0x3FF));
        } else {
            add(c);
        }
    }
    return bytes;
}

void append_utf16(std::string& out, std::string_view bytes) {
    const auto unit = [bytes](std::size_t at) {
        return static_cast<char32_t>(static_cast<unsigned char>(bytes[at]) |
                                     (static_cast<unsigned char>(bytes[at + 1]) << 8));
    };
    for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
        char32_t c = unit(at);
        if (c >= 0xD800 && c < 0xDC00 && at + 3 < bytes.size() && unit(at + 2) >= 0xDC00 &&
            unit(at + 2) < 0xE000) {
            c = 0x10000 + ((c & 0x3FF) << 10) + (unit(at + 2) & 0x3FF);
            at += 2;
        }
        append_utf8(out, c);
    }
}

// --- Ignoring case ---------------------------------------------------------------------------------

namespace {

// Lower-case form of a code point of the two-byte range (U+0080 to U+07FF), within that range.
char32_t lower_two_byte(char32_t c) noexcept {
    if ((c >= 0xC0 && c <= 0xDE && c != 0xD7) || (c >= 0x391 && c <= 0x3AB && c != 0x3A2))
        return c + 0x20;
    if (c >= 0x410 && c <= 0x42F)
        return c + 0x20;
    if (c >= 0x400 && c <= 0x40F)
        return c + 0x50;
    if (c == 0x178)
        return 0xFF;
    const bool even_upper = (c >= 0x100 && c <= 0x137 && c != 0x130 && c != 0x131) ||
                            (c >= 0x14A && c <= 0x177) || (c >= 0x460 && c <= 0x481) ||
                            (c >= 0x48A && c <= 0x4BF) || (c >= 0x4D0 && c <= 0x52F);
    if (even_upper)
        return c | 1;
    const bool odd_upper = (c >= 0x139 && c <= 0x148) || (c >= 0x179 && c <= 0x17E);
    if (odd_upper)
        return c + (c & 1);
    switch (c) {
    case 0x386:
        return 0x3AC;
    case 0x388:
        return 0x3AD;
    case 0x389:
        return 0x3AE;
    case 0x38A:
        return 0x3AF;
    case 0x38C:
        return 0x3CC;
    case 0x38E:
        return 0x3CD;
    case 0x38F:
        return 0x3CE;
    default:
        return c;
    }
}

char32_t upper_two_byte(char32_t c) noexcept {
    if (c == 0xFF)
        return 0x178;
    // Each pair lies at one of these distances; the one that folds back is the partner.
    for (const char32_t distance : {0x20, 0x50, 0x01, 0x25, 0x26, 0x3F, 0x40})
        if (c > distance && c - distance >= 0x80 && c - distance != c && lower_two_byte(c - distance) == c)
            return c - distance;
    return c;
}

// Compared byte by byte in folded form: yields the folded bytes of a text one after another.
class FoldedBytes {
public:
    explicit FoldedBytes(std::string_view text) noexcept : text_(text) {}

    bool done() const noexcept { return at_ >= text_.size(); }

    unsigned char next() noexcept {
        const auto c = static_cast<unsigned char>(text_[at_]);
        if (pending_) {
            ++at_;
            return std::exchange(pending_, 0);
        }
        if (c >= 'A' && c <= 'Z')
            return static_cast<unsigned char>(text_[at_++] + 32);
        if (c >= 0xC3 && c <= 0xD4 && step(text_, at_) == 2) {
            const char32_t folded = lower_two_byte((static_cast<char32_t>(c & 0x1F) << 6) |
                                                   (static_cast<unsigned char>(text_[at_ + 1]) & 0x3F));
            ++at_;
            pending_ = static_cast<unsigned char>(0x80 | (folded & 0x3F));
            return static_cast<unsigned char>(0xC0 | (folded >> 6));
        }
        ++at_;
        return c;
    }

private:
    std::string_view text_;
    std::size_t at_ = 0;
    unsigned char pending_ = 0;
};

template <class Ascii, class TwoByte>
std::string map_case(std::string_view text, Ascii ascii, TwoByte two_byte) {
    std::string out(text);
    for (std::size_t at = 0; at < out.size();) {
        const auto c = static_cast<unsigned char>(out[at]);
        if (c < 0x80) {
            out[at++] = ascii(static_cast<char>(c));
        } else if (const std::size_t length = step(out, at); length == 2) {
            const char32_t mapped = two_byte((static_cast<char32_t>(c & 0x1F) << 6) |
                                             (static_cast<unsigned char>(out[at + 1]) & 0x3F));
            out[at] = static_cast<char>(0xC0 | (mapped >> 6));
            out[at + 1] = static_cast<char>(0x80 | (mapped & 0x3F));
            at += 2;
        } else {
            at += length;
        }
    }
    return out;
}

char ascii_lower(char c) noexcept {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}

bool starts_with_ignore_case(std::string_view text, std::string_view wanted) noexcept {
    return text.size() >= wanted.size() && equal_ignore_case(text.substr(0, wanted.size()), wanted);
}

template <class Find>
std::string replace_each(std::string_view text, std::string_view wanted, std::string_view with,
                         std::size_t most, Find find) {
    std::string out;
    std::size_t done = 0;
    if (!wanted.empty()) {
        for (std::size_t at = find(0); at != std::string_view::npos; at = find(done)) {
            out.append(text.substr(done, at - done)).append(with);
            if (out.size() > most)
                throw Error(14);
            done = at + wanted.size();
        }
    }
    return done == 0 ? std::string(text) : std::move(out.append(text.substr(done)));
}

} // namespace

std::string lower(std::string_view text) {
    return map_case(text, ascii_lower, lower_two_byte);
}

std::string_view trimmed(std::string_view text, std::string_view characters) noexcept {
    const std::size_t first = text.find_first_not_of(characters);
    return first == std::string_view::npos
               ? std::string_view()
               : text.substr(first, text.find_last_not_of(characters) - first + 1);
}

std::string upper(std::string_view text) {
    return map_case(
        text, [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; }, upper_two_byte);
}

std::string fold(std::string_view text) {
    return lower(text);
}

int compare_ignore_case(std::string_view a, std::string_view b) noexcept {
    FoldedBytes left(a), right(b);
    while (!left.done() && !right.done()) {
        const int difference = int{left.next()} - int{right.next()};
        if (difference != 0)
            return difference;
    }
    return int{!left.done()} - int{!right.done()};
}

bool equal_ignore_case(std::string_view a, std::string_view b) noexcept {
    return a.size() == b.size() && compare_ignore_case(a, b) == 0;
}

std::size_t find_ignore_case(std::string_view text, std::string_view wanted, std::size_t from) noexcept {
    if (from > text.size())
        return std::string_view::npos;
    if (wanted.empty())
        return from;
    const char first = wanted[0];
    const char lower_first = ascii_lower(first);
    const char upper_first = first >= 'a' && first <= 'z' ? static_cast<char>(first - 32) : first;
    const bool plain = lower_first == upper_first && static_cast<unsigned char>(first) < 0x80;
    for (std::size_t at = from; at + wanted.size() <= text.size(); ++at) {
        if (plain) { // a first character without case, such as "#": let memchr do the walking
            const void* hit = std::memchr(text.data() + at, first, text.size() - at);
            if (!hit)
                return std::string_view::npos;
            at = static_cast<std::size_t>(static_cast<const char*>(hit) - text.data());
        } else if (static_cast<unsigned char>(first) < 0x80 && text[at] != lower_first &&
                   text[at] != upper_first) {
            continue;
        }
        if (starts_with_ignore_case(text.substr(at), wanted))
            return at;
    }
    return std::string_view::npos;
}

std::size_t rfind_ignore_case(std::string_view text, std::string_view wanted) noexcept {
    if (wanted.size() > text.size())
        return std::string_view::npos;
    for (std::size_t at = text.size() - wanted.size() + 1; at-- > 0;)
        if (starts_with_ignore_case(text.substr(at), wanted))
            return at;
    return std::string_view::npos;
}

bool contains_ignore_case(std::string_view text, std::string_view wanted) noexcept {
    return find_ignore_case(text, wanted) != std::string_view::npos;
}

std::string replace_ignore_case(std::string_view text, std::string_view wanted, std::string_view with,
                                std::size_t most) {
    return replace_each(text, wanted, with, most,
                        [&](std::size_t from) { return find_ignore_case(text, wanted, from); });
}

std::string replace_all(std::string_view text, std::string_view wanted, std::string_view with) {
    return replace_each(text, wanted, with, kMaxTextBytes,
                        [&](std::size_t from) { return text.find(wanted, from); });
}

std::vector<std::string_view> split(std::string_view text, char separator) {
    std::vector<std::string_view> parts;
    for (std::size_t at = 0; !text.empty() && at <= text.size();) {
        const std::size_t end = std::min(text.find(separator, at), text.size());
        parts.push_back(text.substr(at, end - at));
        at = end + 1;
    }
    return parts;
}

std::size_t IgnoreCaseHash::operator()(std::string_view text) const noexcept {
    std::size_t hash = 14695981039346656037u; // FNV-1a over the folded bytes
    for (FoldedBytes bytes(text); !bytes.done();)
        hash = (hash ^ bytes.next()) * 1099511628211u;
    return hash;
}

} // namespace tabrixdb
