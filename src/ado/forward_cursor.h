#pragma once

#include "ado/cursor.h"
#include "ado/row_store.h"

namespace tabrixdb::ado {

// The cursor that only goes forward: rows are read straight from the statement, nothing is held. When the
// page writes on the same connection, the rows to come are kept first (as many as kKeptBytes hold; the
// statement goes on behind them). When it writes on another one, or the request ends, all of them are kept,
// up to kMaxStoredBytes; reading on past them is Error kRowChanged.
class ForwardCursor final : public Cursor {
public:
    ForwardCursor(std::shared_ptr<Session> session, std::unique_ptr<Statement> statement);

    bool scrolls() const noexcept override { return false; }

    bool at(std::int64_t position) override;

    std::int64_t count() override { return -1; }

    std::optional<std::int64_t> known_count() const override { return std::nullopt; }

    Cell cell(std::size_t column) const override;
    void arrange(Condition condition, SortOrder order) override;
    void restart() override;

    std::int64_t locate(std::span<const OwnedCell>) override { return 0; }

    void replace_current(std::span<const OwnedCell> cells) override;

    void erase_current() override {}

    std::int64_t append(std::span<const OwnedCell>) override { return 0; }

private:
    bool sample() override;

    Cell sample_cell(std::size_t column) const override { return cell(column); }

    void before_write() override { keep(kKeptBytes); }

    void on_release() override;
    void keep(std::size_t bytes);

    void on_close() noexcept override { statement_.reset(); }

    bool next();
    bool next_row();
    void keep_current();

    std::unique_ptr<Statement> statement_;
    Condition condition_;
    RowStore kept_;
    bool in_kept_ = false; // the current row is kept_'s row kept_at_
    std::size_t kept_at_ = 0;
    std::int64_t position_ = 0; // of the current row; 0 before the first
    bool has_row_ = false;
    bool done_ = false;    // the statement has no more rows
    bool cut_off_ = false; // it had more than could be kept when it had to let go
};

} // namespace tabrixdb::ado
