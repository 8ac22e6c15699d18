#include "ado/writing.h"

#include <algorithm>

namespace tabrixdb::ado {

namespace {

constexpr std::string_view kNotOneTable =
    "The values of this change do not belong to one table with its key among the fields.";

[[noreturn]] void fail_not_updatable(std::string_view detail) {
    throw error(Code::FeatureNotAvailable, kRecordsetSource, detail);
}

bool same_table(const ColumnInfo& a, const ColumnInfo& b) {
    return a.table == b.table && a.schema == b.schema;
}

// The table that a change writes to, as one of its columns.
const ColumnInfo& table_of(const std::vector<ColumnInfo>& columns, const std::vector<std::size_t>& written) {
    for (const std::size_t i : written)
        if (!columns[i].is_base() || !same_table(columns[i], columns[written.front()]))
            fail_not_updatable(kNotOneTable);
    return columns[written.front()];
}

// The positions of the whole key of that table.
std::vector<std::size_t> key_of(const std::vector<ColumnInfo>& columns, const ColumnInfo& table) {
    std::vector<std::size_t> key;
    for (std::size_t i = 0; i < columns.size(); ++i)
        if (columns[i].key && same_table(columns[i], table))
            key.push_back(i);
    // A key column that is there twice comes from two rows of the table: which one is meant cannot be said.
    if (key.empty() || key.size() != table.key_parts)
        fail_not_updatable(kNotOneTable);
    return key;
}

// A statement in the making: its text, and the values in the order of its parameters.
class Command {
public:
    Command(Session& session, const std::vector<ColumnInfo>& columns)
        : session_(session),
          columns_(columns),
          dialect_(session.database().dialect()) {}

    Command& text(std::string_view part) {
        sql_.append(part);
        return *this;
    }

    Command& table(const ColumnInfo& table) {
        dialect_.append_name(sql_, table.schema);
        sql_ += '.';
        dialect_.append_name(sql_, table.table);
        return *this;
    }

    Command& name(std::size_t column) {
        dialect_.append_name(sql_, columns_[column].base_name);
        return *this;
    }

    Command& parameter(std::size_t column, const Cell& value) {
        values_.emplace_back(column, value);
        return *this;
    }

    // " WHERE ..." the columns hold what was read.
    Command& where(const std::vector<std::size_t>& which, const RowCells& original) {
        std::string_view between = " WHERE ";
        for (const std::size_t column : which) {
            text(between);
            dialect_.append_same(sql_, columns_[column].base_name, columns_[column]);
            parameter(column, original[column].get());
            between = " AND ";
        }
        return *this;
    }

    std::unique_ptr<Statement> prepare() {
        auto statement = session_.prepare_single(sql_);
        for (std::size_t i = 0; i < values_.size(); ++i)
            statement->bind(i, values_[i].second, columns_[values_[i].first].column.type);
        return statement;
    }

    std::int64_t execute() {
        const auto statement = prepare();
        statement->step();
        return session_.database().rows_changed();
    }

private:
    Session& session_;
    const std::vector<ColumnInfo>& columns_;
    const Dialect& dialect_;
    std::string sql_;
    std::vector<std::pair<std::size_t, Cell>> values_;
};

void require_one(std::int64_t changed) {
    if (changed != 1)
        throw Error(kRowChanged,
                    "Row cannot be located for updating. Some values may have been changed since it was last "
                    "read.",
                    std::string(kRecordsetSource));
}

std::vector<std::size_t> written_columns(NewValues values) {
    std::vector<std::size_t> written;
    for (std::size_t i = 0; i < values.size(); ++i)
        if (values[i])
            written.push_back(i);
    return written;
}

} // namespace

void insert_row(Session& session, const std::vector<ColumnInfo>& columns, NewValues values) {
    std::vector<std::size_t> written = written_columns(values);
    const bool only_defaults = written.empty();
    if (only_defaults)
        for (std::size_t i = 0; i < columns.size() && written.empty(); ++i)
            if (columns[i].is_base())
                written.push_back(i);
    if (written.empty())
        fail_not_updatable(kNotOneTable);
    Command command(session, columns);
    command.text("INSERT INTO ").table(table_of(columns, written));
    if (only_defaults) {
        command.text(" DEFAULT VALUES").execute();
        return;
    }
    std::string_view between = " (";
    for (const std::size_t column : written) {
        command.text(between).name(column).parameter(column, values[column]->get());
        between = ", ";
    }
    between = ") VALUES (";
    for (std::size_t i = 0; i < written.size(); ++i) {
        command.text(between).text("?");
        between = ", ";
    }
    command.text(")").execute();
}

void update_row(Session& session, const std::vector<ColumnInfo>& columns, const RowCells& original,
                NewValues values) {
    const std::vector<std::size_t> written = written_columns(values);
    if (written.empty())
        return;
    const ColumnInfo& table = table_of(columns, written);
    std::vector<std::size_t> which = key_of(columns, table);
    Command command(session, columns);
    command.text("UPDATE ").table(table);
    std::string_view between = " SET ";
    for (const std::size_t column : written) {
        command.text(between).name(column).text(" = ?").parameter(column, values[column]->get());
        between = ", ";
        if (std::ranges::find(which, column) == which.end())
            which.push_back(column);
    }
    require_one(command.where(which, original).execute());
}

void delete_row(Session& session, const std::vector<ColumnInfo>& columns, const RowCells& original) {
    std::vector<std::size_t> which;
    for (std::size_t i = 0; i < columns.size(); ++i)
        if (columns[i].is_base())
            which.push_back(i);
    if (which.empty())
        fail_not_updatable(kNotOneTable);
    const ColumnInfo& table = table_of(columns, which);
    require_one(Command(session, columns)
                    .text("DELETE FROM ")
                    .table(table)
                    .where(key_of(columns, table), original)
                    .execute());
}

void read_back(Session& session, const std::vector<ColumnInfo>& columns, RowCells& cells) {
    const auto base = std::ranges::find_if(columns, &ColumnInfo::is_base);
    Command command(session, columns);
    command.text("SELECT ");
    std::vector<std::size_t> read;
    std::string_view between;
    for (std::size_t i = 0; i < columns.size(); ++i)
        if (columns[i].is_base() && same_table(columns[i], *base)) {
            command.text(between).name(i);
            read.push_back(i);
            between = ", ";
        }
    const auto statement = command.text(" FROM ").table(*base).where(key_of(columns, *base), cells).prepare();
    if (!statement->step())
        return;
    for (std::size_t i = 0; i < read.size(); ++i)
        cells[read[i]] = OwnedCell(statement->cell(i));
}

} // namespace tabrixdb::ado
