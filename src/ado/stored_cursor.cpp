#include "ado/stored_cursor.h"

#include "ado/values.h"

#include <algorithm>
#include <numeric>

namespace tabrixdb::ado {

StoredCursor::StoredCursor(std::shared_ptr<Session> session, std::unique_ptr<Statement> statement)
    : Cursor(std::move(session), statement->columns()),
      statement_(std::move(statement)) {
    fetch();
}

void StoredCursor::fetch() {
    rows_.reset(described().size());
    while (statement_->step()) {
        rows_.add(*statement_);
        if (rows_.bytes() > kMaxStoredBytes) {
            statement_->reset();
            throw Error(kFailed,
                        "The result is larger than " + std::to_string(kMaxStoredBytes >> 20) +
                            " MiB, and its query is of a form that has to be held whole.",
                        std::string(kRecordsetSource));
        }
    }
    show_all();
}

void StoredCursor::show_all() {
    visible_.resize(rows_.rows());
    std::iota(visible_.begin(), visible_.end(), 0u);
    current_ = 0;
}

bool StoredCursor::at(std::int64_t position) {
    if (position < 1 || position > count())
        return false;
    current_ = static_cast<std::size_t>(position - 1);
    return true;
}

void StoredCursor::arrange(Condition condition, SortOrder order) {
    show_all();
    const auto& columns = this->columns();
    if (!condition.empty())
        std::erase_if(visible_, [&](std::uint32_t row) {
            return !meets(condition, columns, [&](std::size_t column) { return rows_.cell(row, column); });
        });
    if (order.empty())
        return;
    std::ranges::sort(visible_, [&](std::uint32_t a, std::uint32_t b) {
        for (const SortKey& key : order) {
            const auto result = compare(rows_.cell(a, key.column), rows_.cell(b, key.column));
            if (result != 0)
                return key.descending ? result > 0 : result < 0;
        }
        return order.back().descending ? a > b : a < b;
    });
}

void StoredCursor::restart() {
    session().release_snapshot();
    if (!statement_->reads_only())
        session().before_write();
    fetch();
}

std::int64_t StoredCursor::locate(std::span<const OwnedCell> key) {
    const std::vector<std::size_t> columns = key_columns(described());
    const auto found = std::ranges::find_if(visible_, [&](std::uint32_t row) {
        for (std::size_t i = 0; i < columns.size(); ++i)
            if (compare(rows_.cell(row, columns[i]), key[i].get()) != 0)
                return false;
        return true;
    });
    return found == visible_.end() ? 0 : found - visible_.begin() + 1;
}

void StoredCursor::erase_current() {
    visible_.erase(visible_.begin() + static_cast<std::ptrdiff_t>(current_));
}

std::int64_t StoredCursor::append(std::span<const OwnedCell> cells) {
    rows_.add(cells);
    visible_.push_back(static_cast<std::uint32_t>(rows_.rows() - 1));
    return count();
}

} // namespace tabrixdb::ado
