#include "template/held_values.h"

#include "automation/error.h"
#include "automation/text.h"
#include "engine/fill_tag.h"
#include "template/offers.h"

#include <algorithm>
#include <utility>

namespace tabrixdb {

namespace {

// What a call of a button's function begins with.
constexpr std::string_view kCallStart = "edit_";

// Bytes of a tag's name; what is longer is none.
constexpr std::size_t kLongestName = 256;

struct Span {
    std::size_t from, to;
};

bool begins(std::string_view text, std::size_t at, std::string_view start) {
    return equal_ignore_case(text.substr(at, start.size()), start);
}

bool is_page_tag(std::string_view name) {
    return begins(name, 0, "btn_") || begins(name, 0, "record_pointer_") || begins(name, 0, "grid_") ||
           equal_ignore_case(name, "url") || equal_ignore_case(name, "full_url");
}

// The tags and calls of a text that the code which has made it has as well, in order.
std::vector<Span> page_words(std::string_view text, std::string_view code) {
    constexpr std::string_view kStart = "#~", kEnd = "~#";
    std::vector<Span> words;
    if (code.empty())
        return words;
    for (std::size_t at = 0; (at = text.find(kStart, at)) != std::string_view::npos;) {
        const std::size_t name = at + kStart.size();
        const std::string_view near = text.substr(name, kLongestName);
        const std::size_t size = near.find(kEnd);
        const std::string_view tag =
            text.substr(at, size == near.npos ? 0 : kStart.size() + size + kEnd.size());
        const bool is_pages =
            !tag.empty() && is_page_tag(near.substr(0, size)) && contains_ignore_case(code, tag);
        if (is_pages)
            words.push_back({at, at + tag.size()});
        at = is_pages ? at + tag.size() : name;
    }
    const Offers offered(code);
    for (const Button& call : buttons_in(text))
        if (!call.is_tag && call.is_offer && offered.has(call.change))
            words.push_back({call.from, call.from + kCallStart.size()});
    std::ranges::sort(words, {}, &Span::from);
    return words;
}

} // namespace

std::string HeldValues::mark(Value value) {
    values_.push_back(std::move(value));
    return SlottedText::mark(static_cast<int>(values_.size()) - 1);
}

std::string HeldValues::hold(Value value) {
    const bool blank = value.text.find_first_not_of(' ') == std::string::npos;
    return trusted_ || blank ? std::move(value.text) : mark(std::move(value));
}

std::string HeldValues::hold_result(std::string text, std::string_view code) {
    if (trusted_)
        return text;
    const std::vector<Span> kept = page_words(text, code);
    if (kept.empty())
        return hold({std::move(text), {}});
    // What is no tag stays in sight around those that are, as a link around a button's address.
    std::string out;
    std::size_t at = 0;
    const auto mask_to = [&](std::size_t end) {
        for (; at < end; ++at) {
            const bool of_tags = text[at] == '#' || text[at] == '~' || text[at] == SlottedText::kMark;
            out += of_tags || begins(text, at, kCallStart) ? mark({std::string(1, text[at]), {}})
                                                           : std::string(1, text[at]);
        }
    };
    for (const Span& word : kept) {
        mask_to(word.from);
        out.append(text, word.from, word.to - word.from);
        at = word.to;
    }
    mask_to(text.size());
    return out;
}

bool HeldValues::has_signs(std::string_view text) {
    return text.find('~') != std::string_view::npos || contains_ignore_case(text, kCallStart);
}

std::string HeldValues::hold_marks(std::string text) {
    if (trusted_ || text.find(SlottedText::kMark) == std::string::npos)
        return text;
    const std::string sign(1, SlottedText::kMark);
    return replace_all(text, sign, mark({sign, {}}));
}

void HeldValues::release(std::string& text) const {
    if (values_.empty())
        return;
    std::string out;
    SlottedText(text).append(out, [this](int slot, std::string& to) {
        to += has(slot) ? at(slot).text : SlottedText::mark(slot);
        if (to.size() > kMaxFilledBytes)
            throw Error(14);
        return true;
    });
    text = std::move(out);
}

} // namespace tabrixdb
