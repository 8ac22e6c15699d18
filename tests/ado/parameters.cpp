#include "automation/array.h"
#include "tests/ado/people.h"

namespace tabrixdb::ado {

namespace {

using platform::CursorLocation;
using platform::CursorType;
using platform::LockType;

class ParameterTest : public PeopleTest {
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

TEST_F(ParameterTest, BindsThemWhateverTheCursor) {
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
TEST_F(ParameterTest, KeepsThemApartFromOtherValues) {
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

TEST_F(ParameterTest, WantsAsManyAsItIsGiven) {
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

} // namespace tabrixdb::ado
