#include "ado/window_cursor.h"

#include <algorithm>

namespace tabrixdb::ado {

WindowCursor::WindowCursor(std::shared_ptr<Session> session, std::vector<ColumnInfo> columns, Query query)
    : Cursor(std::move(session), std::move(columns)),
      query_(std::move(query)) {}

bool WindowCursor::at(std::int64_t position) {
    if (!holds(position)) {
        if (count_ && position > *count_)
            return false;
        load(position);
        if (!holds(position))
            return false;
    }
    current_ = static_cast<std::size_t>(position - first_);
    return true;
}

std::int64_t WindowCursor::count() {
    if (!count_) {
        session().hold_snapshot();
        std::size_t bound = 0;
        const auto statement =
            prepared(count_sql(query_, session().database().dialect(), arrangement()), bound);
        count_ = statement->step() ? statement->cell(0).whole : 0;
    }
    return *count_;
}

void WindowCursor::arrange(Condition condition, SortOrder order) {
    forget();
    condition_ = std::move(condition);
    order_ = std::move(order);
    window_sql_.clear();
}

void WindowCursor::restart() {
    forget();
    // What others have written since is to be seen.
    session().release_snapshot();
}

void WindowCursor::forget() noexcept {
    window_.reset(described().size());
    first_ = 0;
    current_ = 0;
    count_.reset();
    further_.reset();
}

std::unique_ptr<Statement> WindowCursor::prepared(const std::string& sql, std::size_t& bound) {
    std::size_t used = 0;
    auto statement = session().database().prepare(sql, used, query_.reach);
    bound = bind_values(*statement, query_, condition_, described());
    return statement;
}

std::unique_ptr<Statement> WindowCursor::window_from(std::int64_t position, std::int64_t rows) {
    if (window_sql_.empty())
        window_sql_ = window_sql(query_, session().database().dialect(), arrangement());
    std::size_t bound = 0;
    auto statement = prepared(window_sql_, bound);
    statement->bind(bound, Cell::integer(rows), platform::data_type::kBigInt);
    statement->bind(bound + 1, Cell::integer(position - 1), platform::data_type::kBigInt);
    return statement;
}

void WindowCursor::load(std::int64_t position) {
    const bool goes_on = first_ != 0 && position == end();
    if (first_ != 0 && is_stale()) {
        if (goes_on)
            throw Error(kRowChanged,
                        "The rows were changed while they were read, and there are too many to keep a copy. "
                        "Call Requery, or read with a Recordset of its own.",
                        std::string(kRecordsetSource));
        forget();
    }
    session().hold_snapshot();
    writes_ = session().writes();
    const std::int64_t rows = std::clamp(expected_rows_ + 1, kLeastRows, kMostRows);
    if (goes_on) {
        auto statement = further_ ? std::move(further_) : window_from(position, -1);
        window_.reset(described().size());
        first_ = position;
        if (fill(*statement, kMostRows, kMostBytes))
            further_ = std::move(statement);
        return;
    }
    // Going back one row is likely to go on so.
    if (first_ != 0 && position == first_ - 1 && rows <= position) {
        load_from(position - rows + 1, rows);
        if (holds(position))
            return;
    }
    load_from(position, rows);
}

void WindowCursor::load_from(std::int64_t position, std::int64_t rows) {
    further_.reset();
    const auto statement = window_from(position, rows);
    window_.reset(described().size());
    first_ = position;
    fill(*statement, rows, kMostBytes);
}

// Adds rows to the window; false when the statement has no more.
bool WindowCursor::fill(Statement& statement, std::int64_t rows, std::size_t bytes) {
    for (std::int64_t i = 0; i < rows; ++i) {
        if (!statement.step()) {
            if (window_.rows() != 0 || first_ == 1)
                count_ = end() - 1;
            return false;
        }
        window_.add(statement);
        if (window_.bytes() >= bytes)
            return true;
    }
    return true;
}

bool WindowCursor::sample() {
    if (window_.rows() == 0)
        load(1);
    return window_.rows() != 0;
}

std::int64_t WindowCursor::locate(std::span<const OwnedCell> key) {
    const std::vector<std::size_t> columns = key_columns(described());
    session().hold_snapshot();
    std::size_t bound = 0;
    const auto statement =
        prepared(locate_sql(query_, session().database().dialect(), arrangement(), columns), bound);
    for (std::size_t i = 0; i < columns.size(); ++i)
        statement->bind(bound + i, key[i].get(), described()[columns[i]].column.type);
    return statement->step() ? statement->cell(0).whole : 0;
}

void WindowCursor::before_write() {
    if (first_ == 0 || is_stale() || (count_ && end() > *count_))
        return;
    session().hold_snapshot();
    const auto statement = further_ ? std::move(further_) : window_from(end(), -1);
    fill(*statement, INT64_MAX, window_.bytes() + kKeptBytes);
}

void WindowCursor::on_close() noexcept {
    further_.reset();
}

void WindowCursor::erase_current() {
    window_.erase(current_);
    if (count_)
        --*count_;
}

std::int64_t WindowCursor::append(std::span<const OwnedCell> cells) {
    if (first_ == 0 || !count_ || end() <= *count_)
        return 0;
    window_.add(cells);
    return ++*count_;
}

} // namespace tabrixdb::ado
