#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tabrixdb::scripting {

// A regular expression as scripts write it, compiled. It is bounded: what would take too long or too much
// memory at one place of a text is Error 5.
class Pattern {
public:
    // Patterns of more bytes are Error 7, those that are none Error 5017 to 5021.
    static constexpr std::size_t kMaxLength = 65536;
    // Brackets inside each other.
    static constexpr std::uint32_t kMaxNesting = 200;

    Pattern(std::string_view source, bool ignore_case, bool multi_line);
    ~Pattern();

    // Captures, besides the whole match.
    std::size_t groups() const noexcept;

private:
    friend class PatternSearch;
    struct Compiled;
    std::unique_ptr<Compiled> compiled_;
};

// Walks the matches of a pattern in a text, which both have to stay. Long searches look at the page's
// Interrupt and end when it has to stop.
class PatternSearch {
public:
    struct Part { // in bytes; a group that took no part has none
        static constexpr std::uint32_t kNone = UINT32_MAX;

        std::uint32_t begin = kNone;
        std::uint32_t end = kNone;

        bool exists() const noexcept { return begin != kNone; }
    };

    PatternSearch(const Pattern& pattern, std::string_view text);
    ~PatternSearch();
    PatternSearch(const PatternSearch&) = delete;
    PatternSearch& operator=(const PatternSearch&) = delete;

    // Moves to the next match; false when there is none.
    bool next();

    // The match, then its groups.
    std::span<const Part> parts() const noexcept { return parts_; }

private:
    struct Buffers;

    int match(std::size_t last_start);
    bool find();

    const Pattern& pattern_;
    std::string_view text_;
    std::string repaired_; // the text, where it is no well-formed UTF-8
    std::unique_ptr<Buffers> buffers_;
    std::vector<Part> parts_;
    std::size_t at_ = 0; // where the next search starts; beyond the end: nowhere
    std::size_t window_; // places that one call of the library tries
    bool is_checked_ = false;
};

} // namespace tabrixdb::scripting
