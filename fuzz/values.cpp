// Number and date texts, operators and the run-time library on any values: only errors may come out, and
// what is written must read back.
//
// Input: a locale, a function, then its arguments, parted by 0x1F. The first character of an argument
// chooses its type.

#include "automation/array.h"
#include "automation/conversions.h"
#include "automation/error.h"
#include "automation/locale.h"
#include "automation/operators.h"
#include "vbscript/library/families.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <vector>

namespace {

using namespace tabrixdb;

// Keeps Space(n) and String(n, c) from being a test of the allocator.
constexpr double kLargestNumber = 1e6;

Variant value_from(std::string_view text) {
    const std::string_view rest = text.substr(std::min<std::size_t>(text.size(), 1));
    const double number = std::clamp(parse_number(rest).value_or(0), -kLargestNumber, kLargestNumber);
    switch (text.empty() ? '\0' : text[0]) {
    case '#':
        return number;
    case '&':
        return Variant::integer(static_cast<std::int64_t>(number));
    case '$':
        return Variant::currency(static_cast<std::int64_t>(number * 10000));
    case '%':
        return Variant::date(number);
    case '@':
        return Text::bytes(rest);
    case '[':
        return make_ref<Array>(std::vector<Variant>{value_from(rest), Variant(rest)});
    case '~':
        return Variant::null();
    case '!':
        return Variant::nothing();
    case '*':
        return Variant::missing();
    case '?':
        return rest.empty();
    case '\0':
        return Variant();
    default:
        return text;
    }
}

template <class Action>
void allowing_errors(Action action) {
    try {
        action();
    } catch (const Error&) {
    }
}

void check_texts(std::string_view text) {
    if (const auto number = parse_number(text)) {
        const auto again = parse_number(number_text(*number));
        if (!again || std::fabs(*again - *number) > std::fabs(*number) * 1e-14)
            std::abort();
    }
    allowing_errors([text] {
        if (const auto days = parse_date(text)) {
            const auto again = parse_date(date_text(*days));
            if (!again || std::fabs(*again - *days) > 1.0 / 86400)
                std::abort();
        }
    });
}

std::vector<vbscript::LibraryFunction> all_functions() {
    std::vector<vbscript::LibraryFunction> all;
    for (const auto family :
         {vbscript::string_functions, vbscript::search_functions, vbscript::byte_functions,
          vbscript::number_functions, vbscript::random_functions, vbscript::date_functions,
          vbscript::date_arithmetic_functions, vbscript::conversion_functions, vbscript::array_functions,
          vbscript::formatting_functions, vbscript::engine_functions})
        all.insert(all.end(), family().begin(), family().end());
    return all;
}

void call(const vbscript::LibraryFunction& function, std::vector<Variant>& arguments) {
    const auto most = function.most < 0 ? arguments.size() : static_cast<std::size_t>(function.most);
    if (arguments.size() > most)
        arguments.resize(most);
    if (arguments.size() < static_cast<std::size_t>(function.least))
        return;
    std::vector<Variant*> pointers;
    for (Variant& argument : arguments)
        pointers.push_back(&argument);
    allowing_errors([&] {
        std::string written;
        append_text(written, function.call(pointers));
    });
}

void combine(const Variant& a, const Variant& b) {
    for (const auto operation : {add, subtract, multiply, divide, integer_divide, modulo, power, logical_and,
                                 logical_or, logical_xor, logical_eqv, logical_imp})
        allowing_errors([&] { operation(a, b); });
    allowing_errors([&] { concatenate(a, b); });
    for (const bool left : {false, true})
        for (const bool right : {false, true})
            allowing_errors([&] { compare(a, b, {left, right}); });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::uint32_t locales[] = {1033, 2057, 1031, 1036, 1053, 1044, 1043, 1040, 3082};
    static const std::vector<vbscript::LibraryFunction> functions = all_functions();
    if (size < 2)
        return 0;
    const LocaleScope scope(*Locale::find(locales[data[0] % std::size(locales)]));
    const vbscript::LibraryFunction& function = functions[data[1] % functions.size()];
    std::string_view rest(reinterpret_cast<const char*>(data) + 2, size - 2);
    std::vector<Variant> arguments;
    while (!rest.empty() && arguments.size() < 6) {
        const std::size_t end = std::min(rest.find('\x1F'), rest.size());
        check_texts(rest.substr(0, end));
        arguments.push_back(value_from(rest.substr(0, end)));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    if (arguments.size() >= 2)
        combine(arguments[0], arguments[1]);
    call(function, arguments);
    return 0;
}
