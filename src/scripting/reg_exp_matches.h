#pragma once

#include "automation/object.h"
#include "automation/text.h"
#include "scripting/pattern.h"

#include <vector>

namespace tabrixdb::scripting {

// What Execute found: Count, and Item (the default member) with an index from 0. Each match tells FirstIndex
// (from 0), Length, Value (its default member) and SubMatches.
class Matches final : public Object {
public:
    // All matches of the search in the text, or the first only. Error 7 when the run holds too much.
    Matches(const Text& text, PatternSearch& search, bool all);
    ~Matches() override;

    const ClassInfo& class_info() const override;
    std::unique_ptr<Enumerator> enumerate() override;

    std::int32_t count() const noexcept { return static_cast<std::int32_t>(first_units_.size()); }

    // --- For its items
    Variant item(std::int32_t index);
    // 0 the whole match, then its groups; Empty for one that took no part.
    Variant value(std::size_t match, std::size_t part) const;

    std::int32_t first_unit(std::size_t match) const { return first_units_[match]; }

    std::int32_t groups() const noexcept { return static_cast<std::int32_t>(stride_) - 1; }

private:
    Text text_;
    std::size_t stride_ = 1;
    std::vector<PatternSearch::Part> parts_; // `stride_` a match
    std::vector<std::int32_t> first_units_;  // of each match, as scripts count
    std::size_t held_bytes_ = 0;
};

} // namespace tabrixdb::scripting
