#include "asp/page_source.h"

#include "asp/asp_error.h"
#include "asp/code_page.h"
#include "automation/text.h"

#include <algorithm>
#include <charconv>

namespace tabrixdb::asp {

namespace {

using vbscript::Piece;
using vbscript::Position;

constexpr std::string_view kBlanks = " \t\r\n";

bool is_blank(char c) {
    return kBlanks.find(c) != std::string_view::npos;
}

bool starts_with_word(std::string_view text, std::string_view word) {
    return text.size() >= word.size() && equal_ignore_case(text.substr(0, word.size()), word);
}

// Where a place of a text lies; asked in rising order, so that each byte is counted once.
class Places {
public:
    Places(std::uint32_t file, std::string_view text) : text_(text), at_{.file = file} {}

    Position of(std::size_t offset) {
        for (; offset_ < offset; ++offset_) {
            const char c = text_[offset_];
            const bool line_end = c == '\n' || (c == '\r' && text_.substr(offset_ + 1, 1) != "\n");
            if (line_end) {
                ++at_.line;
                at_.column = 1;
            } else if ((static_cast<unsigned char>(c) & 0xC0) != 0x80) {
                at_.column += static_cast<unsigned char>(c) >= 0xF0 ? 2 : 1;
            }
        }
        return at_;
    }

private:
    std::string_view text_;
    std::size_t offset_ = 0;
    Position at_;
};

// The attributes of a tag or directive, one a call: `name="value"`, `name='value'`, `name=value`, `name`.
class Attributes {
public:
    explicit Attributes(std::string_view text) : rest_(text) {}

    bool next(std::string_view& name, std::string_view& value) {
        skip_blanks();
        if (rest_.empty())
            return false;
        name = take(rest_.find_first_of(" \t\r\n="));
        value = {};
        skip_blanks();
        if (!rest_.starts_with('='))
            return true;
        rest_.remove_prefix(1);
        skip_blanks();
        if (rest_.starts_with('"') || rest_.starts_with('\'')) {
            const char quote = rest_[0];
            rest_.remove_prefix(1);
            value = take(rest_.find(quote));
            rest_.remove_prefix(rest_.empty() ? 0 : 1);
        } else {
            value = take(rest_.find_first_of(kBlanks));
        }
        return true;
    }

private:
    void skip_blanks() { rest_.remove_prefix(std::min(rest_.find_first_not_of(kBlanks), rest_.size())); }

    std::string_view take(std::size_t end) {
        end = std::min(end, rest_.size());
        const std::string_view taken = rest_.substr(0, end);
        rest_.remove_prefix(end);
        return taken;
    }

    std::string_view rest_;
};

// Longest opening part of a script tag. Without a bound, a page of unclosed tags would be read to its end at
// each of them.
constexpr std::size_t kMaxTagBytes = 4096;

// The end of a tag's opening part, its quoted values passed over; npos when it is not closed.
std::size_t tag_end(std::string_view text, std::size_t from) {
    char quote = 0;
    for (std::size_t i = from; i < std::min(text.size(), from + kMaxTagBytes); ++i) {
        const char c = text[i];
        if (quote ? c == quote : c == '>') {
            if (!quote)
                return i;
            quote = 0;
        } else if (!quote && (c == '"' || c == '\'')) {
            quote = c;
        }
    }
    return std::string_view::npos;
}

struct ScriptTag {
    bool on_server = false;
    std::string_view language;
    std::string_view source;
};

ScriptTag script_tag(std::string_view attributes) {
    ScriptTag tag;
    Attributes all(attributes);
    for (std::string_view name, value; all.next(name, value);) {
        if (equal_ignore_case(name, "runat"))
            tag.on_server = equal_ignore_case(value, "server");
        else if (equal_ignore_case(name, "language"))
            tag.language = value;
        else if (equal_ignore_case(name, "src"))
            tag.source = value;
    }
    return tag;
}

bool is_our_language(std::string_view language) {
    return language.empty() || equal_ignore_case(language, "vbscript") || equal_ignore_case(language, "vbs");
}

std::optional<std::uint32_t> number(std::string_view text) {
    std::uint32_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(value) : std::nullopt;
}

class Reader {
public:
    Reader(PageFiles& files, std::uint32_t code_page) : files_(files), code_page_(code_page) {}

