#pragma once

#include "ado/provider.h"

#include <chrono>
#include <list>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <sqlite3.h>

namespace tabrixdb::ado::sqlite {

// A prepared statement with what is known of it; kept by its database for the next use.
struct Prepared {
    struct Finalize {
        void operator()(sqlite3_stmt* statement) const noexcept { sqlite3_finalize(statement); }
    };

    std::string sql;
    Reach reach = Reach::AnyFile; // with which it was prepared, and is stepped
    bool sets = false;            // see Statement::only_sets
    std::size_t used = 0;
    std::unique_ptr<sqlite3_stmt, Finalize> handle;
    std::vector<ColumnInfo> columns;
};

// One handle of a SQLite file.
class SqliteDatabase final : public Database {
public:
    // Raises when the file is missing (unless the settings say that it may be created) or no database.
    explicit SqliteDatabase(const ConnectionString& settings);
    ~SqliteDatabase() override;

    const Dialect& dialect() const override;
    std::unique_ptr<Statement> prepare(std::string_view sql, std::size_t& used, Reach reach) override;

    bool allows_many() const noexcept override { return allows_many_; }

    void begin() override { execute("BEGIN"); }

    void commit() override { execute("COMMIT"); }

    void rollback() override { execute("ROLLBACK"); }

    std::int64_t rows_changed() const override { return sqlite3_changes64(handle_.get()); }

    std::int64_t last_identity() const override { return sqlite3_last_insert_rowid(handle_.get()); }

    bool in_transaction() const override { return !sqlite3_get_autocommit(handle_.get()); }

    void set_time_limit(std::int32_t seconds) override { time_limit_ = std::chrono::seconds(seconds); }

    bool reusable() override;

    // --- For the statements ------------------------------------------------------------------------

    // Steps; true for a row. Raises what went wrong.
    bool step(const Prepared& prepared);
    void keep(std::unique_ptr<Prepared> prepared) noexcept;
    // Raises the error of the last call.
    [[noreturn]] void fail(int code);

private:
    struct Close {
        void operator()(sqlite3* handle) const noexcept { sqlite3_close_v2(handle); }
    };

    struct KeyColumns {
        std::vector<std::string> names;
        bool is_row_number = false; // INTEGER PRIMARY KEY
    };

    void open(const ConnectionString& settings);
    void execute(const char* sql);
    std::unique_ptr<Prepared> take(std::string_view sql, Reach reach);
    std::unique_ptr<Prepared> compile(std::string_view sql, Reach reach);
    // A statement of this class's own.
    std::unique_ptr<Statement> prepare(std::string_view sql);
    int authorize(int action, const char* first, const char* second) noexcept;
    void describe(Prepared& prepared);
    ColumnInfo describe(sqlite3_stmt* statement, int index);
    void describe_base(ColumnInfo& info);
    const KeyColumns& key_of(const std::string& schema, const std::string& table);
    void forget_schema() noexcept;
    std::int64_t schema_version();
    bool same_file() const;

    static int on_progress(void* self) noexcept;
    static int on_busy(void* self, int attempt) noexcept;
    static int on_authorize(void* self, int action, const char* first, const char* second, const char*,
                            const char*) noexcept;

    std::string path_;
    std::unique_ptr<sqlite3, Close> handle_;
    std::list<std::unique_ptr<Prepared>> kept_; // most recently used first
    std::map<std::pair<std::string, std::string>, KeyColumns> keys_;
    std::chrono::milliseconds busy_timeout_;
    std::chrono::steady_clock::duration time_limit_{};
    std::chrono::steady_clock::time_point step_started_;
    std::uint32_t ticks_ = 0; // progress calls within the present step
    bool timed_out_ = false;
    bool settings_changed_ = false;
    bool allows_many_;
    Reach reach_ = Reach::AnyFile; // of the statement at work
    bool sets_ = false;            // it changes a setting
    bool refused_ = false;         // it went beyond its reach
    std::int64_t known_schema_ = 0;
    std::uint64_t device_ = 0, file_ = 0;
};

} // namespace tabrixdb::ado::sqlite
