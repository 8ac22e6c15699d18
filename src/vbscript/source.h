#pragma once

#include "automation/error.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tabrixdb::vbscript {

// Where something stands: an index into Source::files, and line and column from 1.
struct Position {
    std::uint32_t file = 0;
    std::int32_t line = 1;
    std::int32_t column = 1;
};

// One stretch of a unit. A script file is one piece of Code; a page is many, in page order, its included
// files among them. A line break that ends a statement stands between any two pieces, but a statement
// block (If, For, Sub, ...) may span them.
struct Piece {
    enum class Kind : std::uint8_t {
        Code,       // statements
        Expression, // one expression, whose value is written (`<%= x %>`)
        Literal,    // text that is written as it stands
    };
    Kind kind = Kind::Code;
    std::string_view text; // lies in one of Source::texts
    Position at;           // of its first character
};

// All that is compiled together. Owns its texts; the compiled program keeps it for its literals and for
// the source lines of error messages.
struct Source {
    std::vector<std::string> files; // names as messages show them
    std::vector<std::shared_ptr<const std::string>> texts;
    std::vector<Piece> pieces;

    // One piece of code in a file without a name, as Eval and a script control have it.
    static Source of_code(std::string code) {
        Source source;
        source.files.emplace_back();
        source.texts.push_back(std::make_shared<const std::string>(std::move(code)));
        source.pieces.push_back({Piece::Kind::Code, *source.texts.back(), {}});
        return source;
    }
};

// Who raised an error of the script engine itself, as messages and Err.Source name it.
inline constexpr std::string_view kRuntimeErrorSource = "TabrixDb VBScript runtime error";
inline constexpr std::string_view kCompileErrorSource = "TabrixDb VBScript compilation error";

// An error with its place. Compile errors have numbers 1001 to 1058; run-time errors the number, text and
// source of the Error that was raised.
class ScriptError : public Error {
public:
    ScriptError(const Error& error, bool is_compile_error, std::string file_name, Position at,
                std::string line_text)
        : Error(error),
          compile_error(is_compile_error),
          file(std::move(file_name)),
          position(at),
          source_line(std::move(line_text)) {}

    bool compile_error;
    std::string file;
    Position position;
    std::string source_line; // the line of the source at `position`, without its line break
};

} // namespace tabrixdb::vbscript
