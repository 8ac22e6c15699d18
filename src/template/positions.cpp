#include "template/positions.h"

#include "automation/error.h"
#include "automation/text.h"

namespace tabrixdb {

namespace {

std::size_t checked(std::string_view text, std::size_t at) {
    // Units are counted only past the limit in bytes, so that ordinary templates pay nothing.
    if (at != kNotFound && at >= kLastPosition && utf16_length(text.substr(0, at)) >= kLastPosition)
        throw Error(kErrorOverflow);
    return at;
}

} // namespace

std::size_t find_short(std::string_view text, std::string_view wanted, std::size_t from) {
    return checked(text, find_ignore_case(text, wanted, from));
}

std::size_t rfind_short(std::string_view text, std::string_view wanted) {
    return checked(text, rfind_ignore_case(text, wanted));
}

} // namespace tabrixdb
