#pragma once

#include "ado/cell.h"
#include "ado/connection_string.h"
#include "ado/errors.h"
#include "ado/expression.h"
#include "platform/data.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

// What the cursors and the page-visible objects ask of a kind of database. One provider implements it in a
// folder of its own, which is the only place that knows the database's library. Every call raises Error with
// the provider's number and text; a Database belongs to one thread at a time.
namespace tabrixdb::ado {

struct ColumnInfo {
    platform::Column column;
    std::uint8_t precision = 0; // significant digits of numbers
    std::uint8_t scale = 0;     // digits behind the decimal sign, 131 only
    bool declared = false;      // false: the type is that of the first row's value
    bool key = false;           // part of the base table's primary key
    std::uint8_t key_parts = 0; // columns of that key, in the result or not
    bool ignores_case = false;  // the database's own comparison of it ignores case
    std::string schema, table;  // where the value comes from; empty for an expression
    std::string base_name;      // its name there

    bool is_base() const noexcept { return !table.empty(); }
};

// What a statement may do to files. OwnFile: it opens and writes none but the connection's.
enum class Reach : std::uint8_t { AnyFile, OwnFile };

// A prepared statement. After step() gave a row, its cells are valid until the next step() or reset().
class Statement {
public:
    virtual ~Statement() = default;
    // Empty for a statement that gives no rows. Valid as long as the statement.
    virtual const std::vector<ColumnInfo>& columns() const = 0;
    virtual bool reads_only() const = 0;
    // It changes a setting of the connection, and that is all.
    virtual bool only_sets() const = 0;
    virtual std::size_t parameters() const = 0;
    // `index` from 0. `type` is the ADO type of the column that the value is compared with or written to: it
    // says how the database writes a date. The value is copied.
    virtual void bind(std::size_t index, const Cell& value, std::int32_t type) = 0;
    virtual bool step() = 0; // true: a row; false: done
    virtual Cell cell(std::size_t column) const = 0;
    // Ends the execution, so that it can be bound and stepped anew. Nothing is raised.
    virtual void reset() noexcept = 0;
};

// A filter's clause with its column and value found: text without wildcards, the value of the column's type.
struct BoundClause {
    // How much of the text has to be equal, for Like.
    enum class Match : std::uint8_t { Whole, Start, Anywhere };

    std::size_t column = 0;
    Operator op = Operator::Equal;
    Match match = Match::Whole;
    OwnedCell value;
};

// The database's form of the pieces from which query.h makes statements.
class Dialect {
public:
    virtual ~Dialect() = default;
    virtual void append_name(std::string& sql, std::string_view name) const = 0;
    // A condition with one parameter, the clause's value; comparison of text ignores case.
    virtual void append_clause(std::string& sql, const ColumnInfo& column,
                               const BoundClause& clause) const = 0;
    // `name` holds exactly the value of one parameter, Null included; as the value of that column was read.
    virtual void append_same(std::string& sql, std::string_view name, const ColumnInfo& column) const = 0;
    // One term of ORDER BY; text ignores case, Null comes first going up.
    virtual void append_order(std::string& sql, const ColumnInfo& column, bool descending) const = 0;
    // The end of a statement that gives a part of the rows: two parameters, how many (-1: all) and how many
    // to leave out before.
    virtual void append_window(std::string& sql) const = 0;
};

// An open database, as one connection holds it. Statements must not outlive it.
class Database {
public:
    virtual ~Database() = default;
    virtual const Dialect& dialect() const = 0;
    // Prepares the first statement of `sql` and sets `used` to the bytes it took, sign of end included.
    // nullptr when there is none, only blanks and comments. What goes beyond `reach` is refused here or when
    // it is stepped.
    virtual std::unique_ptr<Statement> prepare(std::string_view sql, std::size_t& used, Reach reach) = 0;
    // Whether the connection's settings let a query of the engine's own be several statements, and reach any
    // file.
    virtual bool allows_many() const noexcept = 0;
    virtual void begin() = 0;
    virtual void commit() = 0;
    virtual void rollback() = 0;
    // Also when the page's own SQL has begun it.
    virtual bool in_transaction() const = 0;
    // Rows that the last statement which writes has touched.
    virtual std::int64_t rows_changed() const = 0;
    // The number that the database gave to the row that was added last.
    virtual std::int64_t last_identity() const = 0;
    // A statement that runs longer is stopped with kTimedOut; 0: no limit.
    virtual void set_time_limit(std::int32_t seconds) = 0;
    // May another connection with the same string go on with it? Asked when one is closed and before it is
    // used again: false when a page has changed its settings, or the database is another one by now.
    virtual bool reusable() = 0;

    // The errors of the last call that failed.
    const std::vector<ErrorRecord>& errors() const noexcept { return errors_; }

    void clear_errors() noexcept { errors_.clear(); }

protected:
    std::vector<ErrorRecord> errors_;
};

class Provider {
public:
    virtual ~Provider() = default;
    virtual std::string_view name() const = 0;
    // The database's own name and version.
    virtual std::string database_version() const = 0;
    virtual std::unique_ptr<Database> open(const ConnectionString& settings) = 0;
};

// The provider of that name, ignoring case; Error 3706 when there is none.
Provider& find_provider(std::string_view name);

} // namespace tabrixdb::ado
