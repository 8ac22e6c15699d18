#include "automation/array.h"
#include "tests/ado/people.h"

namespace tabrixdb::ado {

namespace {

using platform::CursorLocation;
using platform::CursorType;
using platform::LockType;

class OwnQueryTest : public PeopleTest {
protected:
    Ref<Recordset> query(std::string_view sql, const std::vector<Variant>& parameters,
                         CursorLocation location = CursorLocation::Client) {
        return query(*connection_, sql, parameters, location);
    }

    static Ref<Recordset> query(Connection& connection, std::string_view sql,
                                const std::vector<Variant>& parameters,
                                CursorLocation location = CursorLocation::Client) {
        auto recordset = make_ref<Recordset>();
        recordset->set_cursor_location(location);
        recordset->open_query(sql, parameters, connection, CursorType::Unspecified, LockType::Optimistic, -1);
        return recordset;
    }
};

} // namespace

TEST_F(OwnQueryTest, BindsThemWhateverTheCursor) {
    execute("create table d (id integer, day date, at datetime, clock time);"
            "insert into d values (1, '2024-05-31', '2024-05-31 18:30:00', '18:30:00')");
    const Variant may = Variant::date(45443), evening = Variant::date(45443.770833333333);

    const struct {
        std::string_view where;
        std::vector<Variant> parameters;
        std::string_view ids;
    } cases[] = {
        {"id from people where name = ?", {Variant("x' or 'a' = 'a")}, ""},
        {"id from people where name = ?", {Variant("O'Hara")}, "3"},
        {"id from people where id = ? or name = ?", {Variant(2), Variant("Ann")}, "1 2"},
        {"id from people where id = ?", {Variant("4")}, "4"}, // as the column compares
        {"id from people where age is ? and name <> '?' -- ?\n", {Variant::null()}, "2"},
        {"id from people where amount = ? /* ? */", {Variant::currency(25000)}, "2"},
        {"id from people where amount = ? and \"home town\" is not \"home?\"", {Variant(100.75)}, "4"},
        {"id from people where active = ?", {Variant(true)}, "1"},
        {"id from people where id < ? order by id <> ?, id", {Variant(4), Variant(3)}, "3 1 2"},
        {"id from people where id < ? order by id <> :first, id", {Variant(4), Variant(2)}, "2 1 3"},
        {"id from d where day = ?", {may}, "1"},
        {"id from d where at = ?", {evening}, "1"},
        {"id from d where clock = ?", {Variant::date(0.770833333333)}, "1"},
        {"? as id", {Variant("1; delete from people")}, "1; delete from people"},
    };

    for (const auto& c : cases) {
        // Held whole, because two columns have one name.
        for (const std::string_view select : {"select ", "select 0 as x, 0 as x, "}) {
            for (const auto location : {CursorLocation::Client, CursorLocation::Server}) {
                const std::string sql = std::string(select) + std::string(c.where);
                SCOPED_TRACE(sql);
                const auto recordset = query(sql, c.parameters, location);
                EXPECT_EQ(recordset->source(), sql);
                std::int32_t rows = 0;
                for (int time = 1; time <= 2; ++time) {
                    // Counted before it is read.
                    if (time == 2 && location == CursorLocation::Client) {
                        EXPECT_EQ(recordset->record_count(), rows);
                    }
                    std::string ids;
                    rows = 0;
                    for (; !recordset->eof(); recordset->move_next()) {
                        ids += rows++ ? " " : "";
                        recordset->append_value(recordset->column("id"), ids);
                    }
                    EXPECT_EQ(ids, c.ids);
                    recordset->requery();
                }
            }
        }
    }
    EXPECT_EQ(scalar("select count(*) from people"), "5");
}

// The query's values come before those of filter, window and key.
TEST_F(OwnQueryTest, KeepsThemApartFromOtherValues) {
    const auto recordset = query("select id, name, age from people where id <> ? order by id = ? desc, id",
                                 {Variant(1), Variant(4)});
    EXPECT_EQ(ids(*recordset), "4 2 3 5");
    recordset->set_filter("age >= 25 and name <> 'nobody'");
    EXPECT_EQ(ids(*recordset), "4 3 5");
    recordset->set_sort("age desc");
    EXPECT_EQ(recordset->record_count(), 3);
    EXPECT_EQ(ids(*recordset), "4 5 3");
    recordset->move_first();
    recordset->move(2);
    const Variant third = recordset->bookmark();
    recordset->set_filter("");
    recordset->set_bookmark(third); // found by its key
    EXPECT_EQ(text(recordset->value(0)), "3");
    EXPECT_EQ(recordset->absolute_position(), 3);

    const Variant copy = get(*recordset, "Clone");
    auto& cloned = dynamic_cast<Recordset&>(*copy.object());
    EXPECT_EQ(ids(cloned), "4 2 3 5");
    cloned.set_filter("age = 30");
    EXPECT_EQ(ids(cloned), "5");

    // A record of it can be changed.
    recordset->set_value(1, Variant("changed"));
    recordset->update();
    EXPECT_EQ(scalar("select group_concat(id) from people where name = 'changed'"), "3");

    // A place among other rows is none here, where there is no key to go by.
    const std::string_view keyless = "select name from people where id >= ?";
    const Variant second = [&] {
        const auto all = query(keyless, {Variant(1)});
        all->move(1);
        return all->bookmark();
    }();
    query(keyless, {Variant(1)})->set_bookmark(second);
    EXPECT_EQ(error_of([&] { query(keyless, {Variant(3)})->set_bookmark(second); }), kBadBookmark);
}

TEST_F(OwnQueryTest, WantsAsManyAsItIsGiven) {
    const struct {
        std::string_view sql;
        std::vector<Variant> parameters;
        std::int32_t error;
    } cases[] = {
        {"select ?", {}, kErrorsInCommand},
        {"select ? -- a comment", {Variant(1), Variant(2)}, kErrorsInCommand},
        {"delete from people where id in (?, ?)", {Variant(1)}, kErrorsInCommand},
        {"delete from people where id = ?;", {Variant(1), Variant(2)}, kErrorsInCommand},
        {"select '?'", {Variant(1)}, kErrorsInCommand},
        {"select ?1, ?1", {Variant(1)}, 0},
        {"select ?", {Variant(make_ref<Array>(std::vector<Variant>()))}, kErrorMismatch},
        {"select ?", {Variant::nothing()}, kErrorNothing},
    };

    for (const auto& c : cases)
        EXPECT_EQ(error_of([&] { query(c.sql, c.parameters); }), c.error) << c.sql;
    EXPECT_EQ(scalar("select count(*) from people"), "5");
    // What a page opens by itself has none to give.
    EXPECT_EQ(scalar("select ? is null"), "1");
    // A page may open it again by its text.
    const auto recordset = query("select id from people where id = ?", {Variant(1)});
    recordset->close();
    get(*recordset, "Open");
    EXPECT_TRUE(recordset->eof());
}

TEST_F(OwnQueryTest, IsOneStatement) {
    const std::string beside = path_.string() + "-journal"; // goes with the fixture
    const auto row_text = [](Recordset& recordset) {
        return recordset.state() == platform::kStateOpen ? rows(recordset) : std::string("none");
    };

    const struct {
        std::string sql;
        std::string_view rows; // "": it is refused
    } cases[] = {
        {"select 1 ; ; -- the end; \n", "1;"},
        {"pragma foreign_keys = off; select id from people where id < 3", "1;2;"},
        {"pragma busy_timeout = 5; /* ; */ PRAGMA cache_size(100); select 2;", "2;"},
        {"select * from pragma_table_info('people') where pk", "0,id,INTEGER,0,NULL,1;"},
        {"pragma busy_timeout = 5000", "5000;"},
        {"with a as (select ';' as x) select x from a", ";;"},
        {"update people set age = age", "none"},
        {"select 1; select 2", ""},
        {"select 1; delete from people", ""},
        {"delete from people; select 1", ""},
        {"pragma foreign_keys = off; delete from people; select 1", ""},
        {"select 1; pragma foreign_keys = off", ""},
        {"pragma table_info(people); select 1", ""},
        {"explain pragma foreign_keys = off; select 1", ""},
        {"attach '" + beside + "' as other", ""},
        {"attach '' as other", ""},
        {"detach main", ""},
        {"vacuum into '" + beside + "'", ""},
        {"vacuum into '" + beside.substr(0, 5) + "' || '" + beside.substr(5) + "'", ""},
        {"pragma temp_store_directory = '/'; select 1", ""},
        {"PRAGMA Temp_Store_Directory('/')", ""},
    };

    for (const auto& c : cases) {
        SCOPED_TRACE(c.sql);
        const auto connection = connect();
        try {
            EXPECT_EQ(row_text(*query(*connection, c.sql, {})), c.rows);
        } catch (const Error& error) {
            EXPECT_EQ(c.rows, "") << error.description();
            EXPECT_NE(error.description().find("\"Statements=Many\""), std::string::npos)
                << error.description();
        }
        EXPECT_FALSE(std::filesystem::exists(beside));
        EXPECT_EQ(scalar(*connect(), "pragma foreign_keys"), "1"); // a changed handle is given to nobody
    }
    EXPECT_EQ(scalar("select count(*) from people"), "5");
}

TEST_F(OwnQueryTest, IsWhatThePageLikesWhereSettingsSaySo) {
    const std::string beside = path_.string() + "-journal";
    EXPECT_EQ(error_of([&] { connect("Statements=Some"); }), kFailed);
    const auto many = connect("Statements=Many");
    EXPECT_EQ(rows(*query(*many, "select id from people where id > ?; update people set age = ? where id = ?",
                          {Variant(3), Variant(99), Variant(1)})),
              "4;5;");
    EXPECT_EQ(scalar("select age from people where id = 1"), "99");
    EXPECT_EQ(error_of([&] { query(*many, "select ?; select ?", {Variant(1)}); }), kErrorsInCommand);
    query(*many, "vacuum into '" + beside + "'", {});
    query(*many, "attach '" + beside + "' as other", {});
    EXPECT_EQ(rows(*query(*many, "select count(*) from other.people", {})), "5;");
    std::filesystem::remove(beside);
}

// What the page itself has prepared is kept for the page's own statements only.
TEST_F(OwnQueryTest, RunsNothingThatWasPreparedForThePage) {
    const std::string beside = path_.string() + "-journal";
    const std::string backup = "vacuum into '" + beside + "'";
    execute(backup);
    EXPECT_TRUE(std::filesystem::remove(beside));
    EXPECT_EQ(error_of([&] { query(backup, {}); }), kPermissionDenied);
    EXPECT_FALSE(std::filesystem::exists(beside));
    EXPECT_EQ(connection_->errors().at(0).number, kPermissionDenied);
    execute(backup); // nor the other way round
    EXPECT_TRUE(std::filesystem::remove(beside));
    // Nor does a setting that was kept go unmade.
    for (const char* value : {"500", "600", "500"}) {
        execute("pragma busy_timeout = " + std::string(value));
        EXPECT_EQ(scalar("pragma busy_timeout"), value);
    }
}

// Names that would be more than names, in every place where they become SQL.
TEST_F(OwnQueryTest, TakesNamesForNames) {
    const std::string table = "t\"; drop table people; --", column = "c\" = 1 or 1 -- '?";
    const auto quoted = [](std::string_view name) { return "\"" + replace_all(name, "\"", "\"\"") + "\""; };
    execute("create table " + quoted(table) + " (" + quoted(column) + " text collate nocase primary key, " +
            "n integer); insert into " + quoted(table) + " values ('a', 1), ('b', 2), ('c', 2)");
    auto recordset = make_ref<Recordset>();
    recordset->set_cursor_location(CursorLocation::Client);
    const auto open_table = [&](std::string_view name, std::int32_t options) {
        recordset->open(name, *connection_, CursorType::Static, LockType::Optimistic, options);
    };
    open_table(table, 2);
    EXPECT_EQ(recordset->columns()[0].name, column);
    recordset->set_filter("n = 2");
    recordset->set_sort("n, c\" = 1 or 1 -- '? desc");
    EXPECT_EQ(rows(*recordset), "c,2;b,2;");
    recordset->move_first();
    const Variant mark = recordset->bookmark();
    recordset->set_filter("");
    recordset->set_bookmark(mark);
    EXPECT_EQ(text(recordset->value(0)), "c");
    recordset->set_value(0, Variant("changed"));
    recordset->update();
    recordset->remove();
    recordset->add_new();
    recordset->set_value(0, Variant("new"));
    recordset->update();
    recordset->close();
    EXPECT_EQ(scalar("select group_concat(n || " + quoted(column) + ") from (select * from " + quoted(table) +
                     " order by 1)"),
              "1a,2b");
    EXPECT_EQ(scalar("select count(*) from " + quoted(table)), "3");

    const struct {
        std::string_view name; // where a table's is wanted
        std::int32_t error;
    } cases[] = {
        {"people", 0},
        {"[people]", 0},
        {"\"main\" . [people] ", 0},
        {"[people] where 0", kNoTable},
        {"[people], people as other", kNoTable},
        {"\"people\" union select 1", kNoTable},
        {"\"people\" \"alias\"", kNoTable},
        {"\"people", kNoTable},
        {"[people].", kNoTable},
        {"\"a\"\"b\"", kNoTable},
    };

    for (const auto& c : cases) {
        EXPECT_EQ(error_of([&] { open_table(c.name, 2); }), c.error) << c.name;
        if (c.error == 0)
            recordset->close();
    }
    EXPECT_EQ(error_of([&] { execute(std::string_view("select 1\0; drop table people", 29)); }),
              kErrorsInCommand);
    EXPECT_EQ(scalar("select count(*) from people"), "5");
}

} // namespace tabrixdb::ado
