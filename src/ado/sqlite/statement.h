#pragma once

#include "ado/sqlite/database.h"

namespace tabrixdb::ado::sqlite {

class SqliteStatement final : public Statement {
public:
    SqliteStatement(SqliteDatabase& database, std::unique_ptr<Prepared> prepared)
        : database_(database),
          prepared_(std::move(prepared)) {}

    ~SqliteStatement() override;

    const std::vector<ColumnInfo>& columns() const override { return prepared_->columns; }

    bool reads_only() const override { return sqlite3_stmt_readonly(handle()) != 0; }

    bool only_sets() const override { return prepared_->sets; }

    std::size_t parameters() const override {
        return static_cast<std::size_t>(sqlite3_bind_parameter_count(handle()));
    }

    void bind(std::size_t index, const Cell& value, std::int32_t type) override;
    bool step() override;
    Cell cell(std::size_t column) const override;

    void reset() noexcept override { sqlite3_reset(handle()); }

private:
    sqlite3_stmt* handle() const noexcept { return prepared_->handle.get(); }

    SqliteDatabase& database_;
    std::unique_ptr<Prepared> prepared_;
};

} // namespace tabrixdb::ado::sqlite
