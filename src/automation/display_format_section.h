#pragma once

#include "automation/variant.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tabrixdb {

struct Decimal;

// The inside of DisplayFormat: what a format is read into, and the writers of each kind.

enum class FormatKind : unsigned char { General, Number, Date, Text };

// One placeholder or literal.
struct FormatToken {
    static constexpr char kLiteral = 'L';
    char code = kLiteral; // the placeholder in lower case: the letter of a date's part, 'a' for AM/PM, ...
    std::string text;     // a literal's text; a placeholder as written ("yyyy", "E+", "AM/PM")
};

// What the number placeholders of one section say together.
struct NumberShape {
    int whole = 0;          // places before the decimal point
    int decimals = 0;       // after it
    int required_whole = 0; // places before the point that show a zero: from the first "0" on
    int required_decimals = 0;
    int scale = 0; // powers of ten: 2 for "%", -3 for each thousand left of the point
    bool groups = false;
    bool point = false;
    bool exponent = false;
    int required_exponent = 0;
};

// What the text placeholders of one section say together.
struct TextShape {
    std::size_t places = 0;
    bool from_left = false;
    char letter_case = 0; // '<', which is the stronger, '>' or neither
};

// One of the parts that ";" divides a format into.
struct FormatSection {
    std::vector<FormatToken> tokens;
    NumberShape number;
    TextShape text;
    bool half_days = false; // hours count to twelve, for there is a placeholder for AM or PM
};

// Reads a user-defined format. The first placeholder that belongs to one kind only decides the kind; the
// placeholders of the other kinds are then literals, and the whole of a format that has none is.
struct ReadFormat {
    FormatKind kind;
    std::vector<FormatSection> sections; // at least one
};

ReadFormat read_format(std::string_view format);

// The writer of a named format; nullptr for a name that is none. It takes any value but Null.
using NamedFormat = void (*)(std::string& out, const Variant& value);
NamedFormat find_named_format(std::string_view name) noexcept;

// A value as number or date; nullopt for text that is none, and for what is out of the range of dates.
std::optional<Decimal> displayed_number(const Variant& value);
std::optional<double> displayed_date(const Variant& value);

// The user-defined kinds. `number` comes without its sign, which the caller writes.
void append_number_section(std::string& out, Decimal number, const FormatSection& section);
void append_date_section(std::string& out, double days, const FormatSection& section);
void append_text_section(std::string& out, std::string_view text, const FormatSection& section);

} // namespace tabrixdb
