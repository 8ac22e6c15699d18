#include "automation/display_format_section.h"
#include "automation/text.h"

#include <algorithm>

namespace tabrixdb {

namespace {

// Places are filled from the right unless "!" says from the left, so those that stay empty are the first or
// the last ones: an empty "@" is a blank, an empty "&" nothing. What finds no place follows at the end.
class TextWriter {
public:
    TextWriter(std::string& out, std::string_view text, const TextShape& shape)
        : out_(out),
          rest_(text),
          empty_(shape.places - std::min(shape.places, characters(text, shape.places))),
          first_empty_(shape.from_left ? shape.places - empty_ : 0) {}

    void write(const std::vector<FormatToken>& tokens) {
        for (const FormatToken& token : tokens)
            if (token.code == FormatToken::kLiteral)
                out_ += token.text;
            else if (token.code == '@' || token.code == '&')
                write_place(token.code);
        out_ += rest_;
    }

private:
    // The characters of a text, but no more than `most` are counted.
    static std::size_t characters(std::string_view text, std::size_t most) {
        std::size_t count = 0;
        for (std::size_t at = 0; at < text.size() && count < most; ++count)
            next_code_point(text, at);
        return count;
    }

    void write_place(char code) {
        const bool is_empty = place_ >= first_empty_ && place_ < first_empty_ + empty_;
        ++place_;
        if (!is_empty)
            take();
        else if (code == '@')
            out_ += ' ';
    }

    void take() {
        std::size_t end = 0;
        next_code_point(rest_, end);
        out_ += rest_.substr(0, end);
        rest_.remove_prefix(end);
    }

    std::string& out_;
    std::string_view rest_;
    std::size_t empty_; // places
    std::size_t first_empty_;
    std::size_t place_ = 0;
};

} // namespace

void append_text_section(std::string& out, std::string_view text, const FormatSection& section) {
    const char letter_case = section.text.letter_case;
    if (letter_case == 0)
        return TextWriter(out, text, section.text).write(section.tokens);
    const std::string shown = letter_case == '>' ? upper(text) : lower(text);
    TextWriter(out, shown, section.text).write(section.tokens);
}

} // namespace tabrixdb
