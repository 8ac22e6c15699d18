#include "automation/interrupt.h"
#include "tests/ado/people.h"

#include <atomic>
#include <fstream>
#include <thread>

namespace tabrixdb::ado {

namespace {

std::string error_text(const std::function<void()>& body) {
    try {
        body();
    } catch (const Error& error) {
        return error.description();
    }
    return {};
}

std::int32_t open_error(const std::string& connection_string) {
    return error_of([&] { make_ref<Connection>()->open(connection_string, "", "", -1); });
}

} // namespace

TEST_F(PeopleTest, OpensWhatTheConnectionStringNames) {
    EXPECT_EQ(open_error("Provider=Nobody;Data Source=x"), error_number(Code::ProviderNotFound));
    EXPECT_EQ(open_error("Data Source=x"), error_number(Code::ProviderNotFound));
    EXPECT_EQ(open_error("Provider=SQLite"), kFailed);
    EXPECT_EQ(open_error("Provider"), error_number(Code::InvalidArgument));
    EXPECT_EQ(open_error("Provider='SQLite"), error_number(Code::InvalidArgument));
    EXPECT_EQ(open_error("provider = \"sqlite\" ; DATA SOURCE = {" + path_.string() + "}; ;"), 0);

    const std::string missing = path_.string() + ".missing";
    EXPECT_EQ(open_error("Provider=SQLite;Data Source=" + missing), kFailed);
    EXPECT_FALSE(std::filesystem::exists(missing)); // no empty database was made of the wrong name
    EXPECT_EQ(open_error("Provider=SQLite;Data Source=" + path_.parent_path().string()), kFailed);

    const std::string no_database = path_.string() + "-journal"; // goes with the fixture
    std::ofstream(no_database) << std::string(4096, 'x');
    const auto open_it = [&] {
        make_ref<Connection>()->open("Provider=SQLite;Data Source=" + no_database, "", "", -1);
    };
    EXPECT_NE(error_text(open_it).find("is not a SQLite database"), std::string::npos);
    std::filesystem::remove(no_database);

    const auto read_only = connect("Mode=Read");
    EXPECT_EQ(error_of([&] { execute(*read_only, "delete from people"); }), kPermissionDenied);
}

TEST_F(PeopleTest, ReportsTheDatabasesErrors) {
    const struct {
        std::string_view sql;
        std::int32_t number;
        std::string_view text;
    } cases[] = {
        {"select * from nowhere", kNoTable, "nowhere"},
        {"selct 1", kErrorsInCommand, "selct"},
        {"select nothing from people", kErrorsInCommand, "nothing"},
        {"insert into people (id, name) values (1, 'x')", kIntegrityViolation, "people.id"},
        {"insert into people (id) values (9)", kIntegrityViolation, "people.name"},
    };

    for (const auto& c : cases) {
        EXPECT_EQ(error_of([&] { execute(c.sql); }), c.number) << c.sql;
        const auto errors = connection_->errors();
        ASSERT_EQ(errors.size(), 1u);
        EXPECT_EQ(errors[0].number, c.number);
        EXPECT_NE(errors[0].description.find(c.text), std::string::npos) << errors[0].description;
    }
    execute("select 1");
    EXPECT_TRUE(connection_->errors().empty());
    EXPECT_EQ(error_of([&] { open(""); }), static_cast<std::int32_t>(0x80040E0C));
}

TEST_F(PeopleTest, ChecksForeignKeysUnlessToldNot) {
    execute("create table pets (owner integer references people (id))");
    EXPECT_EQ(error_of([&] { execute("insert into pets values (99)"); }), kIntegrityViolation);
    execute(*connect("Foreign Keys=Off"), "insert into pets values (99)");
    EXPECT_EQ(scalar("select count(*) from pets"), "1");
}

TEST_F(PeopleTest, WaitsForALockAndThenGivesUp) {
    get(*connection_, "BeginTrans");
    execute("update people set age = 1");
    const auto impatient = connect("Timeout=0.05");
    EXPECT_EQ(error_of([&] { execute(*impatient, "update people set age = 2"); }), kFailed);
    EXPECT_NE(impatient->errors().at(0).description.find("locked"), std::string::npos);
    // A patient one gets through when the first has finished.
    std::atomic<bool> begun = false;
    std::int32_t failure = -1;
    std::thread second([&] {
        const auto patient = connect("Timeout=60");
        begun = true;
        failure = error_of([&] { execute(*patient, "update people set age = 3"); });
    });
    while (!begun)
        std::this_thread::yield();
    get(*connection_, "CommitTrans");
    second.join();
    EXPECT_EQ(failure, 0);
    EXPECT_EQ(scalar("select max(age) from people"), "3");
}

TEST_F(PeopleTest, RunsTransactions) {
    get(*connection_, "BeginTrans");
    EXPECT_EQ(error_of([&] { get(*connection_, "BeginTrans"); }), kTransactionExists);
    execute("delete from people");
    EXPECT_EQ(scalar("select count(*) from people"), "0");
    EXPECT_EQ(scalar(*connect(), "select count(*) from people"), "5");
    get(*connection_, "RollbackTrans");
    EXPECT_EQ(scalar("select count(*) from people"), "5");
    EXPECT_EQ(error_of([&] { get(*connection_, "CommitTrans"); }), kNoTransaction);
    // What is begun and not committed is undone when the connection goes.
    get(*connection_, "BeginTrans");
    execute("delete from people");
    connection_->close();
    EXPECT_EQ(scalar(*connect(), "select count(*) from people"), "5");
}

TEST_F(PeopleTest, ClosesWhatBelongsToIt) {
    const auto recordset = pushed_down();
    const auto forward = execute("select * from people");
    connection_->close();
    EXPECT_EQ(recordset->state(), platform::kStateClosed);
    EXPECT_EQ(error_of([&] { recordset->move_next(); }), error_number(Code::ObjectClosed));
    EXPECT_EQ(error_of([&] { get(*forward.object(), "EOF"); }), error_number(Code::ObjectClosed));
    EXPECT_EQ(error_of([&] { connection_->close(); }), error_number(Code::ObjectClosed));
    EXPECT_EQ(error_of([&] { open("select 1"); }), error_number(Code::InvalidConnection));
    EXPECT_EQ(error_of([&] { execute("select 1"); }), error_number(Code::ObjectClosed));
}

TEST_F(PeopleTest, SaysHowManyRowsWereAffected) {
    Variant sql("update people set age = 1 where id > 2"), affected;
    Variant* const arguments[] = {&sql, &affected};
    const Variant closed = invoke(*connection_, "Execute", Access::Get, arguments);
    EXPECT_EQ(text(affected), "3");
    EXPECT_EQ(text(get(*closed.object(), "State")), "0");
}

TEST_F(PeopleTest, GivesNoHandleOnThatAPageHasChanged) {
    const auto leave = [&](std::string_view sql) {
        const auto connection = connect();
        execute(*connection, sql);
        connection->close();
    };
    leave("create temp table mine (a)");
    EXPECT_EQ(error_of([&] { execute(*connect(), "select * from mine"); }), kNoTable);
    leave("pragma foreign_keys = off");
    EXPECT_EQ(scalar(*connect(), "pragma foreign_keys"), "1");
    // A handle on a file that was replaced meanwhile reads nothing of the new one.
    connect()->close();
    connection_->close();
    std::filesystem::rename(path_, path_.string() + "-wal");
    const auto created = connect("Mode=Create");
    created->close();
    EXPECT_EQ(error_of([&] { execute(*connect(), "select * from people"); }), kNoTable);
}

TEST_F(PeopleTest, SeesColumnsThatAnotherConnectionAdded) {
    const auto other = connect();
    EXPECT_EQ(open("select * from people", *other)->columns().size(), 7u);
    other->close();
    execute("alter table people add column more integer");
    EXPECT_EQ(open("select * from people", *connect())->columns().size(), 8u);
}

TEST_F(PeopleTest, StopsAQueryWithThePage) {
    Interrupt interrupt;
    const Interrupt::Scope scope(interrupt);
    interrupt.stop(Interrupt::Reason::TimedOut);
    const auto endless = [&] {
        execute("with recursive n(i) as (select 1 union all select i + 1 from n) select count(*) from n")
            .object()
            ->find("");
        open("with recursive n(i) as (select 1 union all select i + 1 from n) select count(*) as c from n")
            ->eof();
    };
    EXPECT_EQ(error_of(endless), kTimedOut);
}

} // namespace tabrixdb::ado
