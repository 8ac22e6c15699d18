#include "ado/sqlite/database.h"

#include "ado/sql_words.h"
#include "ado/sqlite/declared_type.h"
#include "ado/sqlite/functions.h"
#include "ado/sqlite/statement.h"
#include "automation/conversions.h"
#include "automation/interrupt.h"
#include "automation/text.h"

#include <algorithm>
#include <array>
#include <thread>
#include <utility>

#include <sys/stat.h>

namespace tabrixdb::ado::sqlite {

namespace {

using namespace std::chrono_literals;
namespace type = platform::data_type;

constexpr std::string_view kSource = "TabrixDb.SQLite";

// Statements kept for the next use, a handle: a page has a few, each with its window and its count.
constexpr std::size_t kMaxKept = 64;
// Virtual machine operations between two looks at the clock and at the page's interrupt: some microseconds.
constexpr int kOperationsPerTick = 1000;
constexpr std::uint32_t kTicksPerClock = 16;
// Time that a locked database is waited for; more would only hold a worker of the server.
constexpr auto kBusyTimeout = 5s;
constexpr auto kMaxBusyTimeout = 600s;
// Largest value and longest statement, in bytes: they bound what one cell of a result can take.
constexpr int kMaxValue = 256 * 1024 * 1024;
constexpr int kMaxSql = 16 * 1024 * 1024;

std::int32_t error_number(int code, std::string_view text) {
    switch (code & 0xFF) {
    case SQLITE_ERROR:
        return text.starts_with("no such table") ? kNoTable : kErrorsInCommand;
    case SQLITE_CONSTRAINT:
        return kIntegrityViolation;
    case SQLITE_READONLY:
    case SQLITE_PERM:
    case SQLITE_AUTH:
        return kPermissionDenied;
    case SQLITE_MISMATCH:
        return kTypeMismatch;
    case SQLITE_INTERRUPT:
        return kTimedOut;
    default:
        return kFailed;
    }
}

std::chrono::milliseconds busy_timeout_of(const ConnectionString& settings) {
    const std::string_view text = settings.value("Timeout", "Busy Timeout");
    if (text.empty())
        return kBusyTimeout;
    const auto seconds = parse_number(text);
    if (!seconds || *seconds < 0 || *seconds > std::chrono::duration<double>(kMaxBusyTimeout).count())
        throw Error(kFailed, "Timeout takes seconds from 0 to 600.", std::string(kSource));
    return std::chrono::milliseconds(static_cast<std::int64_t>(*seconds * 1000));
}

bool allows_many_statements(const ConnectionString& settings) {
    const std::string_view text = settings.value("Statements");
    const bool many = equal_ignore_case(text, "Many");
    if (!many && !text.empty() && !equal_ignore_case(text, "One"))
        throw Error(kFailed, "Statements takes One or Many.", std::string(kSource));
    return many;
}

int open_flags(std::string_view mode) {
    if (equal_ignore_case(mode, "Read") || equal_ignore_case(mode, "ReadOnly"))
        return SQLITE_OPEN_READONLY;
    return contains_ignore_case(mode, "Create") ? SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE
                                                : SQLITE_OPEN_READWRITE;
}

bool is_switched_off(std::string_view word) {
    return equal_ignore_case(word, "off") || equal_ignore_case(word, "false") || word == "0" ||
           equal_ignore_case(word, "no");
}

std::string text_of(const char* text) {
    return text ? std::string(text) : std::string();
}

// A pragma whose argument names what it tells about.
bool only_describes(std::string_view pragma) {
    return equal_ignore_case(pragma.substr(0, 6), "table_") ||
           equal_ignore_case(pragma.substr(0, 6), "index_") || equal_ignore_case(pragma, "foreign_key_list");
}

// A pragma whose argument is where other files than the database's are to be.
bool names_a_place(std::string_view pragma) {
    return equal_ignore_case(pragma, "temp_store_directory") ||
           equal_ignore_case(pragma, "data_store_directory") || equal_ignore_case(pragma, "lock_proxy_file");
}

// Gives a variable a value for the scope.
template <class T>
class Scoped {
public:
    Scoped(T& variable, T value) : variable_(variable), before_(std::exchange(variable, value)) {}

