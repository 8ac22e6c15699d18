#include "tests/ado/people.h"

namespace tabrixdb::ado {

namespace {

constexpr std::int32_t kNotAvailable = error_number(Code::FeatureNotAvailable);

} // namespace

TEST_F(PeopleTest, AddsARecord) {
    for (const bool whole : {false, true}) {
        const auto recordset = whole ? held_whole() : pushed_down();
        recordset->add_new();
        EXPECT_EQ(text(get(*recordset, "EditMode")), "2");
        recordset->set_value(1, Variant("Zo\xC3\xAB"));
        recordset->set_value(2, Variant("17"));
        recordset->set_value(3, Variant("2007-01-02"));
        recordset->set_value(4, Variant("True"));
        recordset->set_value(5, Variant("1234.5"));
        recordset->update();
        // It stays current, with what the database has added to it.
        const std::string id = text(recordset->value(0));
        EXPECT_EQ(rows(*open("select * from people where id = " + id)),
                  id + ",Zo\xC3\xAB,17,1/2/2007,True,1234.5,NULL;");
        EXPECT_EQ(scalar("select born || ' ' || active from people where id = " + id), "2007-01-02 1");
        EXPECT_EQ(text(recordset->value(1)), "Zo\xC3\xAB");
        recordset->requery();
        EXPECT_EQ(recordset->record_count(), whole ? 7 : 6);
    }
}

TEST_F(PeopleTest, ChangesARecord) {
    for (const bool whole : {false, true}) {
        const auto recordset = whole ? held_whole() : pushed_down();
        recordset->move(1);
        let(*get(*recordset, "", {Variant("name")}).object(), "Value", Variant("Robert"));
        recordset->set_value(2, Variant(52));
        EXPECT_EQ(text(get(*get(*recordset, "", {Variant("name")}).object(), "OriginalValue")),
                  whole ? "Robert" : "bob");
        EXPECT_EQ(text(recordset->value(1)), "Robert");
        recordset->move_next(); // writes what is pending
        EXPECT_EQ(text(recordset->value(0)), "3");
        recordset->move(-1);
        EXPECT_EQ(text(recordset->value(1)), "Robert");
        EXPECT_EQ(scalar("select name || age from people where id = 2"), "Robert52");
        recordset->set_value(1, Variant("Nobody"));
        get(*recordset, "CancelUpdate");
        EXPECT_EQ(text(recordset->value(1)), "Robert");
        // "" in a column that is not of text is Null, as a form's empty box is meant.
        recordset->set_value(2, Variant(""));
        recordset->update();
        EXPECT_TRUE(recordset->value(2).is_null());
    }
}

TEST_F(PeopleTest, DeletesARecord) {
    for (const bool whole : {false, true}) {
        const auto recordset = whole ? held_whole() : pushed_down();
        recordset->move(1);
        const std::string deleted = text(recordset->value(0));
        recordset->remove();
        EXPECT_EQ(error_of([&] { recordset->value(0); }), kDeletedRow);
        EXPECT_FALSE(recordset->eof());
        recordset->move_next();
        EXPECT_EQ(recordset->absolute_position(), 2);
        EXPECT_EQ(text(recordset->value(0)), whole ? "4" : "3");
        EXPECT_EQ(recordset->record_count(), whole ? 3 : 4);
        EXPECT_EQ(scalar("select count(*) from people where id = " + deleted), "0");
    }
    const auto recordset = pushed_down();
    while (!recordset->eof()) {
        recordset->remove();
        recordset->move_next();
    }
    EXPECT_TRUE(recordset->bof());
    EXPECT_EQ(scalar("select count(*) from people"), "0");
}

TEST_F(PeopleTest, ChangesNothingThatSomebodyElseHasChanged) {
    const auto recordset = pushed_down();
    EXPECT_EQ(text(recordset->value(2)), "30");
    execute(*connect(), "update people set age = 31 where id = 1");
    recordset->set_value(2, Variant(40));
    EXPECT_EQ(error_of([&] { recordset->update(); }), kRowChanged);
    get(*recordset, "CancelUpdate");
    recordset->set_value(1, Variant("Anna")); // another column is free
    recordset->update();
    EXPECT_EQ(scalar("select name || age from people where id = 1"), "Anna31");
    // Each kind of value is found again as it was read.
    recordset->move(3);
    for (std::size_t i = 1; i < 7; ++i)
        recordset->set_value(i, recordset->value(i));
    EXPECT_EQ(error_of([&] { recordset->update(); }), 0);
    execute(*connect(), "delete from people where id = 4");
    EXPECT_EQ(error_of([&] { recordset->remove(); }), kRowChanged);
}

TEST_F(PeopleTest, RefusesToWriteWhatHasNoPlace) {
    const auto read_only = open(kQuery, *connection_, platform::LockType::ReadOnly);
    EXPECT_EQ(error_of([&] { read_only->add_new(); }), kNotAvailable);
    EXPECT_EQ(error_of([&] { read_only->set_value(1, Variant("x")); }), kNotAvailable);
    EXPECT_EQ(error_of([&] { read_only->remove(); }), kNotAvailable);

    const auto change = [&](std::string_view sql) {
        const auto recordset = open(sql);
        recordset->set_value(0, Variant("x"));
        recordset->update();
    };
    EXPECT_EQ(error_of([&] { change("select upper(name) from people"); }), kNotAvailable);
    EXPECT_EQ(error_of([&] { change("select name from people"); }), kNotAvailable); // without its key
    EXPECT_EQ(error_of([&] { change("select a.name, a.id, b.id as other from people a, people b"); }),
              kNotAvailable);
    EXPECT_EQ(error_of([&] { open("select * from people a join people b on b.id = a.id + 1")->remove(); }),
              kNotAvailable);
    EXPECT_EQ(scalar("select name from people where id = 1"), "Ann");

    const auto recordset = pushed_down();
    for (const std::string_view refused : {"old", "40000"}) // age is a smallint
        EXPECT_EQ(error_of([&] { recordset->set_value(2, Variant(refused)); }),
                  error_number(Code::DataConversion));
    recordset->add_new();
    EXPECT_EQ(error_of([&] { recordset->update(); }), kIntegrityViolation); // name may not be null
    EXPECT_EQ(error_of([&] { recordset->close(); }), error_number(Code::IllegalOperation));
    get(*recordset, "CancelUpdate");
    recordset->close();
}

TEST_F(PeopleTest, WritesLongValuesInPieces) {
    execute("create table t (id integer primary key, b blob, s text); insert into t (id) values (1)");
    const auto recordset = open("select id, b, s from t");
    const auto append = [&](int field, const Variant& piece) {
        get(*get(*recordset, "", {Variant(field)}).object(), "AppendChunk", {piece});
    };
    append(1, Variant::byte_array(std::string_view("\0\1", 2)));
    append(1, Variant::byte_array("\2"));
    append(2, Variant("a"));
    append(2, Variant("b"));
    recordset->update();
    EXPECT_EQ(scalar("select hex(b) || s from t"), "000102ab");
    append(1, Variant::byte_array("\3")); // a new edit replaces
    recordset->update();
    EXPECT_EQ(scalar("select hex(b) from t"), "03");
}

} // namespace tabrixdb::ado
