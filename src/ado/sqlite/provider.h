#pragma once

#include "ado/provider.h"

namespace tabrixdb::ado::sqlite {

// `Provider=SQLite;Data Source=PATH`; further keys: Mode (Read, ReadWrite, Create), Timeout (seconds that a
// locked database is waited for), Foreign Keys (On, Off).
class SqliteProvider final : public Provider {
public:
    std::string_view name() const override { return "SQLite"; }

    std::string database_version() const override;
    std::unique_ptr<Database> open(const ConnectionString& settings) override;
};

} // namespace tabrixdb::ado::sqlite
