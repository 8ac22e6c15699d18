#pragma once

#include "platform/page.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace tabrixdb {

// The number in 16 bits, as positions and sizes are kept; Error 6 beyond.
std::int16_t to_short(std::int64_t value);

// A grid's state that outlives the request: session values under the grid's identifier and a suffix
// ("_CurrentPage", "_PageSize", "_Offset", "_Sort", "_filter", "_filterstr", "_mode", "_edit", "_gridmode",
// "_command_target"). Values are what a page or an earlier request left there: numbers, numeric text, or
// nothing.
class GridState {
public:
    GridState(platform::Session& session, std::string_view grid) : session_(session), grid_(grid) {}

    const std::string& grid() const noexcept { return grid_; }

    Variant value(std::string_view suffix) const { return session_.value(grid_ + std::string(suffix)); }

    // Changes the session, not this.
    void set(std::string_view suffix, const Variant& value) const {
        session_.set_value(grid_ + std::string(suffix), value);
    }

    // True for a value that is not there or "".
    bool blank(std::string_view suffix) const;
    // As text; "" when it is not there.
    std::string text(std::string_view suffix) const;
    // As a 32-bit number, 0 when it is not there. Error 13 for other text, 6 out of range.
    std::int32_t number(std::string_view suffix) const;
    // True only for True and numbers other than 0; a value that is not there is False.
    bool flag(std::string_view suffix) const;

private:
    platform::Session& session_;
    std::string grid_;
};

} // namespace tabrixdb