    std::optional<PageSource> read(std::string_view plain) {
        std::optional<PageFiles::File> file = files_.read(plain);
        if (!file)
            return std::nullopt;
        take_code_page(file->bytes);
        add_file(std::string(plain), std::move(*file));
        page_.source.pieces.insert(page_.source.pieces.end(), tags_.begin(), tags_.end());
        return std::move(page_);
    }

private:
    // The file that is being taken apart.
    struct Frame {
        std::string path; // plain virtual path
        std::string_view text;
        Places places;
    };

    // The page's code page is needed before its text can be read.
    void take_code_page(std::string_view bytes) {
        const std::size_t open = bytes.find("<%@");
        const std::size_t close = bytes.find("%>", std::min(open, bytes.size()));
        if (close == std::string_view::npos)
            return;
        Attributes all(bytes.substr(open + 3, close - open - 3));
        for (std::string_view name, value; all.next(name, value);)
            if (equal_ignore_case(name, "codepage"))
                code_page_ = number(value).value_or(code_page_);
    }

    // Keeps the file's text and gives its number.
    std::uint32_t keep(const std::string& path, PageFiles::File file) {
        page_.files.push_back(std::move(file.used));
        page_.source.files.push_back(path);
        page_.source.texts.push_back(
            std::make_shared<const std::string>(decode_file(std::move(file.bytes), code_page_)));
        return static_cast<std::uint32_t>(page_.source.files.size() - 1);
    }

    void add_file(std::string path, PageFiles::File file) {
        const std::uint32_t index = keep(path, std::move(file));
        const std::string_view text = *page_.source.texts[index];
        Frame frame{std::move(path), text, Places(index, text)};
        open_.push_back(frame.path);
        take_apart(frame);
        open_.pop_back();
    }

    void take_apart(Frame& frame) {
        const std::string_view text = frame.text;
        std::size_t written = 0; // everything before it is in a piece
        for (std::size_t at = text.find('<'); at != std::string_view::npos;) {
            const std::size_t end = special(frame, at, written);
            if (end > at)
                written = end;
            at = text.find('<', std::max(end, at + 1));
        }
        add(page_.source.pieces, frame, Piece::Kind::Literal, written, text.size());
    }

    // Takes what starts at this "<" if it is the server's, with the literal text before it; returns where it
    // ends, or `at` for plain HTML.
    std::size_t special(Frame& frame, std::size_t at, std::size_t written) {
        const std::string_view rest = frame.text.substr(at);
        if (rest.starts_with("<%"))
            return script_block(frame, at, written);
        if (rest.starts_with("<!--"))
            return include(frame, at, written);
        if (starts_with_word(rest, "<script") && rest.size() > 7 && (is_blank(rest[7]) || rest[7] == '>'))
            return script_element(frame, at, written);
        return at;
    }

    std::size_t script_block(Frame& frame, std::size_t at, std::size_t written) {
        // Strings and comments do not hide the end of a block; this is how the platform reads pages.
        const std::size_t close = frame.text.find("%>", at + 2);
        if (close == std::string_view::npos)
            fail(116, {}, frame, at);
        add(page_.source.pieces, frame, Piece::Kind::Literal, written, at);
        const std::size_t first = frame.text.find_first_not_of(kBlanks, at + 2);
        if (frame.text[at + 2] == '@')
            directive(frame, at, frame.text.substr(at + 3, close - at - 3));
        else if (frame.text[first] == '=' && first < close)
            add(page_.source.pieces, frame, Piece::Kind::Expression, first + 1, close);
        else if (first < close)
            add(page_.source.pieces, frame, Piece::Kind::Code, at + 2, close);
        return close + 2;
    }

    void directive(Frame& frame, std::size_t at, std::string_view text) {
        if (has_directive_)
            fail(141, {}, frame, at);
        has_directive_ = true;
        Attributes all(text);
        for (std::string_view name, value; all.next(name, value);) {
            if (equal_ignore_case(name, "language")) {
                if (!is_our_language(value))
                    fail(129, value, frame, at);
            } else if (equal_ignore_case(name, "codepage")) {
                page_.directives.code_page = number(value);
                if (!page_.directives.code_page || !is_code_page(*page_.directives.code_page))
                    fail(221, "CODEPAGE", frame, at);
            } else if (equal_ignore_case(name, "lcid")) {
                page_.directives.lcid = number(value);
                if (!page_.directives.lcid)
                    fail(221, "LCID", frame, at);
            } else if (equal_ignore_case(name, "enablesessionstate")) {
                page_.directives.session = !equal_ignore_case(value, "false");
            } else if (!equal_ignore_case(name, "transaction")) { // which this host does not have
                fail(221, name, frame, at);
            }
        }
    }

