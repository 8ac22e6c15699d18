#include "ado/sqlite/functions.h"

#include "ado/sqlite/typed_cell.h"
#include "ado/values.h"
#include "automation/text.h"

namespace tabrixdb::ado::sqlite {

namespace {

namespace type = platform::data_type;
using Match = BoundClause::Match;

// TABRIXDB_TEXT: the order of texts ignoring case.
int compare_texts(void*, int left_size, const void* left, int right_size, const void* right) {
    return compare_ignore_case({static_cast<const char*>(left), static_cast<std::size_t>(left_size)},
                               {static_cast<const char*>(right), static_cast<std::size_t>(right_size)});
}

// TABRIXDB_DATE(value): its second, in whichever form it is stored; what is no date stays what it is.
void date_function(sqlite3_context* context, int, sqlite3_value** arguments) {
    const Cell cell = typed(stored_cell(arguments[0]), type::kDbTimeStamp);
    if (cell.kind == Cell::Kind::Date)
        sqlite3_result_int64(context, date_seconds(cell.real));
    else
        sqlite3_result_value(context, arguments[0]);
}

// TABRIXDB_BOOLEAN(value): 0 or 1; what is no Boolean stays what it is.
void boolean_function(sqlite3_context* context, int, sqlite3_value** arguments) {
    const Cell cell = typed(stored_cell(arguments[0]), type::kBoolean);
    if (cell.kind == Cell::Kind::Boolean)
        sqlite3_result_int64(context, cell.whole);
    else
        sqlite3_result_value(context, arguments[0]);
}

// TABRIXDB_MATCH(value, wanted, how): does the text begin with, or contain, the wanted one?
void match_function(sqlite3_context* context, int, sqlite3_value** arguments) {
    const Cell value = stored_cell(arguments[0]), wanted = stored_cell(arguments[1]);
    if (value.kind != Cell::Kind::Text || wanted.kind != Cell::Kind::Text)
        return sqlite3_result_int(context, 0);
    const bool anywhere = sqlite3_value_int(arguments[2]) == static_cast<int>(Match::Anywhere);
    const bool matches = anywhere ? contains_ignore_case(value.view(), wanted.view())
                                  : equal_ignore_case(value.view().substr(0, wanted.size), wanted.view());
    sqlite3_result_int(context, matches);
}

std::string_view sign_of(Operator op) {
    switch (op) {
    case Operator::NotEqual:
        return " <> ";
    case Operator::Less:
        return " < ";
    case Operator::LessOrEqual:
        return " <= ";
    case Operator::Greater:
        return " > ";
    case Operator::GreaterOrEqual:
        return " >= ";
    default:
        return " = ";
    }
}

bool is_text(const ColumnInfo& column) {
    return platform::type_class(column.column.type) == platform::TypeClass::Text &&
           column.column.type != type::kBoolean;
}

// What brings the forms in which a column's values may be stored to one; nothing but brackets for most.
std::string_view normalizing_function(const ColumnInfo& column) {
    if (column.column.type == type::kBoolean)
        return "TABRIXDB_BOOLEAN";
    return platform::type_class(column.column.type) == platform::TypeClass::Date ? "TABRIXDB_DATE" : "";
}

class SqliteDialect final : public Dialect {
public:
    void append_name(std::string& sql, std::string_view name) const override {
        sql += '"';
        for (const char c : name) {
            if (c == '"')
                sql += c;
            sql += c;
        }
        sql += '"';
    }

    void append_clause(std::string& sql, const ColumnInfo& column, const BoundClause& clause) const override {
        if (is_text(column))
            return append_text_clause(sql, column, clause);
        const std::string_view function = normalizing_function(column);
        sql.append(function).append("(");
        append_name(sql, column.column.name);
        sql.append(")").append(sign_of(clause.op)).append(function).append("(?)");
    }

    void append_same(std::string& sql, std::string_view name, const ColumnInfo& column) const override {
        const std::string_view function = normalizing_function(column);
        sql.append(function).append("(");
        append_name(sql, name);
        sql.append(") IS ").append(function).append("(?)");
    }

    void append_order(std::string& sql, const ColumnInfo& column, bool descending) const override {
        append_name(sql, column.column.name);
        if (is_text(column) && !column.ignores_case)
            sql += " COLLATE TABRIXDB_TEXT";
        if (descending)
            sql += " DESC";
    }

    void append_window(std::string& sql) const override { sql += " LIMIT ? OFFSET ?"; }

private:
    // Text of a column that the database itself compares ignoring case is left to it: an index may serve.
    void append_text_clause(std::string& sql, const ColumnInfo& column, const BoundClause& clause) const {
        std::string value;
        if (!column.declared)
            value += "CAST(";
        append_name(value, column.column.name);
        if (!column.declared)
            value += " AS TEXT)";
        if (clause.op == Operator::Like && clause.match != Match::Whole) {
            const int how = static_cast<int>(clause.match);
            sql += "TABRIXDB_MATCH(" + value + ", ?, " + std::to_string(how) + ")";
        } else {
            sql += value;
            sql += sign_of(clause.op);
            sql += column.ignores_case ? "?" : "? COLLATE TABRIXDB_TEXT";
        }
    }
};

} // namespace

int add_functions(sqlite3* handle) noexcept {
    constexpr int kFlags = SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS;
    const auto add = [handle](const char* name, int arguments, auto function) {
        return sqlite3_create_function_v2(handle, name, arguments, kFlags, nullptr, function, nullptr,
                                          nullptr, nullptr);
    };
    int code =
        sqlite3_create_collation_v2(handle, "TABRIXDB_TEXT", SQLITE_UTF8, nullptr, compare_texts, nullptr);
    if (code == SQLITE_OK)
        code = add("TABRIXDB_DATE", 1, date_function);
    if (code == SQLITE_OK)
        code = add("TABRIXDB_BOOLEAN", 1, boolean_function);
    if (code == SQLITE_OK)
        code = add("TABRIXDB_MATCH", 3, match_function);
    return code;
}

const Dialect& sqlite_dialect() {
    static const SqliteDialect dialect;
    return dialect;
}

} // namespace tabrixdb::ado::sqlite
