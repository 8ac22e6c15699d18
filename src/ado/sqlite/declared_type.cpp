#include "ado/sqlite/declared_type.h"

#include "automation/text.h"
#include "platform/data.h"

#include <algorithm>
#include <charconv>

namespace tabrixdb::ado::sqlite {

namespace {

namespace type = platform::data_type;

struct Known {
    std::string_view name;
    std::int32_t type;
};

constexpr Known kKnown[] = {
    {"INT", type::kInteger},
    {"INTEGER", type::kInteger},
    {"MEDIUMINT", type::kInteger},
    {"INT4", type::kInteger},
    {"COUNTER", type::kInteger},
    {"SMALLINT", type::kSmallInt},
    {"INT2", type::kSmallInt},
    {"TINYINT", type::kUnsignedTinyInt},
    {"BYTE", type::kUnsignedTinyInt},
    {"BIGINT", type::kBigInt},
    {"INT8", type::kBigInt},
    {"UNSIGNED BIG INT", type::kBigInt},
    {"BOOLEAN", type::kBoolean},
    {"BOOL", type::kBoolean},
    {"BIT", type::kBoolean},
    {"YESNO", type::kBoolean},
    {"LOGICAL", type::kBoolean},
    {"REAL", type::kDouble},
    {"DOUBLE", type::kDouble},
    {"DOUBLE PRECISION", type::kDouble},
    {"FLOAT", type::kDouble},
    {"SINGLE", type::kSingle},
    {"FLOAT4", type::kSingle},
    {"CURRENCY", type::kCurrency},
    {"MONEY", type::kCurrency},
    {"SMALLMONEY", type::kCurrency},
    {"DECIMAL", type::kNumeric},
    {"DEC", type::kNumeric},
    {"NUMERIC", type::kNumeric},
    {"NUMBER", type::kNumeric},
    {"DATE", type::kDbDate},
    {"TIME", type::kDbTime},
    {"DATETIME", type::kDbTimeStamp},
    {"DATETIME2", type::kDbTimeStamp},
    {"SMALLDATETIME", type::kDbTimeStamp},
    {"TIMESTAMP", type::kDbTimeStamp},
    {"GUID", type::kGuid},
    {"UUID", type::kGuid},
    {"UNIQUEIDENTIFIER", type::kGuid},
    {"MEMO", type::kLongVarWChar},
    {"JSON", type::kLongVarWChar},
    {"BINARY", type::kBinary},
    {"VARBINARY", type::kVarBinary},
    {"IMAGE", type::kLongVarBinary},
};

// The number at the start of `text` (a sign or blanks before it are skipped), not above `most`.
std::int32_t number_in(std::string_view text, std::int32_t most) noexcept {
    const std::size_t first = text.find_first_of("0123456789");
    if (first == std::string_view::npos)
        return 0;
    std::int32_t value = 0;
    const auto result = std::from_chars(text.data() + first, text.data() + text.size(), value);
    return result.ec == std::errc() ? std::min(value, most) : most;
}

// A name that is not in the table: by the words in it, as the database itself finds its affinity.
std::int32_t type_by_words(std::string_view name) noexcept {
    const auto has = [name](std::string_view word) { return contains_ignore_case(name, word); };
    if (has("INT"))
        return type::kInteger;
    if (has("CHAR"))
        return type::kVarWChar;
    if (has("CLOB") || has("TEXT"))
        return type::kLongVarWChar;
    if (has("BLOB"))
        return type::kLongVarBinary;
    if (has("REAL") || has("FLOA") || has("DOUB"))
        return type::kDouble;
    return 0;
}

std::int32_t type_named(std::string_view name) noexcept {
    for (const Known& known : kKnown)
        if (equal_ignore_case(known.name, name))
            return known.type;
    return type_by_words(name);
}

} // namespace

DeclaredType plain_type(std::int32_t number) noexcept {
    switch (number) {
    case type::kSmallInt:
        return {number, 2, 5, 0};
    case type::kInteger:
        return {number, 4, 10, 0};
    case type::kBigInt:
        return {number, 8, 19, 0};
    case type::kUnsignedTinyInt:
        return {number, 1, 3, 0};
    case type::kSingle:
        return {number, 4, 7, 0};
    case type::kDouble:
        return {number, 8, 15, 0};
    case type::kCurrency:
        return {number, 8, 19, 4};
    case type::kNumeric:
        return {number, 19, 18, 4};
    case type::kBoolean:
        return {number, 2, 0, 0};
    case type::kDbDate:
    case type::kDbTime:
        return {number, 6, 0, 0};
    case type::kDbTimeStamp:
        return {number, 16, 0, 0};
    default:
        return {number, 0, 0, 0};
    }
}

DeclaredType read_declared_type(std::string_view declaration) noexcept {
    const std::size_t bracket = declaration.find('(');
    const std::string_view name = trimmed(declaration.substr(0, bracket));
    DeclaredType result = plain_type(name.empty() ? 0 : type_named(name));
    if (bracket == std::string_view::npos)
        return result;
    const std::string_view arguments = declaration.substr(bracket + 1);
    const std::size_t comma = arguments.find(',');
    if (result.type == type::kNumeric) {
        result.precision = static_cast<std::uint8_t>(number_in(arguments.substr(0, comma), 255));
        result.scale = comma == std::string_view::npos
                           ? 0
                           : static_cast<std::uint8_t>(number_in(arguments.substr(comma + 1), 255));
    } else if (result.size == 0) {
        result.size = number_in(arguments, INT32_MAX);
        if (result.type == type::kLongVarWChar && result.size)
            result.type = type::kVarWChar;
    }
    return result;
}

} // namespace tabrixdb::ado::sqlite
