#include "engine/grid_state.h"

#include "automation/conversions.h"
#include "automation/error.h"

namespace tabrixdb {

namespace {

bool is_blank(const Variant& value) {
    return value.is_empty() || value.is_null() || (value.is_string() && value.text().empty());
}

} // namespace

std::int16_t to_short(std::int64_t value) {
    if (value < INT16_MIN || value > INT16_MAX)
        throw Error(kErrorOverflow);
    return static_cast<std::int16_t>(value);
}

bool GridState::blank(std::string_view suffix) const {
    return is_blank(value(suffix));
}

std::string GridState::text(std::string_view suffix) const {
    const Variant held = value(suffix);
    return is_blank(held) ? std::string() : to_text(held).str();
}

std::int32_t GridState::number(std::string_view suffix) const {
    const Variant held = value(suffix);
    return is_blank(held) ? 0 : to_long(held);
}

bool GridState::flag(std::string_view suffix) const {
    const Variant held = value(suffix);
    return !is_blank(held) && to_boolean(held);
}

} // namespace tabrixdb
