#pragma once

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace tabrixdb {

// What a visitor can do to the records of a grid.
enum class Change : std::uint8_t { EditRow, DeleteRow, EditPage, DeleteSelected, AddRecord };
inline constexpr std::size_t kChanges = 5;

// A button in a text: a tag such as "#~btn_delete_row~#", or a call such as "edit_grid(3,
// 'orders','delete')", wherever it stands.
struct Button {
    std::size_t from = 0, to = 0; // its place in the text
    bool is_tag = false;          // else it is a call
    bool is_offer = false;        // it offers `change`
    Change change = Change::EditRow;
};

// The buttons of a text that have to do with records: those that edit, save, add or delete, and record
// pointers; in any case of letters.
std::vector<Button> buttons_in(std::string_view text);

// The changes that a text offers. "Edit" offers to save as well, "add" to save what is added; deleting is
// offered by a button that deletes only.
class Offers {
public:
    Offers() = default;
    explicit Offers(std::string_view text);

    void add(Change change) noexcept { changes_.set(static_cast<std::size_t>(change)); }

    void add(const Offers& more) noexcept {
        changes_ |= more.changes_;
        mentioned_ = mentioned_ || more.mentioned_;
    }

    bool has(Change change) const noexcept { return changes_.test(static_cast<std::size_t>(change)); }

    bool any() const noexcept { return changes_.any(); }

    // Whether there is any such button or call, also one whose action is not to be seen.
    bool mentioned() const noexcept { return mentioned_; }

private:
    std::bitset<kChanges> changes_;
    bool mentioned_ = false;
};

// The changes that a page permits by words: "edit", "add" and "delete", with commas or blanks between, or
// "none". Error 5 for any other word.
Offers permitted_changes(std::string_view words);

} // namespace tabrixdb
