#include "automation/array.h"
#include "tests/ado/people.h"

#include <thread>

namespace tabrixdb::ado {

namespace {

constexpr std::int32_t kNoRecord = error_number(Code::NoCurrentRecord);

// More rows than anybody could fetch: what is done with it must not read them all.
constexpr std::string_view kEndless =
    "with recursive n(i) as (select 1 union all select i + 1 from n) select i from n";

} // namespace

TEST_F(PeopleTest, ReadsOnlyTheRowsOfThePage) {
    const auto recordset = open(kEndless);
    recordset->set_page_size(10);
    recordset->set_absolute_page(37);
    EXPECT_EQ(recordset->get_string(10, "", " ", ""), "361 362 363 364 365 366 367 368 369 370 ");
    EXPECT_EQ(recordset->absolute_page(), 38);
    recordset->set_filter("i > 100 and i < 200");
    EXPECT_EQ(text(recordset->value(0)), "101");
    recordset->set_filter("");
    recordset->move(100000);
    EXPECT_EQ(text(recordset->value(0)), "100001");
}

TEST_F(PeopleTest, ReadsAQueryThatCannotBeWrapped) {
    const auto twice = open("select id, id from people");
    twice->set_sort("id desc");
    EXPECT_EQ(twice->get_string(2, ",", ";", ""), "5,5;4,4;");
    const auto pragma = open("pragma table_info(people)");
    EXPECT_EQ(pragma->record_count(), 7);
    const auto returned = open("update people set age = 1 where id < 3 returning id, age");
    EXPECT_EQ(rows(*returned), "1,1;2,1;");
    // A comment at the end, a limit, and an order of the query's own stay what they are.
    EXPECT_EQ(ids(*open("select id from people order by name desc limit 3 -- three")), "4 2 3");
    EXPECT_EQ(ids(*open("select id from people order by name desc limit 4;")), "4 2 3 5");
    const auto ordered = open("select id from people order by id desc");
    EXPECT_EQ(ordered->record_count(), 5);
    EXPECT_EQ(ids(*ordered), "5 4 3 2 1");
}

TEST_F(PeopleTest, StandsAtTheEnds) {
    for (const bool whole : {false, true}) {
        const auto recordset = whole ? held_whole() : pushed_down();
        EXPECT_FALSE(recordset->bof() || recordset->eof());
        EXPECT_EQ(recordset->absolute_position(), 1);
        recordset->move(-1);
        EXPECT_TRUE(recordset->bof() && !recordset->eof());
        EXPECT_EQ(recordset->absolute_position(), -2);
        EXPECT_EQ(error_of([&] { recordset->move(-1); }), kNoRecord);
        EXPECT_EQ(error_of([&] { recordset->value(0); }), kNoRecord);
        recordset->move(6);
        EXPECT_TRUE(recordset->eof());
        EXPECT_EQ(recordset->absolute_page(), -3);
        EXPECT_EQ(error_of([&] { recordset->move_next(); }), kNoRecord);
        recordset->move(-1);
        EXPECT_EQ(text(recordset->value(0)), "5");
        recordset->set_absolute_page(2); // there is only one
        EXPECT_TRUE(recordset->eof());
        EXPECT_EQ(error_of([&] { recordset->set_absolute_page(0); }), error_number(Code::InvalidArgument));

        recordset->set_filter("id = 99");
        EXPECT_TRUE(recordset->bof() && recordset->eof());
        EXPECT_EQ(recordset->page_count(), 0);
        EXPECT_EQ(recordset->absolute_position(), -1);
        for (const char* name : {"MoveFirst", "MoveLast", "MoveNext", "MovePrevious"})
            EXPECT_EQ(error_of([&] { get(*recordset, name); }), kNoRecord) << name;
        EXPECT_EQ(error_of([&] { recordset->set_absolute_page(1); }), kNoRecord);
        EXPECT_EQ(rows(*recordset), "");
    }
}

TEST_F(PeopleTest, GoesOnlyForwardByDefault) {
    const auto recordset = make_ref<Recordset>();
    get(*recordset, "Open", {Variant("people"), Variant(connection_)});
    EXPECT_EQ(text(get(*recordset, "CursorType")), "0");
    EXPECT_EQ(text(get(*recordset, "LockType")), "1");
    EXPECT_EQ(recordset->record_count(), -1);
    EXPECT_EQ(recordset->page_count(), -1);
    EXPECT_EQ(recordset->absolute_position(), -1);
    recordset->move(2);
    EXPECT_EQ(error_of([&] { recordset->move(-1); }), kCannotFetchBackwards);
    EXPECT_EQ(text(recordset->value(0)), "3");
    recordset->move_first();
    EXPECT_EQ(ids(*recordset), "1 2 3 4 5");
    for (const char* name : {"Bookmark", "AbsolutePage", "Sort"})
        EXPECT_EQ(error_of([&] { let(*recordset, name, Variant("1")); }),
                  error_number(Code::FeatureNotAvailable))
            << name;
    EXPECT_EQ(text(get(*pushed_down(), "CursorType")), "3");
}

TEST_F(PeopleTest, AnswersToItsFields) {
    const auto recordset = pushed_down();
    const Variant fields = get(*recordset, "Fields");
    EXPECT_EQ(text(get(*fields.object(), "Count")), "7");
    const Variant name = get(*recordset, "", {Variant("NAME")});
    EXPECT_EQ(text(value_of(name)), "Ann");
    recordset->move_next();
    EXPECT_EQ(text(value_of(name)), "bob"); // live on the current record
    EXPECT_EQ(text(get(*name.object(), "ActualSize")), "6");
    EXPECT_EQ(error_of([&] { get(*recordset, "", {Variant("nobody")}); }), error_number(Code::ItemNotFound));
    EXPECT_EQ(error_of([&] { get(*recordset, "", {Variant(7)}); }), error_number(Code::ItemNotFound));
    std::string names;
    const auto each = fields.object()->enumerate();
    for (Variant field; each->next(field);)
        names += text(get(*field.object(), "Name")) + " ";
    EXPECT_EQ(names, "id name age born active amount home town ");
    recordset->close();
    EXPECT_EQ(error_of([&] { value_of(name); }), error_number(Code::ObjectClosed));
    // A field outlives the recordset object that it came from.
    EXPECT_EQ(text(value_of(get(*execute("select max(id) from people").object(), "", {Variant(0)}))), "5");
}

TEST_F(PeopleTest, GivesManyRowsAtOnce) {
    const auto recordset = open("select id, name, age from people where id < 4");
    EXPECT_EQ(text(get(*recordset, "GetString")), "1\tAnn\t30\r2\tbob\t\r3\tO'Hara\t25\r");
    EXPECT_TRUE(recordset->eof());
    recordset->move_first();
    const Variant array = get(*recordset, "GetRows", {Variant(2)});
    ASSERT_EQ(array.array()->dimensions(), 2u);
    EXPECT_EQ(array.array()->upper_bound(0), 2);
    EXPECT_EQ(array.array()->upper_bound(1), 1);
    const std::int32_t name_of_second[] = {1, 1};
    EXPECT_EQ(text(array.array()->at(name_of_second)), "bob");
    EXPECT_EQ(text(recordset->value(0)), "3");
    recordset->move_next();
    EXPECT_EQ(error_of([&] { get(*recordset, "GetRows"); }), kNoRecord);
}

TEST_F(PeopleTest, ReadsLongValuesInPieces) {
    execute("create table t (b blob, s text); insert into t values (x'0102030405', 'h\xC3\xA9llo')");
    const auto recordset = open("select b, s from t");
    const auto chunk = [&](int field, int size) {
        const Variant piece =
            get(*get(*recordset, "", {Variant(field)}).object(), "GetChunk", {Variant(size)});
        return piece.is_null() ? "Null" : piece.text().str();
    };
    EXPECT_EQ(chunk(0, 2), "\x01\x02");
    EXPECT_EQ(chunk(0, 9), "\x03\x04\x05");
    EXPECT_EQ(chunk(0, 9), "Null");
    EXPECT_EQ(chunk(1, 2), "h\xC3\xA9");
    EXPECT_EQ(chunk(0, 1), "\x01"); // another field was read in between
    EXPECT_EQ(chunk(1, 9), "h\xC3\xA9llo");
}

TEST_F(PeopleTest, KeepsItsPlaceByBookmark) {
    for (const bool whole : {false, true}) {
        const auto recordset = whole ? held_whole() : pushed_down();
        recordset->move(2);
        const Variant third = recordset->bookmark();
        recordset->set_sort("name desc");
        recordset->move(1);
        EXPECT_EQ(text(get(*recordset, "CompareBookmarks", {recordset->bookmark(), third})), "1");
        recordset->move(3);
        recordset->set_bookmark(third);
        EXPECT_EQ(text(recordset->value(0)), "3");
        EXPECT_EQ(recordset->absolute_position(), 2);
        recordset->set_filter("id <> 3");
        EXPECT_EQ(error_of([&] { recordset->set_bookmark(third); }), kBadBookmark);
        for (const char* wrong : {"", "1", "x.y", "1.0", "1.1.i", "99.99.t4", "1.1.t4142.q"})
            EXPECT_EQ(error_of([&] { recordset->set_bookmark(Variant(wrong)); }), kBadBookmark) << wrong;
        // It serves a recordset that a later request opens, also when rows before it have gone since.
        const auto later = whole ? held_whole() : pushed_down();
        later->set_bookmark(third);
        EXPECT_EQ(text(later->value(0)), "3");
        execute("delete from people where id = 1");
        const auto shifted = whole ? held_whole() : pushed_down();
        shifted->set_bookmark(third);
        EXPECT_EQ(text(shifted->value(0)), "3");
        EXPECT_EQ(shifted->absolute_position(), 2);
        execute("insert into people (id, name) values (1, 'Ann')");
    }
}

TEST_F(PeopleTest, CountsAndPagesBelongTogether) {
    const auto recordset = pushed_down();
    EXPECT_EQ(recordset->record_count(), 5);
    std::int32_t failure = 0;
    const auto delete_elsewhere = [&] {
        std::thread([&] {
            failure = error_of([&] { execute(*connect("Timeout=0"), "delete from people"); });
        }).join();
    };
    delete_elsewhere();
    EXPECT_EQ(failure, kFailed); // without a write-ahead log a writer waits for the page
    EXPECT_EQ(ids(*recordset), "1 2 3 4 5");
    recordset->close();
    delete_elsewhere();
    EXPECT_EQ(failure, 0);
}

TEST_F(PeopleTest, SeesEachRowOnceWhileThePageWrites) {
    execute("create table t (id integer primary key, done integer default 0);"
            "with recursive n(i) as (select 1 union all select i + 1 from n where i < 300) "
            "insert into t (id) select i from n");
    for (const bool forward : {false, true}) {
        auto recordset = make_ref<Recordset>();
        if (!forward)
            recordset->set_cursor_location(platform::CursorLocation::Client);
        recordset->open("select id from t where done = 0", *connection_, platform::CursorType::ForwardOnly,
                        platform::LockType::ReadOnly, -1);
        int seen = 0;
        for (; !recordset->eof(); recordset->move_next(), ++seen)
            execute("update t set done = 1 where id = " + text(recordset->value(0)));
        EXPECT_EQ(seen, 300);
        EXPECT_EQ(scalar("select sum(done) from t"), "300");
        execute("update t set done = 0");
    }
}

// A recordset that stays behind, in a session say, keeps nobody from writing.
TEST_F(PeopleTest, HoldsNoLockAfterTheRequest) {
    execute("create table t (id integer primary key);"
            "with recursive n(i) as (select 1 union all select i + 1 from n where i < 3000) "
            "insert into t select i from n");
    const auto recordset = open("select * from t");
    for (int i = 0; i < 20; ++i) // past the first stretch: a statement stands open
        recordset->move_next();
    const Variant forward = execute("select * from t");
    get(*forward.object(), "MoveNext");
    release_snapshots();
    std::int32_t failure = -1;
    std::thread([&] {
        failure = error_of([&] { execute(*connect("Timeout=0"), "delete from t where id > 2900"); });
    }).join();
    EXPECT_EQ(failure, 0);
    EXPECT_EQ(get(*forward.object(), "GetRows").array()->upper_bound(1), 2998);
    EXPECT_EQ(text(recordset->value(0)), "21");
    for (; !recordset->eof(); recordset->move_next()) {
    }
    EXPECT_EQ(recordset->record_count(), 2900);
}

TEST_F(PeopleTest, WritesThroughASecondConnectionWhileItReads) {
    const auto other = connect("Timeout=0");
    const auto recordset = pushed_down();
    const Variant forward = execute("select id from people");
    for (; !recordset->eof(); recordset->move_next()) {
        EXPECT_EQ(text(value_of(get(*forward.object(), "", {Variant(0)}))), text(recordset->value(0)));
        execute(*other, "delete from people where id = " + text(recordset->value(0)));
        get(*forward.object(), "MoveNext");
    }
    EXPECT_EQ(scalar("select count(*) from people"), "0");
}

TEST_F(PeopleTest, LetsAPageBeginTransactionsByItself) {
    const auto recordset = pushed_down();
    EXPECT_EQ(recordset->record_count(), 5);
    EXPECT_EQ(text(value_of(get(*execute("pragma journal_mode = wal").object(), "", {Variant(0)}))), "wal");
    execute("begin");
    execute("delete from people where id = 5");
    EXPECT_EQ(scalar("select count(*) from people"), "4");
    execute("rollback");
    EXPECT_EQ(scalar("select count(*) from people"), "5");
}

TEST_F(PeopleTest, SaysWhenRowsChangedThatItCouldNotKeep) {
    execute("create table t (id integer primary key, filler text);"
            "with recursive n(i) as (select 1 union all select i + 1 from n where i < 3000) "
            "insert into t select i, printf('%5000d', i) from n");
    const auto recordset = open("select * from t");
    EXPECT_EQ(text(recordset->value(0)), "1");
    execute("delete from t where id = 1");
    EXPECT_EQ(error_of([&] {
                  for (; !recordset->eof(); recordset->move_next()) {
                  }
              }),
              kRowChanged);
    recordset->requery();
    EXPECT_EQ(recordset->record_count(), 2999);
}

TEST_F(PeopleTest, RefusesWhatWouldFillTheMemory) {
    const auto hold = [&] {
        open("select 1 as a, zeroblob(90000000) as a union all select i, zeroblob(90000000) from (" +
             std::string(kEndless) + ")");
    };
    EXPECT_EQ(error_of(hold), kFailed);
}

} // namespace tabrixdb::ado
