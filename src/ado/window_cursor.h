#pragma once

#include "ado/cursor.h"
#include "ado/row_store.h"

#include <optional>

namespace tabrixdb::ado {

// The cursor that has the database page, count, filter and sort: it holds one stretch of rows and fetches
// another when a position outside is asked for. Reading on past the end of a stretch keeps the statement
// open and steps it further, so that a walk over all rows costs each row once.
//
// When the page writes on the same connection, the rows from the stretch's first on are kept first (as many
// as kKeptBytes hold), so that a loop which changes or deletes rows sees each row once; reading on past what
// was kept is Error kRowChanged.
class WindowCursor final : public Cursor {
public:
    // Rows fetched at least and at most when a stretch is begun. The least saves a trip when a small page
    // size meets a few moves; the most bounds what an absurd page size costs before the rows are asked for.
    static constexpr std::int64_t kLeastRows = 16;
    static constexpr std::int64_t kMostRows = 1024;
    // Memory after which a stretch ends early, in bytes; it has one row at least.
    static constexpr std::size_t kMostBytes = std::size_t{4} << 20;

    WindowCursor(std::shared_ptr<Session> session, std::vector<ColumnInfo> columns, Query query);

    bool at(std::int64_t position) override;
    std::int64_t count() override;

    std::optional<std::int64_t> known_count() const override { return count_; }

    Cell cell(std::size_t column) const override { return window_.cell(current_, column); }

    void arrange(Condition condition, SortOrder order) override;
    void restart() override;
    std::int64_t locate(std::span<const OwnedCell> key) override;

    void expect(std::int32_t rows) noexcept override { expected_rows_ = rows; }

    void replace_current(std::span<const OwnedCell> cells) override { window_.replace(current_, cells); }

    void erase_current() override;
    std::int64_t append(std::span<const OwnedCell> cells) override;

private:
    bool sample() override;

    Cell sample_cell(std::size_t column) const override { return window_.cell(0, column); }

    void before_write() override;

    void on_release() override { further_.reset(); }

    void on_close() noexcept override;

    std::int64_t end() const noexcept { return first_ + static_cast<std::int64_t>(window_.rows()); }

    bool holds(std::int64_t position) const noexcept { return position >= first_ && position < end(); }

    bool is_stale() const noexcept { return writes_ != session().writes(); }

    Arrangement arrangement() const noexcept { return {described(), condition_, order_}; }

    std::unique_ptr<Statement> prepared(const std::string& sql, std::size_t& bound);
    std::unique_ptr<Statement> window_from(std::int64_t position, std::int64_t rows);
    void load(std::int64_t position);
    void load_from(std::int64_t position, std::int64_t rows);
    bool fill(Statement& statement, std::int64_t rows, std::size_t bytes);
    void forget() noexcept;

    Query query_;
    Condition condition_;
    SortOrder order_;
    std::string window_sql_; // of the present arrangement; empty until it is needed
    RowStore window_;
    std::int64_t first_ = 0; // position of the window's first row; 0: none was fetched
    std::size_t current_ = 0;
    std::optional<std::int64_t> count_;
    std::unique_ptr<Statement> further_; // stands behind the window's last row
    std::int64_t expected_rows_ = kLeastRows;
    std::uint64_t writes_ = 0; // of the session, when the window was begun
};

} // namespace tabrixdb::ado