    std::size_t include(Frame& frame, std::size_t at, std::size_t written) {
        const std::size_t word = frame.text.find_first_not_of(kBlanks, at + 4);
        if (word == std::string_view::npos || !starts_with_word(frame.text.substr(word), "#include"))
            return at;
        const std::size_t close = frame.text.find("-->", word);
        if (close == std::string_view::npos)
            fail(127, {}, frame, at);
        add(page_.source.pieces, frame, Piece::Kind::Literal, written, at);
        std::string_view name, value;
        Attributes(frame.text.substr(word + 8, close - word - 8)).next(name, value);
        const bool from_root = equal_ignore_case(name, "virtual");
        if (value.empty() || (!from_root && !equal_ignore_case(name, "file")))
            fail(128, {}, frame, at);
        if (!from_root && (value.starts_with('/') || value.starts_with('\\')))
            fail(130, value, frame, at);
        auto [path, file] = open(value, from_root ? "/" : folder_of(frame.path), frame, at);
        add_file(std::move(path), std::move(file));
        return close + 3;
    }

    std::size_t script_element(Frame& frame, std::size_t at, std::size_t written) {
        const std::size_t end = tag_end(frame.text, at + 7);
        if (end == std::string_view::npos)
            return at;
        const ScriptTag tag = script_tag(frame.text.substr(at + 7, end - at - 7));
        if (!tag.on_server)
            return at;
        if (!is_our_language(tag.language))
            fail(129, tag.language, frame, at);
        const std::size_t close = find_ignore_case(frame.text, "</script", end);
        const std::size_t closed = close == std::string_view::npos ? close : frame.text.find('>', close);
        if (closed == std::string_view::npos)
            fail(117, {}, frame, at);
        add(page_.source.pieces, frame, Piece::Kind::Literal, written, at);
        if (tag.source.empty()) {
            add(tags_, frame, Piece::Kind::Code, end + 1, close);
        } else {
            auto [path, file] = open(tag.source, folder_of(frame.path), frame, at);
            const std::uint32_t index = keep(path, std::move(file));
            tags_.push_back({Piece::Kind::Code, *page_.source.texts[index], {.file = index}});
        }
        return closed + 1;
    }

    struct Opened {
        std::string path;
        PageFiles::File file;
    };

    // A file that the page names, with the bounds of what a page may be made of.
    Opened open(std::string_view name, std::string_view folder, Frame& frame, std::size_t at) {
        std::optional<std::string> path = plain_path(name, folder, true);
        if (!path)
            fail(126, name, frame, at);
        for (const std::string& including : open_)
            if (equal_ignore_case(including, *path))
                fail(132, std::string(*path).append(" includes itself"), frame, at);
        if (open_.size() >= kMaxIncludeDepth || page_.files.size() >= kMaxIncludes)
            fail(132, "too many included files", frame, at);
        std::optional<PageFiles::File> file = files_.read(*path);
        if (!file)
            fail(126, name, frame, at);
        bytes_ += file->bytes.size();
        if (bytes_ > kMaxPageBytes)
            fail(132, "the included files are too long", frame, at);
        return {std::move(*path), std::move(*file)};
    }

    static void add(std::vector<Piece>& pieces, Frame& frame, Piece::Kind kind, std::size_t from,
                    std::size_t to) {
        const std::string_view text = frame.text.substr(from, to - from);
        if (kind == Piece::Kind::Literal ? text.empty()
                                         : kind == Piece::Kind::Code && trimmed(text, kBlanks).empty())
            return;
        pieces.push_back({kind, text, frame.places.of(from)});
    }

    [[noreturn]] static void fail(int code, std::string_view detail, Frame& frame, std::size_t at) {
        throw PageError(code, detail, frame.path, frame.places.of(at).line);
    }

    PageFiles& files_;
    std::uint32_t code_page_;
    PageSource page_;
    std::vector<Piece> tags_; // script tags, which come after all inline script
    std::vector<std::string> open_;
    std::size_t bytes_ = 0;
    bool has_directive_ = false;
};

} // namespace

std::optional<PageSource> read_page(PageFiles& files, std::string_view plain, std::uint32_t code_page) {
    return Reader(files, code_page).read(plain);
}

} // namespace tabrixdb::asp