    ~Scoped() { variable_ = before_; }

    Scoped(const Scoped&) = delete;
    Scoped& operator=(const Scoped&) = delete;

private:
    T& variable_;
    T before_;
};

// Whether it joins the rows of several SELECTs.
bool is_compound(std::string_view sql) {
    SqlWords words(sql);
    int depth = 0;
    for (std::string_view word = words.next(); !word.empty(); word = words.next()) {
        depth += (word == "(") - (word == ")");
        if (depth == 0 && (equal_ignore_case(word, "UNION") || equal_ignore_case(word, "INTERSECT") ||
                           equal_ignore_case(word, "EXCEPT")))
            return true;
    }
    return false;
}

bool is_row_number_name(std::string_view name) {
    return equal_ignore_case(name, "rowid") || equal_ignore_case(name, "_rowid_") ||
           equal_ignore_case(name, "oid");
}

} // namespace

// --- Opening ----------------------------------------------------------------------------------------

SqliteDatabase::SqliteDatabase(const ConnectionString& settings)
    : path_(settings.value("Data Source", "Database")),
      busy_timeout_(busy_timeout_of(settings)),
      allows_many_(allows_many_statements(settings)) {
    if (path_.empty())
        throw Error(kFailed, "The connection string names no Data Source.", std::string(kSource));
    open(settings);
    try {
        known_schema_ = schema_version();
    } catch (const Error& failure) {
        if (sqlite3_errcode(handle_.get()) == SQLITE_NOTADB)
            throw Error(kFailed, "\"" + path_ + "\" is not a SQLite database.", std::string(kSource));
        throw;
    }

    struct stat status {};

    if (::stat(path_.c_str(), &status) == 0) {
        device_ = status.st_dev;
        file_ = status.st_ino;
    }
    sqlite3_set_authorizer(handle_.get(), on_authorize, this);
}

SqliteDatabase::~SqliteDatabase() {
    kept_.clear();
}

void SqliteDatabase::open(const ConnectionString& settings) {
    const int flags = open_flags(settings.value("Mode"));

    struct stat status {};

    const bool in_memory = path_ == ":memory:";
    if (!in_memory && !(flags & SQLITE_OPEN_CREATE) && ::stat(path_.c_str(), &status) != 0)
        throw Error(kFailed, "The database file \"" + path_ + "\" was not found.", std::string(kSource));
    // A path is a path: SQLite would read one with "file:" as an address with settings of its own.
    const std::string path = path_.starts_with("file:") ? "./" + path_ : path_;
    sqlite3* handle = nullptr;
    // Without SQLite's own lock: a handle belongs to one thread at a time.
    const int code = sqlite3_open_v2(path.c_str(), &handle, flags | SQLITE_OPEN_NOMUTEX, nullptr);
    handle_.reset(handle);
    if (!handle)
        throw Error(7);
    if (code != SQLITE_OK)
        throw Error(kFailed,
                    "The database file \"" + path_ + "\" cannot be opened: " + sqlite3_errmsg(handle) + ".",
                    std::string(kSource));
    sqlite3_extended_result_codes(handle, 1);
    sqlite3_busy_handler(handle, on_busy, this);
    sqlite3_progress_handler(handle, kOperationsPerTick, on_progress, this);
    sqlite3_limit(handle, SQLITE_LIMIT_LENGTH, kMaxValue);
    sqlite3_limit(handle, SQLITE_LIMIT_SQL_LENGTH, kMaxSql);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_ENABLE_FKEY, !is_switched_off(settings.value("Foreign Keys")),
                      nullptr);
    if (add_functions(handle) != SQLITE_OK)
        fail(SQLITE_NOMEM);
}

bool SqliteDatabase::same_file() const {
    struct stat status {};

    return ::stat(path_.c_str(), &status) == 0 && device_ == status.st_dev && file_ == status.st_ino;
}

