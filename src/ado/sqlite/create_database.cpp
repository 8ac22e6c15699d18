#include "ado/sqlite/create_database.h"

#include <algorithm>
#include <cerrno>
#include <memory>
#include <stdexcept>
#include <system_error>

#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

namespace tabrixdb::ado::sqlite {

namespace {

struct Close {
    void operator()(sqlite3* handle) const noexcept { sqlite3_close_v2(handle); }
};

struct Finalize {
    void operator()(sqlite3_stmt* statement) const noexcept { sqlite3_finalize(statement); }
};

using Handle = std::unique_ptr<sqlite3, Close>;

// The unfinished file, which goes unless it was given its name.
class Unfinished {
public:
    explicit Unfinished(const std::string& file) : path_(file + ".new-" + std::to_string(getpid())) {
        unlink(path_.c_str()); // of a process that had our number and died
    }

    ~Unfinished() { unlink(path_.c_str()); }

    Unfinished(const Unfinished&) = delete;
    Unfinished& operator=(const Unfinished&) = delete;

    const std::string& path() const { return path_; }

    // Gives it its name, unless that is taken: another process was faster.
    void publish(const std::string& file) const {
        const int handle = open(path_.c_str(), O_RDONLY | O_CLOEXEC);
        const bool written = handle >= 0 && fsync(handle) == 0;
        if (handle >= 0)
            close(handle);
        if (!written || (link(path_.c_str(), file.c_str()) != 0 && errno != EEXIST))
            throw std::system_error(errno, std::generic_category(), file);
    }

private:
    std::string path_;
};

void run(sqlite3* database, std::string_view script) {
    const char* at = script.data();
    const char* const end = at + script.size();
    while (at < end) {
        sqlite3_stmt* raw = nullptr;
        const char* rest = end;
        const int prepared = sqlite3_prepare_v2(database, at, static_cast<int>(end - at), &raw, &rest);
        const std::unique_ptr<sqlite3_stmt, Finalize> statement(raw);
        int code = prepared;
        while (statement && (code = sqlite3_step(statement.get())) == SQLITE_ROW) {
        }
        if (prepared != SQLITE_OK || (statement && code != SQLITE_DONE)) {
            const char* first =
                std::find_if(at, end, [](char c) { return c != ' ' && c != '\n' && c != '\r'; });
            throw std::runtime_error("line " + std::to_string(1 + std::count(script.data(), first, '\n')) +
                                     ": " + sqlite3_errmsg(database));
        }
        at = rest;
    }
}

} // namespace

void create_database(const std::string& file, std::string_view script) {
    if (access(file.c_str(), F_OK) == 0)
        return;
    const Unfinished unfinished(file);
    {
        sqlite3* raw = nullptr;
        const int opened = sqlite3_open_v2(unfinished.path().c_str(), &raw,
                                           SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
        const Handle database(raw);
        if (opened != SQLITE_OK)
            throw std::runtime_error(sqlite3_errmsg(database.get()));
        // Nobody sees the file before it is complete and on the disk, so that each step need not be.
        run(database.get(), "pragma synchronous = off; pragma journal_mode = memory;");
        run(database.get(), script);
        if (!sqlite3_get_autocommit(database.get())) // begun by the script and left open
            run(database.get(), "commit");
    }
    unfinished.publish(file);
}

} // namespace tabrixdb::ado::sqlite
