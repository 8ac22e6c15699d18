#pragma once

#include "ado/classes.h"
#include "ado/pool.h"
#include "automation/conversions.h"
#include "automation/error.h"

#include <filesystem>
#include <string>
#include <string_view>

#include <gtest/gtest.h>
#include <unistd.h>

namespace tabrixdb::ado {

// A database file of its own, which is gone with the fixture, and a connection to it.
class ShopTest : public testing::Test {
protected:
    void SetUp() override {
        const auto* test = testing::UnitTest::GetInstance()->current_test_info();
        path_ = std::filesystem::temp_directory_path() /
                ("tabrixdb_" + std::to_string(::getpid()) + "_" + test->name() + ".db");
        std::filesystem::remove(path_);
        connection_ = make_ref<Connection>();
        connection_->open(connection_string("Mode=Create"), "", "", -1);
        execute("pragma synchronous = off"); // nothing here has to outlive a loss of power
    }

    void TearDown() override {
        connection_ = nullptr;
        close_idle();
        for (const char* suffix : {"", "-wal", "-shm", "-journal"})
            std::filesystem::remove(path_.string() + suffix);
    }

    std::string connection_string(std::string_view more = "") const {
        return "Provider=SQLite;Data Source=" + path_.string() + ";" + std::string(more);
    }

    Ref<Connection> connect(std::string_view more = "") const {
        auto connection = make_ref<Connection>();
        connection->open(connection_string(more), "", "", -1);
        return connection;
    }

    // A client-side, static recordset that may be written.
    Ref<Recordset> open(std::string_view sql) { return open(sql, *connection_); }

    static Ref<Recordset> open(std::string_view sql, Connection& connection,
                               platform::LockType lock = platform::LockType::Optimistic) {
        auto recordset = make_ref<Recordset>();
        recordset->set_cursor_location(platform::CursorLocation::Client);
        recordset->open(sql, connection, platform::CursorType::Static, lock, -1);
        return recordset;
    }

    Variant execute(std::string_view sql) { return execute(*connection_, sql); }

    static Variant execute(Connection& connection, std::string_view sql) {
        return get(connection, "Execute", {Variant(sql)});
    }

    // The first value of the first row.
    static std::string scalar(Connection& connection, std::string_view sql) {
        auto recordset = open(sql, connection, platform::LockType::ReadOnly);
        return recordset->eof() ? "(none)" : text(recordset->value(0));
    }

    std::string scalar(std::string_view sql) { return scalar(*connection_, sql); }

    static std::string text(const Variant& value) {
        std::string out;
        append_text(out, value);
        return out;
    }

    // All rows from the current one on: "a,b;c,d;".
    static std::string rows(platform::Recordset& recordset) {
        return recordset.get_string(-1, ",", ";", "NULL");
    }

    std::filesystem::path path_;
    Ref<Connection> connection_;
};

// The number of the Error that this raises; 0 when it raises none.
template <class Body>
std::int32_t error_of(const Body& body) {
    try {
        body();
    } catch (const Error& error) {
        return error.number();
    }
    return 0;
}

} // namespace tabrixdb::ado
