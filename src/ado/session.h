#pragma once

#include "ado/provider.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tabrixdb::ado {

// A connection's database handle as the connection and its recordsets share it.
//
// What a recordset reads comes from one read transaction: its count and its pages belong together, whatever
// others write meanwhile. The transaction is the handle's and serves all of its recordsets. It begins with
// the first that reads and ends
//  - before the page writes through this connection or through another one of the same thread, so that a page
//    never waits for a lock of its own. The recordsets that have begun to read keep their rows first.
//  - with the last recordset that reads;
//  - at the end of the request, see release_snapshots(): a recordset kept in a session holds no lock.
// While the page has a transaction open (BeginTrans), that one is read in.
class Session : public std::enable_shared_from_this<Session> {
public:
    // A recordset's cursor, as the session calls it.
    class Reader {
    public:
        // The rows are about to change: what has been read must not move under the page.
        virtual void before_write() = 0;
        // The read transaction ends: no statement may be left standing on a row, for it would hold the lock.
        virtual void on_release() = 0;
        // Statements must be gone when this returns.
        virtual void on_close() noexcept = 0;

    protected:
        ~Reader() = default;
    };

    // Takes an idle handle of the same connection string, or opens one.
    static std::shared_ptr<Session> open(const std::string& connection_string);
    Session(std::string pool_key, std::unique_ptr<Database> database);
    ~Session();

    bool is_open() const noexcept { return database_ != nullptr; }

    // Ends everything that was begun, and gives the handle back.
    void close() noexcept;

    // Error 3704 when closed.
    Database& database();
    // One statement that fills the whole text, but for blanks; else nullptr.
    std::unique_ptr<Statement> prepare_single(std::string_view sql, Reach reach = Reach::OwnFile);

    void add_reader(Reader& reader) { readers_.push_back(&reader); }

    void remove_reader(Reader& reader) noexcept;

    // Begins the read transaction unless one is open. A reader calls it before it reads.
    void hold_snapshot();
    void release_snapshot();
    // Before a statement that may write: lets the readers of the thread keep their rows, and ends its read
    // transactions.
    void before_write();

    // Number of writes so far, by this session or another one of the thread: tells a reader that rows it has
    // not kept may have changed.
    std::uint64_t writes() const noexcept { return writes_; }

    // Errors as ADO raises them: a transaction is open already, or none is.
    void begin_transaction();
    void commit_transaction();
    void rollback_transaction();
    // Called after the commit of the open transaction, or now when there is none.
    void after_commit(std::function<void()> action);

    bool in_transaction() const noexcept { return in_transaction_; }

private:
    void keep_rows();
    void end_snapshot() noexcept;
    void finish_transaction(void (Database::*finish)());

    std::string pool_key_;
    std::unique_ptr<Database> database_;
    std::vector<Reader*> readers_;
    bool in_snapshot_ = false;
    bool in_transaction_ = false;
    std::uint64_t writes_ = 0;
    std::vector<std::function<void()>> after_commit_;
};

// Ends the read transactions that recordsets of this thread still hold. A host calls it at the end of each
// request, when the page's objects are gone but for those that a session keeps.
void release_snapshots() noexcept;

} // namespace tabrixdb::ado
