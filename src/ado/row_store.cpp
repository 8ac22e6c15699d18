#include "ado/row_store.h"

#include <algorithm>
#include <cstring>

namespace tabrixdb::ado {

namespace {

// Chunks grow from the first size to the last, so that a page of short rows takes little and a large result
// few allocations. A longer value gets a chunk of its own.
constexpr std::size_t kFirstChunk = 4096;
constexpr std::size_t kLastChunk = 1 << 20;

} // namespace

void RowStore::reset(std::size_t columns) {
    columns_ = columns;
    cells_.clear();
    chunks_.clear();
    chunk_bytes_ = 0;
    free_ = nullptr;
    free_bytes_ = 0;
}

Cell RowStore::kept(const Cell& cell) {
    if (!cell.has_view())
        return cell;
    if (cell.size > free_bytes_) {
        const std::size_t wanted = std::clamp(chunk_bytes_, kFirstChunk, kLastChunk);
        if (cell.size > wanted / 4) {
            char* own = chunks_.emplace_back(new char[cell.size]).get();
            chunk_bytes_ += cell.size;
            std::memcpy(own, cell.data, cell.size);
            return Cell::of_view(cell.kind, {own, cell.size});
        }
        free_ = chunks_.emplace_back(new char[wanted]).get();
        free_bytes_ = wanted;
        chunk_bytes_ += wanted;
    }
    if (cell.size)
        std::memcpy(free_, cell.data, cell.size);
    const Cell result = Cell::of_view(cell.kind, {free_, cell.size});
    free_ += cell.size;
    free_bytes_ -= cell.size;
    return result;
}

void RowStore::add(const Statement& statement) {
    for (std::size_t i = 0; i < columns_; ++i)
        cells_.push_back(kept(statement.cell(i)));
}

void RowStore::add(std::span<const OwnedCell> cells) {
    for (const OwnedCell& cell : cells)
        cells_.push_back(kept(cell.get()));
}

void RowStore::replace(std::size_t row, std::span<const OwnedCell> cells) {
    for (std::size_t i = 0; i < columns_; ++i)
        cells_[row * columns_ + i] = kept(cells[i].get());
}

void RowStore::erase(std::size_t row) {
    const auto first = cells_.begin() + static_cast<std::ptrdiff_t>(row * columns_);
    cells_.erase(first, first + static_cast<std::ptrdiff_t>(columns_));
}

} // namespace tabrixdb::ado
