// Any display format, by values of each kind: only errors may come out, and no more text than there is reason
// for.
//
// Input: a format and the text of a value, parted by 0x1F.

#include "automation/display_format.h"

#include "automation/conversions.h"
#include "automation/error.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string_view>

using namespace tabrixdb;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::size_t end = std::min(input.find('\x1F'), input.size());
    const DisplayFormat format(input.substr(0, end));
    const std::string_view text = input.substr(std::min(end + 1, input.size()));
    const double number = parse_number(text).value_or(-0.5);
    std::string out;
    for (const Variant& value :
         {Variant(text), Variant(number), Variant::date(number), Variant::currency(INT64_MIN), Variant(true),
          Variant(), Variant::null(), Variant::missing()}) {
        const std::size_t before = out.size();
        try {
            format.append(out, value);
        } catch (const Error&) { // a date outside the calendar
        }
        // Each place of the format, each character of the value and each name in a date adds so much at most.
        constexpr std::size_t kMost = 400;
        if (out.size() - before > kMost * (input.size() + 1))
            std::abort();
    }
    return 0;
}
