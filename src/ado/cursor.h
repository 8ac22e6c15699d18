#pragma once

#include "ado/query.h"
#include "ado/session.h"

#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace tabrixdb::ado {

// Memory that a result which must be held whole may take, in bytes: it bounds what one page's query can cost.
inline constexpr std::size_t kMaxStoredBytes = std::size_t{256} << 20;
// Memory for the rows that a cursor keeps when the page is about to write: tens of thousands of usual rows,
// read in some milliseconds.
inline constexpr std::size_t kKeptBytes = std::size_t{4} << 20;

// The rows of an open query, by position from 1, in the order and with the filter that were asked for. Knows
// nothing of BOF, EOF and pages. Errors are those of the provider.
class Cursor : protected Session::Reader {
public:
    Cursor(std::shared_ptr<Session> session, std::vector<ColumnInfo> columns);
    virtual ~Cursor();

    // The columns. Where the database declares no type for one, the first row's value gives it, which may
    // fetch that row.
    const std::vector<ColumnInfo>& columns();

    // False for a cursor that only goes forward: it has no count, and at() takes the present position, the
    // next one, or 1 to start anew.
    virtual bool scrolls() const noexcept { return true; }

    // Makes the row at that position the current one; false past the last, and then none is current.
    virtual bool at(std::int64_t position) = 0;
    virtual std::int64_t count() = 0; // -1 unless scrolls()

    // The count, when it is known without asking the database.
    virtual std::optional<std::int64_t> known_count() const = 0;

    // A value of the current row, valid until the next call of another member.
    virtual Cell cell(std::size_t column) const = 0;

    // Other rows or another order from now on; no row is current then.
    virtual void arrange(Condition condition, SortOrder order) = 0;
    // Reads anew from the database; no row is current then.
    virtual void restart() = 0;
    // The position of the row with these values of key_columns(), or 0.
    virtual std::int64_t locate(std::span<const OwnedCell> key) = 0;

    // How many rows are likely to be read one after another.
    virtual void expect(std::int32_t /*rows*/) noexcept {}

    // Changes of the rows as they are held here, after the page has made them in the database.
    virtual void replace_current(std::span<const OwnedCell> cells) = 0;
    virtual void erase_current() = 0; // the row after it takes its position
    // Adds a row behind the last; its position, or 0 when the rows held here do not reach to the end.
    virtual std::int64_t append(std::span<const OwnedCell> cells) = 0;

protected:
    // Fetches a first row if there is one; its cells for columns().
    virtual bool sample() = 0;
    virtual Cell sample_cell(std::size_t column) const = 0;

    Session& session() const noexcept { return *session_; }

    const std::vector<ColumnInfo>& described() const noexcept { return columns_; }

private:
    void find_types();

    std::shared_ptr<Session> session_;
    std::vector<ColumnInfo> columns_;
    bool typed_;
};

// What running a statement's text gives.
struct Execution {
    std::unique_ptr<Cursor> cursor; // none: it gives no rows
    std::int64_t rows_changed = -1; // by the statements that write; -1: none did
};

// What is to be run.
struct RunRequest {
    std::string sql;
    // A query of the engine's own has all the values of its parameters here, and is one statement behind any
    // that only set something (but see Database::allows_many). What a page opens or executes has no values;
    // parameters that its text has nevertheless are Null.
    bool is_own = false;
    std::vector<OwnedCell> parameters = {};
};

// Runs every statement of the text; the first that gives rows gives the cursor, the last one where there is
// to be one statement. `scrolls`: a cursor that goes to any position, else one that only goes forward where
// the database can step through the rows.
Execution run(const std::shared_ptr<Session>& session, const RunRequest& request, bool scrolls);

} // namespace tabrixdb::ado