bool SqliteDatabase::reusable() {
    if (settings_changed_ || !same_file() || !sqlite3_get_autocommit(handle_.get()))
        return false;
    errors_.clear();
    time_limit_ = {};
    try {
        if (const std::int64_t version = schema_version(); version != known_schema_) {
            forget_schema();
            execute("SELECT 1 FROM sqlite_schema"); // has SQLite read the schema anew
            known_schema_ = version;
        }
    } catch (const Error&) {
        return false;
    }
    return true;
}

// --- Statements -------------------------------------------------------------------------------------

const Dialect& SqliteDatabase::dialect() const {
    return sqlite_dialect();
}

std::unique_ptr<Prepared> SqliteDatabase::take(std::string_view sql, Reach reach) {
    const auto found = std::ranges::find_if(kept_, [sql, reach](const auto& prepared) {
        return prepared->reach == reach && prepared->sql == sql;
    });
    if (found == kept_.end())
        return nullptr;
    auto prepared = std::move(*found);
    kept_.erase(found);
    return prepared;
}

std::unique_ptr<Prepared> SqliteDatabase::compile(std::string_view sql, Reach reach) {
    if (sql.size() > static_cast<std::size_t>(kMaxSql))
        fail(SQLITE_TOOBIG);
    if (sql.find('\0') != std::string_view::npos) // there SQLite would take the text to end
        throw Error(kErrorsInCommand, "The SQL text has a character of the code 0.", std::string(kSource));
    auto prepared = std::make_unique<Prepared>();
    prepared->sql = sql;
    prepared->reach = reach;
    sqlite3_stmt* statement = nullptr;
    const char* rest = nullptr;
    refused_ = sets_ = false;
    const Scoped within(reach_, reach);
    const int code = sqlite3_prepare_v2(handle_.get(), prepared->sql.c_str(), static_cast<int>(sql.size()),
                                        &statement, &rest);
    prepared->handle.reset(statement);
    if (code != SQLITE_OK)
        fail(code);
    prepared->sets = sets_ && equal_ignore_case(SqlWords(sql).next(), "PRAGMA");
    prepared->used = static_cast<std::size_t>(rest - prepared->sql.c_str());
    describe(*prepared);
    return prepared;
}

std::unique_ptr<Statement> SqliteDatabase::prepare(std::string_view sql, std::size_t& used, Reach reach) {
    std::unique_ptr<Prepared> prepared = take(sql, reach);
    if (!prepared)
        prepared = compile(sql, reach);
    used = prepared->used;
    if (!prepared->handle)
        return nullptr;
    return std::make_unique<SqliteStatement>(*this, std::move(prepared));
}

std::unique_ptr<Statement> SqliteDatabase::prepare(std::string_view sql) {
    std::size_t used = 0;
    return prepare(sql, used, Reach::OwnFile);
}

void SqliteDatabase::keep(std::unique_ptr<Prepared> prepared) noexcept {
    // What changes the schema makes every description doubtful.
    if (!sqlite3_stmt_readonly(prepared->handle.get())) {
        for (const std::string_view word : {"CREATE", "ALTER", "DROP"})
            if (contains_ignore_case(prepared->sql, word))
                return forget_schema();
    }
    if (prepared->sql.empty() || prepared->sets) // some settings are made when they are prepared
        return;
    kept_.push_front(std::move(prepared));
    if (kept_.size() > kMaxKept)
        kept_.pop_back();
}

void SqliteDatabase::forget_schema() noexcept {
    kept_.clear();
    keys_.clear();
}

void SqliteDatabase::execute(const char* sql) {
    prepare(sql)->step();
}

bool SqliteDatabase::step(const Prepared& prepared) {
    sqlite3_stmt* const statement = prepared.handle.get();
    ticks_ = 0;
    timed_out_ = refused_ = false;
    const Scoped within(reach_, prepared.reach); // VACUUM attaches when it runs
    const int code = sqlite3_step(statement);
    if (code == SQLITE_ROW)
        return true;
    if (code == SQLITE_DONE) {
        // Ends the statement's hold on the database at once.
        sqlite3_reset(statement);
        return false;
    }
    sqlite3_reset(statement);
    fail(code);
}

