#pragma once

#include "automation/error.h"

#include <cstdint>
#include <string>
#include <string_view>

// Errors of the page objects and of the page itself, by the four-digit codes that authors know.
namespace tabrixdb::asp {

// What scripts see as Err.Number of an error of the page objects: &H80004005.
inline constexpr std::int32_t kObjectError = static_cast<std::int32_t>(0x80004005);
// Server.CreateObject of a class that is not known: &H800401F3.
inline constexpr std::int32_t kUnknownClass = static_cast<std::int32_t>(0x800401F3);

// The two texts of a code: what happened in a few words, and a sentence more.
struct AspFault {
    int code;
    std::string_view title;
    std::string_view text;
};

// A code without texts gives those of 0115 (unexpected error).
const AspFault& asp_fault(int code) noexcept;

// An error that an object raises into the script. `object` is "Response object", "Request object", ...
// `detail` stands after the title.
Error asp_error(int code, std::string_view object, std::string_view detail = {});

// The code that asp_error put into an Error's source, and the source without it; 0 when there is none.
int split_asp_code(std::string_view& source) noexcept;

// A mistake in the page's text, found before anything of it runs.
class PageError : public Error {
public:
    PageError(int code, std::string_view detail, std::string page, std::int32_t line_number);

    int code;
    std::string file;
    std::int32_t line;
};

} // namespace tabrixdb::asp
