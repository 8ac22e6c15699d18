#pragma once

#include "automation/variant.h"

#include <string>
#include <string_view>
#include <vector>

namespace tabrixdb {

struct Decimal;

// A display format, parsed once and applied to any number of values: a named format ("Currency", "Short
// Date", "Yes/No", ...) or a user-defined one for numbers ("#,##0.00;(0.00);zero;null"), dates
// ("dd mmm yyyy hh:nn") or text ("@@@-@@@"). The first placeholder decides which of the three it is. Weeks
// start on Sunday and the first week is that of 1 January. Names, signs and separators are those of the
// current Locale.
class DisplayFormat {
public:
    enum class Kind : unsigned char { General, Number, Date, Text };

    // One placeholder or literal. `code`: the placeholder in lower case, or kLiteral with its text.
    struct Token {
        static constexpr char kLiteral = 'L';
        char code = kLiteral;
        std::string text; // a literal's text; a placeholder as written ("yyyy", "E+", "AM/PM")
    };

    using Section = std::vector<Token>;

    // Any text is a format; "" shows values as they are.
    explicit DisplayFormat(std::string_view format);

    bool empty() const noexcept { return kind_ == Kind::General && named_ == nullptr; }

    // Appends the value in this format. Text that is no number or date, where the format wants one, is
    // appended as it is; Null and Empty take the format's section for them, or give nothing.
    void append(std::string& out, const Variant& value) const;

private:
    void append_number_format(std::string& out, const Variant& value) const;
    void append_date_format(std::string& out, const Variant& value) const;
    void append_text_format(std::string& out, const Variant& value) const;
    // The section at `index` if it is there and not empty; a section left empty is that of the first.
    const Section* section(std::size_t index) const noexcept;

    Kind kind_ = Kind::General;
    void (*named_)(std::string& out, const Variant& value) = nullptr;
    std::vector<Section> sections_;
};

// The user-defined kinds, one source file each. `number` comes without its sign, which the caller writes.
void append_number_section(std::string& out, Decimal number, const DisplayFormat::Section& section);
void append_date_section(std::string& out, double days, const DisplayFormat::Section& section);
void append_text_section(std::string& out, std::string_view text, const DisplayFormat::Section& section);

} // namespace tabrixdb
