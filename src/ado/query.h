#pragma once

#include "ado/provider.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tabrixdb::ado {

// A filter whose names and values are found: the alternatives of FilterExpression.
struct Condition {
    std::vector<std::vector<BoundClause>> alternatives; // none: every row

    bool empty() const noexcept { return alternatives.empty(); }
};

struct SortKey {
    std::size_t column = 0;
    bool descending = false;
};

using SortOrder = std::vector<SortKey>;

// Looks the names up and gives the values the columns' types. Error 3001 for a name or a value that does not
// fit, or a pattern with a wildcard elsewhere than at its end or at both ends.
Condition bind_filter(const FilterExpression& filter, const std::vector<ColumnInfo>& columns);
// Error 3265 for an unknown name.
SortOrder bind_sort(const std::vector<SortTerm>& terms, const std::vector<ColumnInfo>& columns);
// Position of the column of that name, ignoring case; the first of several.
std::optional<std::size_t> find_column(const std::vector<ColumnInfo>& columns,
                                       std::string_view name) noexcept;

// Whether a row with these cells meets the condition; the same answer as the database's for the SQL below.
template <class CellOf>
bool meets(const Condition& condition, const std::vector<ColumnInfo>& columns, const CellOf& cell_of);
bool meets(const BoundClause& clause, const ColumnInfo& column, const Cell& cell) noexcept;

// A query that can stand as a derived table.
struct Query {
    std::string text;
    std::string unordered; // without its ORDER BY, where that neither chooses the rows nor has parameters
    std::vector<OwnedCell> parameters; // all of them, in the order of their marks
    Reach reach = Reach::AnyFile;
};

// nullopt for what is no single SELECT, WITH or VALUES by its words.
std::optional<Query> derived_query(std::string_view sql);

// How the rows of a query are wanted: its columns as the query alone describes them, which and in what order.
struct Arrangement {
    const std::vector<ColumnInfo>& columns;
    const Condition& condition;
    const SortOrder& order;
};

// The rows, in the query's own order or in that of `order`, where the columns of a complete key decide
// between equal ones, so that the order is the same at every request and going down is going up reversed.
// Parameters: the query's and the condition's values, then how many rows and how many to leave out.
std::string window_sql(const Query& query, const Dialect& dialect, const Arrangement& arrangement);
// Their number. Parameters: the query's and the condition's values.
std::string count_sql(const Query& query, const Dialect& dialect, const Arrangement& arrangement);
// The position, from 1, of the row with this key. Parameters: the query's and the condition's values, then
// the key's.
std::string locate_sql(const Query& query, const Dialect& dialect, const Arrangement& arrangement,
                       const std::vector<std::size_t>& key);
// Binds a query's own values, from parameter 0 on.
void bind_parameters(Statement& statement, std::span<const OwnedCell> parameters);
// Binds the query's and the condition's values; how many they are.
std::size_t bind_values(Statement& statement, const Query& query, const Condition& condition,
                        const std::vector<ColumnInfo>& columns);

// The columns which together are the key of a base table and so tell every row from every other: those of the
// only base table there is. Empty when the result has no such key.
std::vector<std::size_t> key_columns(const std::vector<ColumnInfo>& columns);

template <class CellOf>
bool meets(const Condition& condition, const std::vector<ColumnInfo>& columns, const CellOf& cell_of) {
    if (condition.empty())
        return true;
    for (const auto& clauses : condition.alternatives) {
        bool all = true;
        for (const BoundClause& clause : clauses)
            if (!meets(clause, columns[clause.column], cell_of(clause.column))) {
                all = false;
                break;
            }
        if (all)
            return true;
    }
    return false;
}

} // namespace tabrixdb::ado
