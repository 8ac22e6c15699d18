// Code of a page with a value in it, in queries and expressions: no text between quotes may change what the
// code around it is. The first byte says the language, the rest up to the first NUL is the value, then comes
// the code, in which a byte 0xFF stands for the value.

#include "template/bound_code.h"

#include "automation/error.h"

#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>

namespace {

using namespace tabrixdb;

// Nothing where a value outside of quotes is refused.
std::optional<BoundCode> bound(std::string_view code, const std::string& value, bool query) {
    HeldValues held(false);
    std::string marked;
    for (const char c : held.hold_marks(std::string(code)))
        marked += c == '\xFF' ? held.hold({value, {}}) : std::string(1, c);
    try {
        return query ? bind_query(marked, held) : bind_expression(marked, held);
    } catch (const Error& error) {
        if (error.number() != kErrorCall)
            throw;
        return std::nullopt;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    if (size < 2)
        return 0;
    const std::size_t end = std::min(input.find('\0', 1), size);
    const std::string value(input.substr(1, end - 1));
    const std::string_view code = input.substr(std::min(end + 1, size));
    const auto hostile = bound(code, value, input[0] & 1), plain = bound(code, "x", input[0] & 1);
    const bool is_text = value.find_first_not_of(' ') != std::string::npos;
    if (hostile && plain && is_text &&
        (hostile->text != plain->text || hostile->values.size() != plain->values.size()))
        std::abort();
    return 0;
}
