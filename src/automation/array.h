#pragma once

#include "automation/variant.h"

#include <cstdint>
#include <span>
#include <vector>

namespace tabrixdb {

// An array of variants with one or more dimensions, each from 0 to an upper bound. Held through Variant,
// which copies it before a holder writes when it has others (value semantics, paid for only when used).
class Array final : public Counted {
public:
    // At most this many dimensions and elements (Error 9 and Error 7): what a page can ask for is bounded.
    static constexpr std::size_t kMaxDimensions = 60;
    static constexpr std::size_t kMaxElements = std::size_t{1} << 26;

    // An array without dimensions yet (`Dim a()`): every access is Error 9 until it is dimensioned.
    Array() = default;
    // One dimension with these elements; resizable.
    explicit Array(std::vector<Variant> elements);
    // By upper bounds, each >= -1 (Error 9). `fixed`: refuses redimension (Error 10).
    Array(std::span<const std::int32_t> upper_bounds, bool fixed);
    ~Array() override;

    static Ref<Array> clone(const Array& source);

    std::size_t dimensions() const noexcept { return sizes_.size(); }

    std::int32_t upper_bound(std::size_t dimension) const; // 0-based dimension; Error 9

    bool fixed() const noexcept { return fixed_; }

    std::size_t size() const noexcept { return elements_.size(); }

    std::span<Variant> elements() noexcept { return elements_; }

    std::span<const Variant> elements() const noexcept { return elements_; }

    // The element at these 0-based subscripts; Error 9 outside, or for a wrong number of subscripts. The
    // first subscript varies fastest, as in the platform's own arrays.
    Variant& at(std::span<const std::int32_t> subscripts) { return elements_[offset(subscripts)]; }

    const Variant& at(std::span<const std::int32_t> subscripts) const {
        return elements_[offset(subscripts)];
    }

    // ReDim: Error 10 for a fixed array. With `preserve`, only the last bound may differ (Error 9).
    void redimension(std::span<const std::int32_t> upper_bounds, bool preserve);
    // Erase: empties the elements of a fixed array, takes the dimensions from a dynamic one.
    void erase();

private:
    std::size_t offset(std::span<const std::int32_t> subscripts) const;
    // Counts the memory of so many elements instead of what was counted before (see Interrupt); Error 7.
    void hold(std::size_t elements);

    std::vector<std::int32_t> sizes_;
    std::vector<Variant> elements_;
    std::size_t held_ = 0; // elements whose memory is counted
    bool fixed_ = false;
};

} // namespace tabrixdb
