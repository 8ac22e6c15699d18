#include "ado/connection.h"
#include "ado/recordset.h"

#include <cstdint>
#include <cstdlib>
#include <string_view>

// Filter and sort expressions as a form may post them. The first byte says which: "s" a sort, else a filter.
// Whatever is accepted, the database must take too, and it must choose the rows that a cursor which compares
// by itself chooses.

namespace {

using namespace tabrixdb;
using namespace tabrixdb::ado;

struct Cursors {
    Ref<Connection> connection = make_ref<Connection>();
    Ref<ado::Recordset> pushed_down = make_ref<ado::Recordset>();
    Ref<ado::Recordset> held_whole = make_ref<ado::Recordset>();

    Cursors() {
        connection->open("Provider=SQLite;Data Source=:memory:", "", "", -1);
        get(*connection, "Execute",
            {Variant(
                "create table t (id integer primary key, name varchar(40), born date, seen datetime, "
                "active boolean, price decimal(10,2), rate double, [two words] text);"
                "insert into t values (1, 'Ann', '2000-01-01', '2000-01-01 10:00:00', 1, 2.5, 0.1, 'a*b'),"
                "(2, null, null, null, null, null, null, null),"
                "(3, 'O''Hara', 2451544.5, 946684800, 'no', -1, 1e300, '%')")});
        open(*pushed_down, "select * from t");
        open(*held_whole, "select * from t; select 1");
    }

    void open(ado::Recordset& recordset, std::string_view query) {
        recordset.set_cursor_location(platform::CursorLocation::Client);
        recordset.open(query, *connection, platform::CursorType::Static, platform::LockType::ReadOnly, -1);
    }
};

// The ids of the rows, or the number of the error.
std::string outcome(ado::Recordset& recordset, bool is_sort, std::string_view expression) {
    try {
        if (is_sort)
            recordset.set_sort(expression);
        else
            recordset.set_filter(expression);
    } catch (const Error& error) {
        return std::to_string(error.number());
    }
    std::string ids; // an error from here on is a fault
    for (; !recordset.eof(); recordset.move_next())
        recordset.append_value(0, ids);
    return ids;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static Cursors cursors;
    if (size == 0)
        return 0;
    const std::string_view expression(reinterpret_cast<const char*>(data) + 1, size - 1);
    const bool is_sort = data[0] == 's';
    if (outcome(*cursors.pushed_down, is_sort, expression) !=
        outcome(*cursors.held_whole, is_sort, expression))
        std::abort();
    cursors.pushed_down->set_filter("");
    cursors.held_whole->set_filter("");
    return 0;
}
