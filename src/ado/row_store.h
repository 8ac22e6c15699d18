#pragma once

#include "ado/provider.h"

#include <memory>
#include <span>
#include <vector>

namespace tabrixdb::ado {

// Rows that were fetched, kept close together: one array of cells, their text and bytes in large chunks.
// Cells are valid until the row is replaced or the store is cleared.
class RowStore {
public:
    void reset(std::size_t columns);

    std::size_t rows() const noexcept { return columns_ ? cells_.size() / columns_ : 0; }

    // Memory taken, in bytes.
    std::size_t bytes() const noexcept { return cells_.size() * sizeof(Cell) + chunk_bytes_; }

    const Cell& cell(std::size_t row, std::size_t column) const noexcept {
        return cells_[row * columns_ + column];
    }

    // Copies the statement's current row to the end.
    void add(const Statement& statement);
    void add(std::span<const OwnedCell> cells);
    void replace(std::size_t row, std::span<const OwnedCell> cells);
    void erase(std::size_t row);

private:
    Cell kept(const Cell& cell);

    std::size_t columns_ = 0;
    std::vector<Cell> cells_;
    std::vector<std::unique_ptr<char[]>> chunks_;
    std::size_t chunk_bytes_ = 0;
    char* free_ = nullptr; // the rest of the last chunk
    std::size_t free_bytes_ = 0;
};

} // namespace tabrixdb::ado
