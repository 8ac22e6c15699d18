#pragma once

#include "tests/ado/shop.h"

namespace tabrixdb::ado {

// A small table with a column of each kind, and the two ways in which its rows can come.
class PeopleTest : public ShopTest {
protected:
    static constexpr std::string_view kQuery =
        "select id, name, age, born, active, amount, \"home town\" from people";

    void SetUp() override {
        ShopTest::SetUp();
        execute("create table people (id integer primary key, name varchar(40) not null, age smallint, "
                "born date, active boolean, amount decimal(10,2), \"home town\" varchar(40) collate nocase);"
                "insert into people values"
                "(1, 'Ann', 30, '1994-02-28', 1, 10, 'Bern'),"
                "(2, 'bob', null, '2000-01-01 00:00:00', 0, 2.5, 'Basel'),"
                "(3, 'O''Hara', 25, null, 'true', -1, null),"
                "(4, '\xC3\x89mile', 41, '1980-12-31', 'no', 100.75, 'bern'),"
                "(5, 'Bo*b', 30, 2451544.5, null, null, 'Chur');");
    }

    // The query as the database pages it, and in a form that has to be held whole.
    Ref<Recordset> pushed_down() { return open(kQuery); }

    Ref<Recordset> held_whole() { return open(std::string(kQuery) + "; select 1"); }

    // The ids of all rows in order: "1 2 3".
    static std::string ids(platform::Recordset& recordset) {
        std::string out;
        for (; !recordset.eof(); recordset.move_next()) {
            if (!out.empty())
                out += ' ';
            recordset.append_value(0, out);
        }
        return out;
    }
};

} // namespace tabrixdb::ado
