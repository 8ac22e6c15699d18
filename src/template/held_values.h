#pragma once

#include "template/slotted_text.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tabrixdb {

// What records bring into a text of the page: set aside, with a mark in its place, while the tags of the page
// are filled, so that nothing in it is taken for a tag, for an expression or for SQL. With trusted values
// nothing is set aside, and tags that a value holds are tags.
class HeldValues {
public:
    explicit HeldValues(bool trusted) noexcept : trusted_(trusted) {}

    bool trusted() const noexcept { return trusted_; }

    struct Value {
        std::string text;
        std::string_view column; // for messages; of what lives longer than this
        bool computed = false;   // the query has made it, and may have prepared it for its place
    };

    // What stands for a value until release(): a mark, or the value where it is trusted or blank.
    std::string hold(Value value);
    // The same for what came of the page's own code: the tags and calls of buttons, record pointers, grids
    // and addresses in it that stand word for word in `code` are the page's and stay in sight; everything
    // else is no tag.
    std::string hold_result(std::string text, std::string_view code);
    // Whether a text could be, or make, a tag or a call of a button.
    static bool has_signs(std::string_view text);
    // The same for a text of the page, in which a character could be taken for a mark.
    std::string hold_marks(std::string text);

    // Puts the values in the places of their marks. Error 14 for a text of more than kMaxFilledBytes.
    void release(std::string& text) const;

    bool has(int mark) const noexcept { return static_cast<std::size_t>(mark) < values_.size(); }

    const Value& at(int mark) const { return values_[static_cast<std::size_t>(mark)]; }

private:
    std::string mark(Value value);

    bool trusted_;
    std::vector<Value> values_;
};

} // namespace tabrixdb
