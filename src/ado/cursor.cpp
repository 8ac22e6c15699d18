#include "ado/cursor.h"

#include "ado/forward_cursor.h"
#include "ado/sql_words.h"
#include "ado/stored_cursor.h"
#include "ado/window_cursor.h"

#include <algorithm>

namespace tabrixdb::ado {

namespace {

std::int32_t type_of(const Cell& cell) {
    namespace type = platform::data_type;
    switch (cell.kind) {
    case Cell::Kind::Integer:
        return type::kInteger;
    case Cell::Kind::Real:
        return type::kDouble;
    case Cell::Kind::Bytes:
        return type::kLongVarBinary;
    default:
        return type::kVarWChar;
    }
}

bool same_names(const std::vector<ColumnInfo>& a, const std::vector<ColumnInfo>& b) {
    return std::ranges::equal(
        a, b, {}, [](const ColumnInfo& info) { return info.column.name; },
        [](const ColumnInfo& info) { return info.column.name; });
}

// A cursor that has the database do the work, if the query as a derived table has the same names.
std::unique_ptr<Cursor> window_over(const std::shared_ptr<Session>& session, const Statement& plain,
                                    Query query) {
    if (plain.parameters() != query.parameters.size())
        return nullptr;
    try {
        const std::vector<ColumnInfo>& columns = plain.columns();
        const auto wrapped = session->prepare_single(
            window_sql(query, session->database().dialect(), {columns, Condition(), SortOrder()}),
            query.reach);
        if (wrapped && same_names(columns, wrapped->columns()))
            return std::make_unique<WindowCursor>(session, columns, std::move(query));
    } catch (const Error&) {
        session->database().clear_errors(); // the plain statement is fine; so the wrapping is not
    }
    return nullptr;
}

// `query`: the statement's text, when it is one that only reads.
std::unique_ptr<Cursor> cursor_over(const std::shared_ptr<Session>& session,
                                    std::unique_ptr<Statement> statement, std::optional<Query> query,
                                    bool scrolls) {
    if (query && !scrolls)
        return std::make_unique<ForwardCursor>(session, std::move(statement));
    if (query)
        if (auto window = window_over(session, *statement, std::move(*query)))
            return window;
    return std::make_unique<StoredCursor>(session, std::move(statement));
}

bool is_blank(std::string_view text) {
    return text.find_first_not_of(" \t\r\n\f\v") == std::string_view::npos;
}

bool has_statement(std::string_view sql) {
    SqlWords words(sql);
    std::string_view sign = words.next();
    while (sign == ";")
        sign = words.next();
    return !is_blank(sign);
}

[[noreturn]] void fail_parameters(const RunRequest& request, bool too_many) {
    throw Error(kErrorsInCommand,
                "The query has " + std::string(too_many ? "fewer" : "more") + " parameters than the " +
                    std::to_string(request.parameters.size()) + " that it was given values for.",
                std::string(kRecordsetSource));
}

[[noreturn]] void fail_several() {
    throw Error(kErrorsInCommand,
                "The query is more than one statement, and only settings may stand before it. "
                "\"Statements=Many\" in the connection string allows several.",
                std::string(kRecordsetSource));
}

} // namespace

Cursor::Cursor(std::shared_ptr<Session> session, std::vector<ColumnInfo> columns)
    : session_(std::move(session)),
      columns_(std::move(columns)),
      typed_(std::ranges::all_of(columns_, &ColumnInfo::declared)) {
    session_->add_reader(*this);
}

Cursor::~Cursor() {
    session_->remove_reader(*this);
}

const std::vector<ColumnInfo>& Cursor::columns() {
    if (!typed_)
        find_types();
    return columns_;
}

void Cursor::find_types() {
    const bool has_row = sample();
    typed_ = true;
    if (!has_row)
        return;
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        ColumnInfo& info = columns_[i];
        if (info.declared)
            continue;
        info.column.type = type_of(sample_cell(i));
        if (info.column.type == platform::data_type::kLongVarBinary) {
            info.column.attributes |= platform::kFieldLong;
        } else if (info.column.type != platform::data_type::kVarWChar) {
            info.column.attributes |= platform::kFieldFixed;
            info.column.defined_size = info.column.type == platform::data_type::kInteger ? 4 : 8;
        }
    }
}

Execution run(const std::shared_ptr<Session>& session, const RunRequest& request, bool scrolls) {
    Execution result;
    std::string_view sql = request.sql;
    std::span<const OwnedCell> parameters = request.parameters; // those that no statement has taken
    const bool single = request.is_own && !session->database().allows_many();
    const Reach reach = single ? Reach::OwnFile : Reach::AnyFile;
    Database& database = session->database();
    database.clear_errors();
    bool any = false;
    while (!is_blank(sql)) {
        std::size_t used = 0;
        auto statement = database.prepare(sql, used, reach);
        const bool last = !has_statement(sql.substr(used));
        const bool alone = (single || !any) && last;
        const std::string_view text = sql.substr(0, used);
        sql.remove_prefix(used);
        if (!statement)
            continue;
        if (single && !last && !statement->only_sets())
            fail_several();
        any = true;
        const auto own = parameters.first(std::min(statement->parameters(), parameters.size()));
        parameters = parameters.subspan(own.size());
        const bool too_many = last && !parameters.empty();
        if (request.is_own && (own.size() != statement->parameters() || too_many))
            fail_parameters(request, too_many);
        bind_parameters(*statement, own);
        const bool writes = !statement->reads_only();
        auto query = writes ? std::nullopt : derived_query(text);
        // Also for what only seems to read: a pragma does nothing within a transaction.
        if (!query)
            session->before_write();
        if (!statement->columns().empty() && !result.cursor && (last || !single)) {
            if (!alone)
                query.reset();
            if (query) {
                query->parameters.assign(own.begin(), own.end());
                query->reach = reach;
            }
            result.cursor = cursor_over(session, std::move(statement), std::move(query), scrolls);
        } else {
            while (statement->step()) {
            }
        }
        if (writes)
            result.rows_changed = std::max<std::int64_t>(result.rows_changed, 0) + database.rows_changed();
    }
    if (!any)
        throw Error(static_cast<std::int32_t>(0x80040E0C), "Command text was not set.",
                    std::string(kConnectionSource));
    return result;
}

} // namespace tabrixdb::ado
