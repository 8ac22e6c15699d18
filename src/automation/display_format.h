#pragma once

#include "automation/display_format_section.h"
#include "automation/variant.h"

#include <string>
#include <string_view>
#include <vector>

namespace tabrixdb {

// A display format, parsed once and applied to any number of values: a named format ("Currency", "Short
// Date", "Yes/No", ...) or a user-defined one for numbers ("#,##0.00;(0.00);zero;null"), dates
// ("dd mmm yyyy hh:nn") or text ("@@@-@@@"). The first placeholder decides which of the three it is. Weeks
// start on Sunday and the first week is that of 1 January. Names, signs and separators are those of the
// current Locale.
class DisplayFormat {
public:
    // Any text is a format; "" shows values as they are.
    explicit DisplayFormat(std::string_view format);

    bool empty() const noexcept { return kind_ == FormatKind::General && named_ == nullptr; }

    // Appends the value in this format. What is no number or date, where the format wants one, is appended
    // as it is: text, and numbers out of the range of dates. Empty is 0 in formats of numbers and dates. Null
    // takes the format's section for it, or gives nothing. Raises what the default member of an object
    // raises.
    void append(std::string& out, const Variant& value) const;

private:
    void append_number_format(std::string& out, const Variant& value) const;
    void append_date_format(std::string& out, const Variant& value) const;
    void append_text_format(std::string& out, const Variant& value) const;
    // The section at `index` if it is there and not empty; a section left empty is that of the first.
    const FormatSection* section(std::size_t index) const noexcept;

    FormatKind kind_ = FormatKind::General;
    NamedFormat named_ = nullptr;
    std::vector<FormatSection> sections_;
};

} // namespace tabrixdb
