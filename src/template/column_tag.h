#pragma once

#include <string>
#include <string_view>

namespace tabrixdb {

// The tag by which a template addresses a column: "#~" name "~#", the name with "_" in place of each blank
// (rows are filled by that form) or as it stands (captions and the built-in template use this one). Both
// forms are taken wherever a column is addressed.
class ColumnTag {
public:
    explicit ColumnTag(std::string_view column);

    bool occurs_in(std::string_view text) const;
    // Every occurrence of either form, in any case. Error 14 when the text would pass kMaxFilledBytes.
    void replace_in(std::string& text, std::string_view with) const;

private:
    std::string underscored_;
    std::string plain_; // empty when the name has no blanks
};

} // namespace tabrixdb
