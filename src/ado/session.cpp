#include "ado/session.h"

#include "ado/pool.h"

#include <algorithm>
#include <cctype>
#include <utility>

namespace tabrixdb::ado {

namespace {

// Sessions of this thread that have begun a read transaction; those that ended it since may be among them.
thread_local std::vector<std::weak_ptr<Session>> reading_sessions;

} // namespace

void release_snapshots() noexcept {
    for (const auto& session : std::exchange(reading_sessions, {}))
        if (const auto alive = session.lock()) {
            try {
                alive->release_snapshot();
            } catch (const Error&) {
                alive->close(); // its rows could not be kept, and its lock is not to stay
            }
        }
}

std::shared_ptr<Session> Session::open(const std::string& connection_string) {
    auto database = take_idle(connection_string);
    if (!database) {
        const ConnectionString settings(connection_string);
        database = find_provider(settings.value("Provider")).open(settings);
    }
    return std::make_shared<Session>(connection_string, std::move(database));
}

Session::Session(std::string pool_key, std::unique_ptr<Database> database)
    : pool_key_(std::move(pool_key)),
      database_(std::move(database)) {}

Session::~Session() {
    close();
}

void Session::close() noexcept {
    if (!database_)
        return;
    for (Reader* reader : std::exchange(readers_, {}))
        reader->on_close();
    end_snapshot();
    if (in_transaction_) {
        in_transaction_ = false;
        after_commit_.clear();
        try {
            database_->rollback();
        } catch (const Error&) {
            database_.reset();
            return;
        }
    }
    keep_idle(pool_key_, std::move(database_));
    database_.reset();
}

Database& Session::database() {
    if (!database_)
        throw error(Code::ObjectClosed, kConnectionSource);
    return *database_;
}

std::unique_ptr<Statement> Session::prepare_single(std::string_view sql, Reach reach) {
    std::size_t used = 0;
    auto statement = database().prepare(sql, used, reach);
    const auto is_blank = [](unsigned char c) { return std::isspace(c) != 0; };
    return statement && std::ranges::all_of(sql.substr(used), is_blank) ? std::move(statement) : nullptr;
}

void Session::remove_reader(Reader& reader) noexcept {
    std::erase(readers_, &reader);
    if (readers_.empty())
        end_snapshot();
}

void Session::hold_snapshot() {
    if (in_snapshot_ || database().in_transaction())
        return;
    database().begin();
    in_snapshot_ = true;
    std::erase_if(reading_sessions, [](const auto& session) { return session.expired(); });
    reading_sessions.push_back(weak_from_this());
}

void Session::release_snapshot() {
    if (!in_snapshot_)
        return;
    for (Reader* reader : std::vector(readers_))
        reader->on_release();
    end_snapshot();
}

void Session::end_snapshot() noexcept {
    if (!std::exchange(in_snapshot_, false))
        return;
    try {
        database_->commit();
    } catch (const Error&) {
        // Nothing was written, so nothing is lost; the transaction ends with the handle.
    }
}

void Session::keep_rows() {
    for (Reader* reader : std::vector(readers_))
        reader->before_write();
    ++writes_;
}

void Session::before_write() {
    // The other connections of the thread may be to the same file.
    for (const auto& session : std::vector(reading_sessions))
        if (const auto other = session.lock(); other && other.get() != this)
            other->keep_rows();
    keep_rows();
    release_snapshots();
}

void Session::begin_transaction() {
    if (in_transaction_)
        throw Error(kTransactionExists, "Only one transaction can be active on this session.",
                    std::string(kConnectionSource));
    database();
    release_snapshot();
    database_->begin();
    in_transaction_ = true;
}

void Session::commit_transaction() {
    if (!in_transaction_)
        throw Error(kNoTransaction, "No transaction is active.", std::string(kConnectionSource));
    finish_transaction(&Database::commit);
    for (const std::function<void()>& action : std::exchange(after_commit_, {}))
        action();
}

void Session::rollback_transaction() {
    if (!in_transaction_)
        throw Error(kNoTransaction, "No transaction is active.", std::string(kConnectionSource));
    before_write();
    finish_transaction(&Database::rollback);
    after_commit_.clear();
}

void Session::after_commit(std::function<void()> action) {
    if (in_transaction_)
        after_commit_.push_back(std::move(action));
    else
        action();
}

void Session::finish_transaction(void (Database::*finish)()) {
    try {
        (database().*finish)();
    } catch (const Error&) {
        in_transaction_ = database().in_transaction(); // a lock leaves it open for another try
        if (!in_transaction_)
            after_commit_.clear();
        throw;
    }
    in_transaction_ = false;
}

} // namespace tabrixdb::ado
