#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tabrixdb {

// The string of the automation world: immutable, shared between variants, UTF-8 inside. It remembers its
// length in UTF-16 code units (the unit in which scripts count), so that asking again is free. A lone
// surrogate, which a script can make, is kept as its three-byte form and joined with its other half when
// the two meet in append().
//
// The second representation is the byte string (binary reads, the ...B functions): raw bytes, two of
// which make one unit; text routines treat its bytes as they are.
//
// Copies share one block, from any number of threads; one Text object belongs to one thread at a time.
class Text {
public:
    Text() noexcept = default;
    Text(std::string_view utf8);

    Text(const std::string& utf8) : Text(std::string_view(utf8)) {}

    Text(const char* utf8) : Text(std::string_view(utf8)) {}

    Text(const Text& other) noexcept : block_(other.block_) {
        if (block_)
            block_->references.fetch_add(1, std::memory_order_relaxed);
    }

    Text(Text&& other) noexcept : block_(std::exchange(other.block_, nullptr)) {}

    Text& operator=(Text other) noexcept {
        std::swap(block_, other.block_);
        return *this;
    }

    ~Text() {
        if (block_)
            drop();
    }

    static Text bytes(std::string_view raw);

    std::string_view view() const noexcept {
        return block_ ? std::string_view(block_->data(), block_->size) : std::string_view();
    }

    operator std::string_view() const noexcept { return view(); }

    std::string str() const { return std::string(view()); }

    bool empty() const noexcept { return size() == 0; }

    std::size_t size() const noexcept { return block_ ? block_->size : 0; } // in bytes

    bool is_bytes() const noexcept { return block_ && block_->is_bytes; }

    // Length in UTF-16 code units (byte strings: half their bytes, rounded down). Counted once a block.
    std::size_t units() const noexcept;

    // True when every byte is one unit, so that unit positions are byte positions.
    bool ascii() const noexcept { return !is_bytes() && units() == size(); }

    // Appends in place when this is the only holder of the block (growing by doubling), so that a loop
    // of s = s & x costs its output and not its square. `more` may lie inside this text.
    void append(std::string_view more);

    friend bool operator==(const Text& a, const Text& b) noexcept {
        return a.block_ == b.block_ || a.view() == b.view();
    }

private:
    static constexpr std::size_t kUnknown = static_cast<std::size_t>(-1);

    struct Block {
        std::atomic<std::uint32_t> references{1};
        bool is_bytes = false;
        std::size_t size = 0;
        std::size_t capacity = 0;
        std::atomic<std::size_t> units{kUnknown};

        char* data() noexcept { return reinterpret_cast<char*>(this + 1); }
    };

    static Block* allocate(std::size_t capacity);
    std::size_t units_after(std::string_view more) const noexcept;
    void drop() noexcept;

    Block* block_ = nullptr;
};

// Thrown as Error 14 ("Out of string space") before a string would pass this many bytes: it bounds what a
// page's loop can hold, and stays below every 32-bit length of the platform's own strings.
inline constexpr std::size_t kMaxTextBytes = std::size_t{512} * 1024 * 1024;

// --- Unicode ---------------------------------------------------------------------------------------

// UTF-16 code units of a UTF-8 text (a malformed byte counts as one).
std::size_t utf16_length(std::string_view utf8) noexcept;
// The byte position of the unit at `unit` (0-based), or size() when there are fewer.
std::size_t byte_of_unit(std::string_view utf8, std::size_t unit) noexcept;
// Appends the UTF-8 form of one code point (surrogates in their three-byte form).
void append_utf8(std::string& out, char32_t code_point);
// UTF-16 in little-endian byte order, as byte strings hold text: to it, and appended back from it (a last odd
// byte is left out). Lone surrogates survive both ways.
std::string to_utf16(std::string_view utf8);
void append_utf16(std::string& out, std::string_view bytes);
// The code point at byte `at`, which is moved past it; a malformed byte gives U+FFFD and moves by one.
char32_t next_code_point(std::string_view utf8, std::size_t& at) noexcept;

// --- Ignoring case ---------------------------------------------------------------------------------
// The one meaning of "ignore case" in the system: letters of ASCII and the Latin, Greek and Cyrillic
// alphabets are equal to their other case. Every pair keeps its length in UTF-8, so a position found in
// the folded text is the position in the text.

std::string fold(std::string_view text); // to the lower-case form
bool equal_ignore_case(std::string_view a, std::string_view b) noexcept;
int compare_ignore_case(std::string_view a, std::string_view b) noexcept; // <0, 0, >0 by folded bytes
// First position at or after `from`, or npos.
std::size_t find_ignore_case(std::string_view text, std::string_view wanted, std::size_t from = 0) noexcept;
std::size_t rfind_ignore_case(std::string_view text, std::string_view wanted) noexcept;
bool contains_ignore_case(std::string_view text, std::string_view wanted) noexcept;
// Replaces every occurrence, left to right, never looking into what it put in. An empty `wanted` changes
// nothing.
// The result may have `most` bytes; one more is Error 14.
std::string replace_ignore_case(std::string_view text, std::string_view wanted, std::string_view with,
                                std::size_t most = kMaxTextBytes);
std::string replace_all(std::string_view text, std::string_view wanted, std::string_view with);
// The parts between separators, empty ones included; none for an empty text. Views into `text`.
std::vector<std::string_view> split(std::string_view text, char separator);
// Without such characters at both ends. A view into `text`.
std::string_view trimmed(std::string_view text, std::string_view characters = " ") noexcept;
std::string upper(std::string_view text);
std::string lower(std::string_view text);

// Hash and equality for maps whose keys ignore case.
struct IgnoreCaseHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const noexcept;
};

struct IgnoreCaseEqual {
    using is_transparent = void;

    bool operator()(std::string_view a, std::string_view b) const noexcept { return equal_ignore_case(a, b); }
};

} // namespace tabrixdb
