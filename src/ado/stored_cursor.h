#pragma once

#include "ado/cursor.h"
#include "ado/row_store.h"

#include <cstdint>

namespace tabrixdb::ado {

// The cursor for what the database cannot page: it fetches all rows at once, and filters and sorts them here.
// A result above kMaxStoredBytes is refused.
class StoredCursor final : public Cursor {
public:
    StoredCursor(std::shared_ptr<Session> session, std::unique_ptr<Statement> statement);

    bool at(std::int64_t position) override;

    std::int64_t count() override { return static_cast<std::int64_t>(visible_.size()); }

    std::optional<std::int64_t> known_count() const override {
        return static_cast<std::int64_t>(visible_.size());
    }

    Cell cell(std::size_t column) const override { return rows_.cell(visible_[current_], column); }

    void arrange(Condition condition, SortOrder order) override;
    void restart() override;
    std::int64_t locate(std::span<const OwnedCell> key) override;

    void replace_current(std::span<const OwnedCell> cells) override {
        rows_.replace(visible_[current_], cells);
    }

    void erase_current() override;
    std::int64_t append(std::span<const OwnedCell> cells) override;

private:
    bool sample() override { return rows_.rows() != 0; }

    Cell sample_cell(std::size_t column) const override { return rows_.cell(0, column); }

    void before_write() override {}

    void on_release() override {}

    void on_close() noexcept override { statement_.reset(); }

    void fetch();
    void show_all();

    std::unique_ptr<Statement> statement_;
    RowStore rows_;
    std::vector<std::uint32_t> visible_; // indexes of rows, in the order shown
    std::size_t current_ = 0;
};

} // namespace tabrixdb::ado
