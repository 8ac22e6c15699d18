#include "vbscript/place.h"

#include "automation/text.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tabrixdb::vbscript {

namespace {

using Entry = std::pair<std::int32_t, std::string_view>;

constexpr auto kTexts = std::to_array<Entry>({
    {1001, "Out of memory"},
    {1002, "Syntax error"},
    {1003, "Expected ':'"},
    {1005, "Expected '('"},
    {1006, "Expected ')'"},
    {1007, "Expected ']'"},
    {1010, "Expected identifier"},
    {1011, "Expected '='"},
    {1012, "Expected 'If'"},
    {1013, "Expected 'To'"},
    {1014, "Expected 'End'"},
    {1015, "Expected 'Function'"},
    {1016, "Expected 'Sub'"},
    {1017, "Expected 'Then'"},
    {1018, "Expected 'Wend'"},
    {1019, "Expected 'Loop'"},
    {1020, "Expected 'Next'"},
    {1021, "Expected 'Case'"},
    {1022, "Expected 'Select'"},
    {1023, "Expected expression"},
    {1024, "Expected statement"},
    {1025, "Expected end of statement"},
    {1026, "Expected integer constant"},
    {1027, "Expected 'While' or 'Until'"},
    {1028, "Expected 'While', 'Until' or end of statement"},
    {1029, "Expected 'With'"},
    {1030, "Identifier too long"},
    {1031, "Invalid number"},
    {1032, "Invalid character"},
    {1033, "Unterminated string constant"},
    {1034, "Unterminated comment"},
    {1037, "Invalid use of 'Me' keyword"},
    {1038, "'loop' without 'do'"},
    {1039, "Invalid 'exit' statement"},
    {1040, "Invalid 'for' loop control variable"},
    {1041, "Name redefined"},
    {1042, "Must be first statement on the line"},
    {1043, "Cannot assign to non-ByVal argument"},
    {1044, "Cannot use parentheses when calling a Sub"},
    {1045, "Expected literal constant"},
    {1046, "Expected 'In'"},
    {1047, "Expected 'Class'"},
    {1048, "Must be defined inside a Class"},
    {1049, "Expected Let or Set or Get in property declaration"},
    {1050, "Expected 'Property'"},
    {1051, "Number of arguments must be consistent across properties specification"},
    {1052, "Cannot have multiple default property/method in a Class"},
    {1053, "Class initialize or terminate do not have arguments"},
    {1054, "Property Set or Let must have at least one argument"},
    {1055, "Unexpected 'Next'"},
    {1056, "'Default' can be specified only on 'Property' or 'Function' or 'Sub'"},
    {1057, "'Default' specification must also specify 'Public'"},
    {1058, "'Default' specification can only be on Property Get"},
});

std::string_view compile_error_text(std::int32_t number) noexcept {
    const auto entry = std::ranges::lower_bound(kTexts, number, {}, &Entry::first);
    return entry != kTexts.end() && entry->first == number ? entry->second : "Syntax error";
}

bool is_line_break(char c) noexcept {
    return c == '\n' || c == '\r';
}

std::string file_name(const Source& source, Position at) {
    return at.file < source.files.size() ? source.files[at.file] : std::string();
}

} // namespace

Position position_of(const Source& source, Place place) {
    if (place.piece >= source.pieces.size())
        return {};
    const Piece& piece = source.pieces[place.piece];
    const std::string_view before =
        piece.text.substr(0, std::min<std::size_t>(place.offset, piece.text.size()));
    Position at = piece.at;
    std::size_t line_start = 0;
    for (std::size_t i = 0; i < before.size(); ++i) {
        if (!is_line_break(before[i]))
            continue;
        if (before[i] == '\r' && i + 1 < before.size() && before[i + 1] == '\n')
            ++i;
        ++at.line;
        at.column = 1;
        line_start = i + 1;
    }
    at.column += static_cast<std::int32_t>(utf16_length(before.substr(line_start)));
    return at;
}

std::string source_line_at(const Source& source, Place place) {
    if (place.piece >= source.pieces.size())
        return {};
    const std::string_view piece = source.pieces[place.piece].text;
    const char* at = piece.data() + std::min<std::size_t>(place.offset, piece.size());
    // The line goes beyond the piece: it is cut from the text that the piece lies in.
    for (const auto& text : source.texts) {
        const char* const begin = text->data();
        const char* const end = begin + text->size();
        if (at < begin || at > end)
            continue;
        const char* first = at;
        while (first != begin && !is_line_break(first[-1]))
            --first;
        const char* last = at;
        while (last != end && !is_line_break(*last))
            ++last;
        return std::string(first, last);
    }
    return {};
}

void raise_compile_error(const Source& source, Place place, std::int32_t number) {
    raise_compile_error(source, place, number, std::string(compile_error_text(number)));
}

void raise_compile_error(const Source& source, Place place, std::int32_t number, std::string text) {
    const Position at = position_of(source, place);
    throw ScriptError(Error(number, std::move(text), std::string(kCompileErrorSource)), true,
                      file_name(source, at), at, source_line_at(source, place));
}

ScriptError located(const Error& error, const Source& source, Place place) {
    const Position at = position_of(source, place);
    const bool is_own = error.source().empty();
    return ScriptError(is_own ? Error(error.number(), error.description(), std::string(kRuntimeErrorSource))
                              : error,
                       false, file_name(source, at), at, source_line_at(source, place));
}

} // namespace tabrixdb::vbscript