void SqliteDatabase::fail(int code) {
    std::string text = sqlite3_errmsg(handle_.get());
    const std::int32_t number = error_number(code, text);
    if ((code & 0xFF) == SQLITE_BUSY || (code & 0xFF) == SQLITE_LOCKED) {
        const double seconds = std::chrono::duration<double>(busy_timeout_).count();
        text = "The database is locked by another connection; it was waited for " + number_text(seconds) +
               " seconds (" + text + ").";
    } else if (code == SQLITE_INTERRUPT) {
        text = timed_out_ ? "Timeout expired." : "The page was stopped.";
    } else if (std::exchange(refused_, false)) {
        text = "A query attaches no database and writes no other file, as VACUUM would (" + text +
               "). \"Statements=Many\" in the connection string allows it.";
    } else if (code == SQLITE_SCHEMA) {
        text = "The table was changed since the statement was prepared; open it again.";
    }
    errors_.assign(1, {number, text, std::string(kSource), code, {}});
    throw Error(number, std::move(text), std::string(kSource));
}

std::int64_t SqliteDatabase::schema_version() {
    const auto statement = prepare("PRAGMA schema_version");
    return statement->step() ? statement->cell(0).whole : 0;
}

// --- Description ------------------------------------------------------------------------------------

void SqliteDatabase::describe(Prepared& prepared) {
    const int count = prepared.handle ? sqlite3_column_count(prepared.handle.get()) : 0;
    prepared.columns.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        prepared.columns.push_back(describe(prepared.handle.get(), i));
    // SQLite names the first SELECT's tables for the rows of all.
    if (count != 0 && is_compound(std::string_view(prepared.sql).substr(0, prepared.used)))
        for (ColumnInfo& info : prepared.columns)
            info.column.computed = true;
}

ColumnInfo SqliteDatabase::describe(sqlite3_stmt* statement, int index) {
    ColumnInfo info;
    info.column.name = text_of(sqlite3_column_name(statement, index));
    info.table = text_of(sqlite3_column_table_name(statement, index));
    info.schema = text_of(sqlite3_column_database_name(statement, index));
    info.base_name = text_of(sqlite3_column_origin_name(statement, index));
    const DeclaredType declared = read_declared_type(text_of(sqlite3_column_decltype(statement, index)));
    info.declared = declared.type != 0;
    if (info.declared) {
        info.column.type = declared.type;
        info.column.defined_size = declared.size;
        info.precision = declared.precision;
        info.scale = declared.scale;
    }
    info.column.attributes = platform::kFieldIsNullable | platform::kFieldMayBeNull;
    info.column.computed = !info.is_base();
    if (info.is_base())
        describe_base(info);
    switch (info.column.type) {
    case type::kLongVarWChar:
    case type::kLongVarBinary:
        info.column.attributes |= platform::kFieldLong;
        break;
    case type::kVarWChar:
    case type::kVarBinary:
    case type::kGuid:
        break;
    default:
        info.column.attributes |= platform::kFieldFixed;
    }
    return info;
}

void SqliteDatabase::describe_base(ColumnInfo& info) {
    const char *declared = nullptr, *collation = nullptr;
    int not_null = 0, primary = 0, numbered = 0;
    if (sqlite3_table_column_metadata(handle_.get(), info.schema.c_str(), info.table.c_str(),
                                      info.base_name.c_str(), &declared, &collation, &not_null, &primary,
                                      &numbered) != SQLITE_OK)
        return;
    info.ignores_case = collation && equal_ignore_case(collation, "NOCASE");
    const KeyColumns& key = key_of(info.schema, info.table);
    info.key = primary != 0;
    info.key_parts = static_cast<std::uint8_t>(std::min<std::size_t>(key.names.size(), 255));
    if (key.names.empty() && info.key) // the number that every row has
        info.key_parts = 1;
    const bool is_named = std::ranges::find(key.names, info.base_name) != key.names.end();
    info.column.numbered = info.key && (is_named ? key.is_row_number : is_row_number_name(info.base_name));
    // A column that the table numbers itself for good is not to be written; one that it numbers when it is
    // left out may be.
    if (!numbered)
        info.column.attributes |= platform::kFieldUpdatable;
    if (not_null || info.key)
        info.column.attributes &= ~(platform::kFieldIsNullable | platform::kFieldMayBeNull);
    if (info.key)
        info.column.attributes |= platform::kFieldKeyColumn;
}

