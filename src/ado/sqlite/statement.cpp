#include "ado/sqlite/statement.h"

#include "ado/sqlite/date_form.h"
#include "ado/sqlite/typed_cell.h"

namespace tabrixdb::ado::sqlite {

SqliteStatement::~SqliteStatement() {
    sqlite3_reset(handle());
    sqlite3_clear_bindings(handle());
    database_.keep(std::move(prepared_));
}

void SqliteStatement::bind(std::size_t index, const Cell& value, std::int32_t type) {
    const int at = static_cast<int>(index) + 1;
    // A pointer of its own for nothing, because a null pointer would bind Null.
    const char* data = value.has_view() && value.size ? value.data : "";
    int code = SQLITE_OK;
    switch (value.kind) {
    case Cell::Kind::Null:
        code = sqlite3_bind_null(handle(), at);
        break;
    case Cell::Kind::Boolean:
    case Cell::Kind::Integer:
        code = sqlite3_bind_int64(handle(), at, value.whole);
        break;
    case Cell::Kind::Currency:
        code = value.whole % 10000 == 0
                   ? sqlite3_bind_int64(handle(), at, value.whole / 10000)
                   : sqlite3_bind_double(handle(), at, static_cast<double>(value.whole) / 10000);
        break;
    case Cell::Kind::Real:
        code = sqlite3_bind_double(handle(), at, value.real);
        break;
    case Cell::Kind::Date: {
        const std::string text = text_of_date(value.real, type);
        code = sqlite3_bind_text64(handle(), at, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
        break;
    }
    case Cell::Kind::Text:
        code = sqlite3_bind_text64(handle(), at, data, value.size, SQLITE_TRANSIENT, SQLITE_UTF8);
        break;
    case Cell::Kind::Bytes:
        code = sqlite3_bind_blob64(handle(), at, data, value.size, SQLITE_TRANSIENT);
        break;
    }
    if (code != SQLITE_OK)
        database_.fail(code);
}

bool SqliteStatement::step() {
    const bool row = database_.step(*prepared_);
    // Another connection may have changed the table since the statement was prepared.
    if (row && static_cast<std::size_t>(sqlite3_column_count(handle())) != prepared_->columns.size()) {
        prepared_->sql.clear(); // is not kept
        reset();
        database_.fail(SQLITE_SCHEMA);
    }
    return row;
}

Cell SqliteStatement::cell(std::size_t column) const {
    return typed(stored_cell(handle(), static_cast<int>(column)), prepared_->columns[column].column.type);
}

} // namespace tabrixdb::ado::sqlite
