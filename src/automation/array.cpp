#include "automation/array.h"

#include "automation/error.h"
#include "automation/interrupt.h"

#include <algorithm>

namespace tabrixdb {

namespace {

std::vector<std::int32_t> sizes_of(std::span<const std::int32_t> upper_bounds) {
    if (upper_bounds.empty() || upper_bounds.size() > Array::kMaxDimensions)
        throw Error(kErrorSubscript);
    std::vector<std::int32_t> sizes;
    std::size_t total = 1;
    for (const std::int32_t bound : upper_bounds) {
        if (bound < -1 || bound == INT32_MAX)
            throw Error(bound < -1 ? 7 : kErrorSubscript);
        sizes.push_back(bound + 1);
        if (bound >= 0 && total > Array::kMaxElements / static_cast<std::size_t>(bound + 1))
            throw Error(7);
        total *= static_cast<std::size_t>(bound + 1);
    }
    return sizes;
}

std::size_t product(std::span<const std::int32_t> sizes) {
    std::size_t total = 1;
    for (const std::int32_t size : sizes)
        total *= static_cast<std::size_t>(size);
    return total;
}

} // namespace

Array::Array(std::vector<Variant> elements)
    : sizes_{static_cast<std::int32_t>(elements.size())},
      elements_(std::move(elements)) {
    if (elements_.size() > kMaxElements)
        throw Error(7);
    hold(elements_.size());
}

Array::Array(std::span<const std::int32_t> upper_bounds, bool fixed)
    : sizes_(sizes_of(upper_bounds)),
      fixed_(fixed) {
    hold(product(sizes_));
    elements_.resize(product(sizes_));
}

Array::~Array() {
    Interrupt::let_go(held_ * sizeof(Variant));
}

void Array::hold(std::size_t elements) {
    if (elements > held_ && !Interrupt::hold((elements - held_) * sizeof(Variant)))
        throw Error(7);
    if (elements < held_)
        Interrupt::let_go((held_ - elements) * sizeof(Variant));
    held_ = elements;
}

Ref<Array> Array::clone(const Array& source) {
    auto copy = make_ref<Array>();
    copy->hold(source.elements_.size());
    copy->sizes_ = source.sizes_;
    copy->elements_ = source.elements_;
    copy->fixed_ = source.fixed_;
    return copy;
}

std::int32_t Array::upper_bound(std::size_t dimension) const {
    if (dimension >= sizes_.size())
        throw Error(kErrorSubscript);
    return sizes_[dimension] - 1;
}

std::size_t Array::offset(std::span<const std::int32_t> subscripts) const {
    if (subscripts.empty() || subscripts.size() != sizes_.size())
        throw Error(kErrorSubscript);
    std::size_t at = 0;
    for (std::size_t i = subscripts.size(); i-- > 0;) {
        if (subscripts[i] < 0 || subscripts[i] >= sizes_[i])
            throw Error(kErrorSubscript);
        at = at * static_cast<std::size_t>(sizes_[i]) + static_cast<std::size_t>(subscripts[i]);
    }
    return at;
}

void Array::redimension(std::span<const std::int32_t> upper_bounds, bool preserve) {
    if (fixed_)
        throw Error(10);
    std::vector<std::int32_t> sizes = sizes_of(upper_bounds);
    if (preserve && !sizes_.empty()) {
        if (sizes.size() != sizes_.size() || !std::equal(sizes.begin(), sizes.end() - 1, sizes_.begin()))
            throw Error(kErrorSubscript);
        hold(product(sizes));
        elements_.resize(product(sizes)); // the last dimension varies slowest: what stays keeps its place
    } else {
        hold(product(sizes));
        elements_ = std::vector<Variant>(product(sizes));
    }
    sizes_ = std::move(sizes);
}

void Array::erase() {
    if (fixed_) {
        std::ranges::fill(elements_, Variant());
    } else {
        sizes_.clear();
        elements_ = {};
        hold(0);
    }
}

} // namespace tabrixdb
