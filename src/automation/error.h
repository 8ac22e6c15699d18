#pragma once

#include <cstdint>
#include <exception>
#include <string>
#include <string_view>

namespace tabrixdb {

// The one exception that crosses module lines: what a page's script sees as Err.
class Error : public std::exception {
public:
    // A run-time error by its number (6, 13, 424, ...), with the standard text of that number.
    explicit Error(std::int32_t number);
    // `number` as the script sees it: a small run-time number, or a full code such as &H800A0BCD.
    Error(std::int32_t number, std::string description, std::string source = {});

    std::int32_t number() const noexcept { return number_; }

    const std::string& description() const noexcept { return description_; }

    // Who raised it; empty for the script engine itself.
    const std::string& source() const noexcept { return source_; }

    const char* what() const noexcept override { return description_.c_str(); }

private:
    std::int32_t number_;
    std::string description_;
    std::string source_;
};

// The standard text of a run-time error number; "Unknown runtime error" for a number without one.
std::string_view error_text(std::int32_t number) noexcept;

// The numbers that C++ code names often. Others are written as numbers where they are raised.
inline constexpr std::int32_t kErrorCall = 5; // Invalid procedure call or argument
inline constexpr std::int32_t kErrorOverflow = 6;
inline constexpr std::int32_t kErrorSubscript = 9;
inline constexpr std::int32_t kErrorMismatch = 13;
inline constexpr std::int32_t kErrorNothing = 91; // Object variable not set
inline constexpr std::int32_t kErrorNull = 94;    // Invalid use of Null
inline constexpr std::int32_t kErrorObjectRequired = 424;
inline constexpr std::int32_t kErrorCannotCreate = 429;
inline constexpr std::int32_t kErrorNoMember = 438;
inline constexpr std::int32_t kErrorNotOptional = 449;
inline constexpr std::int32_t kErrorArguments = 450; // Wrong number of arguments
inline constexpr std::int32_t kErrorNoEnumerator = 451;
inline constexpr std::int32_t kErrorDuplicateKey = 457;

} // namespace tabrixdb
