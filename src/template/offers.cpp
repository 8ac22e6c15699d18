#include "template/offers.h"

#include "automation/error.h"
#include "automation/text.h"

#include <algorithm>
#include <array>
#include <span>

namespace tabrixdb {

namespace {

constexpr std::size_t kNone = std::string_view::npos;
constexpr std::string_view kTagStart = "#~btn_";
constexpr std::string_view kPointerStart = "#~record_pointer_";
constexpr std::string_view kTagEnd = "~#";

// Bytes of a tag's name, and of a call's arguments: what is longer is neither, and a value that begins many
// of them costs no more than its length.
constexpr std::size_t kLongestName = 256, kLongestArguments = 512;

struct Word {
    std::string_view name;
    Change change;
};

// Longer names stand before those that they begin with.
constexpr auto kTagWords = std::to_array<Word>({{"edit_row", Change::EditRow},
                                                {"update_row", Change::EditRow},
                                                {"delete_row", Change::DeleteRow},
                                                {"edit", Change::EditPage},
                                                {"update", Change::EditPage},
                                                {"update_onstart", Change::EditPage},
                                                {"delete", Change::DeleteSelected},
                                                {"add", Change::AddRecord}});

constexpr auto kRowActions = std::to_array<Word>(
    {{"edit", Change::EditRow}, {"update", Change::EditRow}, {"delete", Change::DeleteRow}});

constexpr auto kSourceActions = std::to_array<Word>({{"edit", Change::EditPage},
                                                     {"update", Change::EditPage},
                                                     {"delete", Change::DeleteSelected},
                                                     {"addnew", Change::AddRecord},
                                                     {"add", Change::AddRecord}});

bool is_letter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

// Whether a word stands in a text by itself: between quotes, of whatever kind.
bool has_word(std::string_view text, std::string_view word) {
    for (std::size_t at = 0; (at = text.find(word, at)) != kNone; at += word.size()) {
        const std::size_t end = at + word.size();
        if ((at == 0 || !is_letter(text[at - 1])) && (end == text.size() || !is_letter(text[end])))
            return true;
    }
    return false;
}

// "edit_grid(ROW, GRID, ACTION)" or "edit_source(GRID, ACTION)", also with "_onstart": the action is the last
// argument, a word of its own.
void add_call(std::vector<Button>& found, std::string_view text, std::size_t at,
              std::span<const Word> actions) {
    const std::string_view near = text.substr(0, std::min(text.size(), at + kLongestArguments));
    const std::size_t open = near.find('(', at), close = near.find(')', at);
    Button call{.from = at, .to = std::min(close, near.size())};
    if (open < close && close != kNone) {
        const std::string_view arguments = text.substr(open + 1, close - open - 1);
        const std::size_t comma = arguments.rfind(',');
        const std::string_view last = arguments.substr(comma == kNone ? 0 : comma + 1);
        const auto action =
            std::ranges::find_if(actions, [&](const Word& word) { return has_word(last, word.name); });
        if ((call.is_offer = action != actions.end()))
            call.change = action->change;
    }
    found.push_back(call);
}

void add_tag(std::vector<Button>& found, std::string_view text, std::size_t at, std::size_t name_at) {
    const std::size_t end =
        text.substr(0, std::min(text.size(), name_at + kLongestName)).find(kTagEnd, name_at);
    if (end == kNone)
        return;
    Button tag{.from = at, .to = end + kTagEnd.size(), .is_tag = true};
    const std::string_view name = text.substr(name_at, end - name_at);
    const auto known =
        std::ranges::find_if(kTagWords, [&](const Word& word) { return equal_ignore_case(word.name, name); });
    if ((tag.is_offer = at + kTagStart.size() == name_at && known != kTagWords.end()))
        tag.change = known->change;
    found.push_back(tag);
}

bool begins(std::string_view text, std::size_t at, std::string_view start) {
    return equal_ignore_case(text.substr(at, start.size()), start);
}

} // namespace

std::vector<Button> buttons_in(std::string_view text) {
    constexpr std::string_view kRowCall = "edit_grid(", kSourceCall = "edit_source";
    std::vector<Button> found;
    for (std::size_t at = 0; (at = text.find_first_of("#eE", at)) != kNone; ++at) {
        if (begins(text, at, kTagStart))
            add_tag(found, text, at, at + kTagStart.size());
        else if (begins(text, at, kPointerStart))
            add_tag(found, text, at, at + kPointerStart.size());
        else if (begins(text, at, kRowCall))
            add_call(found, text, at, kRowActions);
        else if (begins(text, at, kSourceCall))
            add_call(found, text, at, kSourceActions);
    }
    return found;
}

Offers permitted_changes(std::string_view words) {
    Offers permitted;
    const std::string list = replace_all(words, ",", " ");
    for (const std::string_view word : split(list, ' ')) {
        if (equal_ignore_case(word, "edit")) {
            permitted.add(Change::EditRow);
            permitted.add(Change::EditPage);
        } else if (equal_ignore_case(word, "add")) {
            permitted.add(Change::AddRecord);
        } else if (equal_ignore_case(word, "delete")) {
            permitted.add(Change::DeleteRow);
            permitted.add(Change::DeleteSelected);
        } else if (!word.empty() && !equal_ignore_case(word, "none")) {
            throw Error(kErrorCall,
                        "Permit is \"\", \"none\", or a list of edit, add and delete; it is not '" +
                            std::string(word) + "'");
        }
    }
    return permitted;
}

Offers::Offers(std::string_view text) {
    for (const Button& button : buttons_in(text)) {
        if (button.is_offer)
            add(button.change);
        mentioned_ = mentioned_ || button.is_offer || !button.is_tag;
    }
}

} // namespace tabrixdb