const SqliteDatabase::KeyColumns& SqliteDatabase::key_of(const std::string& schema,
                                                         const std::string& table) {
    const auto [entry, added] = keys_.try_emplace({schema, table});
    KeyColumns& key = entry->second;
    if (!added)
        return key;
    const auto statement =
        prepare("SELECT name, EXISTS (SELECT 1 FROM pragma_index_list(?1, ?2) WHERE origin = 'pk')"
                " FROM pragma_table_info(?1, ?2) WHERE pk > 0 ORDER BY pk");
    statement->bind(0, Cell::text(table), type::kVarWChar);
    statement->bind(1, Cell::text(schema), type::kVarWChar);
    while (statement->step()) {
        key.names.emplace_back(statement->cell(0).view());
        key.is_row_number = statement->cell(1).whole == 0; // any other key has an index
    }
    return key;
}

// --- What SQLite asks while it works ----------------------------------------------------------------

int SqliteDatabase::on_progress(void* self) noexcept {
    auto& database = *static_cast<SqliteDatabase*>(self);
    if (Interrupt* interrupt = Interrupt::current(); interrupt && interrupt->poll())
        return 1;
    if (database.time_limit_ == std::chrono::steady_clock::duration::zero() ||
        database.ticks_++ % kTicksPerClock != 0)
        return 0;
    const auto now = std::chrono::steady_clock::now();
    if (database.ticks_ == 1)
        database.step_started_ = now;
    database.timed_out_ = now - database.step_started_ > database.time_limit_;
    return database.timed_out_;
}

int SqliteDatabase::on_busy(void* self, int attempt) noexcept {
    static constexpr std::array<std::chrono::milliseconds, 8> kPauses = {1ms,  2ms,  5ms,  10ms,
                                                                         15ms, 20ms, 25ms, 50ms};
    const auto& database = *static_cast<SqliteDatabase*>(self);
    std::chrono::milliseconds waited{0};
    for (int i = 0; i < attempt && waited < database.busy_timeout_; ++i)
        waited += kPauses[std::min<std::size_t>(static_cast<std::size_t>(i), kPauses.size() - 1)];
    if (waited >= database.busy_timeout_)
        return 0;
    if (Interrupt* interrupt = Interrupt::current(); interrupt && interrupt->stopped())
        return 0;
    std::this_thread::sleep_for(
        std::min(kPauses[std::min<std::size_t>(static_cast<std::size_t>(attempt), kPauses.size() - 1)],
                 database.busy_timeout_ - waited));
    return 1;
}

int SqliteDatabase::on_authorize(void* self, int action, const char* first, const char* second, const char*,
                                 const char*) noexcept {
    return static_cast<SqliteDatabase*>(self)->authorize(action, first, second);
}

// Refuses what goes beyond the statement's reach, and notes what would leave its mark on the next page that
// gets this handle.
int SqliteDatabase::authorize(int action, const char* first, const char* second) noexcept {
    const bool sets = action == SQLITE_PRAGMA && second && !only_describes(first);
    const bool reaches_out =
        action == SQLITE_ATTACH || action == SQLITE_DETACH || (sets && names_a_place(first));
    if (reaches_out && reach_ == Reach::OwnFile) {
        refused_ = true;
        return SQLITE_DENY;
    }
    sets_ |= sets;
    switch (action) {
    case SQLITE_PRAGMA:
        settings_changed_ |= sets;
        break;
    case SQLITE_ATTACH:
    case SQLITE_DETACH:
    case SQLITE_CREATE_TEMP_TABLE:
    case SQLITE_CREATE_TEMP_VIEW:
    case SQLITE_CREATE_TEMP_TRIGGER:
    case SQLITE_CREATE_TEMP_INDEX:
        settings_changed_ = true;
        break;
    default:
        break;
    }
    return SQLITE_OK;
}

} // namespace tabrixdb::ado::sqlite
