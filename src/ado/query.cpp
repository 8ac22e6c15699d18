#include "ado/query.h"

#include "ado/sql_words.h"
#include "ado/values.h"
#include "automation/text.h"

#include <algorithm>

namespace tabrixdb::ado {

namespace {

void append_condition(std::string& sql, const Dialect& dialect, const Arrangement& arrangement) {
    if (arrangement.condition.empty())
        return;
    sql += " WHERE ";
    std::string_view between_alternatives;
    for (const auto& clauses : arrangement.condition.alternatives) {
        sql.append(between_alternatives).append("(");
        std::string_view between;
        for (const BoundClause& clause : clauses) {
            sql.append(between);
            dialect.append_clause(sql, arrangement.columns[clause.column], clause);
            between = " AND ";
        }
        sql += ')';
        between_alternatives = " OR ";
    }
}

void append_order(std::string& sql, const Dialect& dialect, const Arrangement& arrangement) {
    if (arrangement.order.empty())
        return;
    sql += " ORDER BY ";
    std::string_view between;
    for (const SortKey& key : arrangement.order) {
        sql.append(between);
        dialect.append_order(sql, arrangement.columns[key.column], key.descending);
        between = ", ";
    }
    for (const std::size_t column : key_columns(arrangement.columns)) {
        if (std::ranges::any_of(arrangement.order, [column](const SortKey& k) { return k.column == column; }))
            continue;
        sql += ", ";
        dialect.append_name(sql, arrangement.columns[column].column.name);
        // The direction of the last term, in which an index on that term's column has the key as well.
        if (arrangement.order.back().descending)
            sql += " DESC";
    }
}

// The query in brackets; a line of its own, because it may end with a comment.
void append_source(std::string& sql, const Query& query, bool keeps_order) {
    sql.append(" FROM (\n").append(keeps_order ? query.text : query.unordered).append("\n)");
}

} // namespace

std::optional<Query> derived_query(std::string_view sql) {
    SqlWords words(sql);
    const std::string_view first = words.next();
    if (!equal_ignore_case(first, "SELECT") && !equal_ignore_case(first, "WITH") &&
        !equal_ignore_case(first, "VALUES"))
        return std::nullopt;
    const std::size_t start = words.start();
    std::size_t end = words.end(), order = std::string_view::npos;
    bool limited = false, marked = false;
    int depth = 0;
    for (std::string_view token = words.next(); !token.empty() && token != ";"; token = words.next()) {
        end = words.end();
        depth += (token == "(") - (token == ")");
        if (depth == 0 && equal_ignore_case(token, "ORDER"))
            order = words.start();
        limited |= depth == 0 && equal_ignore_case(token, "LIMIT");
        marked |= order != std::string_view::npos && is_parameter(token);
    }
    Query query;
    query.text = sql.substr(start, end - start);
    const bool droppable = order != std::string_view::npos && !limited && !marked;
    query.unordered = droppable ? query.text.substr(0, order - start) : query.text;
    return query;
}

std::string window_sql(const Query& query, const Dialect& dialect, const Arrangement& arrangement) {
    std::string sql = "SELECT *";
    append_source(sql, query, arrangement.order.empty());
    append_condition(sql, dialect, arrangement);
    append_order(sql, dialect, arrangement);
    dialect.append_window(sql);
    return sql;
}

std::string count_sql(const Query& query, const Dialect& dialect, const Arrangement& arrangement) {
    std::string sql = "SELECT COUNT(*)";
    append_source(sql, query, false);
    append_condition(sql, dialect, arrangement);
    return sql;
}

std::string locate_sql(const Query& query, const Dialect& dialect, const Arrangement& arrangement,
                       const std::vector<std::size_t>& key) {
    std::string position = "position";
    while (find_column(arrangement.columns, position))
        position += '_';
    std::string sql = "SELECT " + position + " FROM (SELECT *, row_number() OVER (";
    append_order(sql, dialect, arrangement);
    sql.append(") AS ").append(position);
    append_source(sql, query, arrangement.order.empty());
    append_condition(sql, dialect, arrangement);
    sql += ") WHERE ";
    std::string_view between;
    for (const std::size_t column : key) {
        sql.append(between);
        dialect.append_name(sql, arrangement.columns[column].column.name);
        sql += " = ?";
        between = " AND ";
    }
    return sql;
}

void bind_parameters(Statement& statement, std::span<const OwnedCell> parameters) {
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        const Cell value = parameters[i].get();
        statement.bind(i, value, parameter_type(value));
    }
}

std::size_t bind_values(Statement& statement, const Query& query, const Condition& condition,
                        const std::vector<ColumnInfo>& columns) {
    bind_parameters(statement, query.parameters);
    std::size_t index = query.parameters.size();
    for (const auto& clauses : condition.alternatives)
        for (const BoundClause& clause : clauses) {
            // Dates are compared with their time, whatever the column shows of it.
            const bool is_date =
                platform::type_class(columns[clause.column].column.type) == platform::TypeClass::Date;
            statement.bind(index++, clause.value.get(),
                           is_date ? platform::data_type::kDbTimeStamp : columns[clause.column].column.type);
        }
    return index;
}

std::vector<std::size_t> key_columns(const std::vector<ColumnInfo>& columns) {
    std::vector<std::size_t> key;
    const ColumnInfo* table = nullptr;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const ColumnInfo& column = columns[i];
        if (!column.is_base())
            continue;
        if (table && (table->table != column.table || table->schema != column.schema))
            return {};
        table = &column;
        const bool repeated = std::ranges::any_of(
            key, [&](std::size_t other) { return columns[other].base_name == column.base_name; });
        if (column.key && !repeated)
            key.push_back(i);
    }
    if (!table || key.empty() || key.size() != columns[key.front()].key_parts)
        return {};
    return key;
}

} // namespace tabrixdb::ado
