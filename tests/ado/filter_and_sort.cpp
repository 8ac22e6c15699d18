#include "tests/ado/people.h"

#include <algorithm>

namespace tabrixdb::ado {

namespace {

constexpr std::int32_t kInvalid = error_number(Code::InvalidArgument);

struct Case {
    std::string_view text;
    std::string_view ids; // of the rows that are shown, in order
};

constexpr Case kFilters[] = {
    {"", "1 2 3 4 5"},
    {"  ", "1 2 3 4 5"},
    {"id = 2", "2"},
    {"[id]=2", "2"},
    {"ID <> 2", "1 3 4 5"},
    {"age > 29.5", "1 4 5"},
    {"age >= 30 AND id < 5", "1 4"},
    {"age = '30'", "1 5"}, // a number may stand in quotes
    {"amount > 2.5", "1 4"},
    {"amount <= 2.5", "2 3"}, // Null is never equal, less or more
    {"amount = -1", "3"},
    {"name = 'ANN'", "1"},
    {"name = '\xC3\xA9MILE'", "4"}, // letters beyond ASCII, too
    {"name = 'O''Hara'", "3"},
    {"name > 'bob'", "3 4"},
    {"name LIKE 'b*'", "2 5"},
    {"name like 'B%'", "2 5"},
    {"name LIKE '*A*'", "1 3"},
    {"name LIKE 'bob'", "2"}, // the sign in "Bo*b" is no wildcard of its own
    {"name LIKE '*'", "1 2 3 4 5"},
    {"[home town] = 'BERN'", "1 4"},
    {"[home town] LIKE 'B*' AND id > 1", "2 4"},
    {"[home town] <> 'Bern'", "2 5"},
    {"born = #2000-01-01#", "2 5"}, // text with a time, and a Julian day number
    {"born > #12/31/1990# AND born < #1/1/2000#", "1"},
    {"born < #1/1/1990#", "4"},
    {"active = 'True'", "1 3"},
    {"active = 0", "2 4"},
    {"active LIKE 'true'", "1 3"}, // what a form's default operator sends
    {"id = 1 OR id = 3", "1 3"},
    {"id = 1 or id = 3 and age > 26", "1"},
    {"(id = 1) AND (age = 30)", "1"},
    {"(id = 1 AND age = 30) OR (id = 5 AND age = 30)", "1 5"},
    {"((id = 4))", "4"},
    {"[name] = 'Ann'  And [age] > 20 ", "1"}, // as the filter form writes it
    {"id > 100", ""},
};

constexpr std::string_view kBadFilters[] = {
    "id",
    "id =",
    "= 2",
    "id == 2",
    "id = 2 AND",
    "AND id = 2",
    "id = 2 id = 3",
    "id = 2)",
    "(id = 2",
    "()",
    "(id = 1 OR id = 2) AND age = 30", // groups of alternatives cannot be joined by AND
    "age = 30 AND (id = 1 OR id = 5)",
    "name = 'Ann",
    "name = 'O'Hara'",
    "[name = 'Ann'",
    "id = NULL",
    "id = abc",
    "id LIKE '1*'",
    "name LIKE '*b'",
    "name LIKE 'b*b*'",
    "born = #yesterday#",
    "active = 'maybe'",
    "nobody = 1",
    "id = 1; drop table people",
    "id in (1, 2)",
};

constexpr Case kSorts[] = {
    {"", "1 2 3 4 5"},
    {"id DESC", "5 4 3 2 1"},
    {"name", "1 5 2 3 4"}, // case does not count
    {"[name] asc", "1 5 2 3 4"},
    {" name  desc ", "4 3 2 5 1"},
    {"age, id DESC", "2 3 5 1 4"}, // Null first
    {"age DESC", "4 5 1 3 2"},     // equal ones by their key, downwards as well
    {"amount", "5 3 2 1 4"},       // by number, not by text
    {"[home town] DESC,\tid desc", "5 4 1 2 3"},
};

} // namespace

TEST_F(PeopleTest, FiltersRows) {
    for (const bool whole : {false, true}) {
        const auto recordset = whole ? held_whole() : pushed_down();
        for (const Case& filter : kFilters) {
            SCOPED_TRACE(filter.text);
            recordset->set_filter(filter.text);
            const std::int32_t count = recordset->record_count();
            const std::string shown = ids(*recordset);
            EXPECT_EQ(shown, filter.ids) << (whole ? "held whole" : "pushed down");
            EXPECT_EQ(count, shown.empty() ? 0 : std::ranges::count(shown, ' ') + 1);
        }
    }
}

TEST_F(PeopleTest, FiltersAForwardOnlyCursor) {
    const auto recordset = make_ref<Recordset>();
    recordset->open(kQuery, *connection_, platform::CursorType::ForwardOnly, platform::LockType::ReadOnly,
                    -1);
    for (const Case& filter : kFilters) {
        recordset->set_filter(filter.text);
        EXPECT_EQ(ids(*recordset), filter.ids) << filter.text;
    }
}

TEST_F(PeopleTest, RefusesWrongFiltersAndKeepsTheOldOne) {
    const auto recordset = pushed_down();
    recordset->set_filter("id = 2");
    for (const std::string_view filter : kBadFilters)
        EXPECT_EQ(error_of([&] { recordset->set_filter(filter); }), kInvalid) << filter;
    std::string deep(100, '(');
    EXPECT_EQ(error_of([&] { recordset->set_filter(deep + "id = 1"); }), kInvalid);
    std::string many = "id = 1";
    for (std::size_t i = 0; i < kMaxClauses; ++i)
        many += " or id = 1";
    EXPECT_EQ(error_of([&] { recordset->set_filter(many); }), kInvalid);
    EXPECT_EQ(ids(*recordset), "2");
}

TEST_F(PeopleTest, SortsRows) {
    for (const bool whole : {false, true}) {
        const auto recordset = whole ? held_whole() : pushed_down();
        for (const Case& sort : kSorts) {
            recordset->set_sort(sort.text);
            EXPECT_EQ(ids(*recordset), sort.ids) << sort.text << (whole ? ", held whole" : ", pushed down");
        }
    }
    const auto recordset = pushed_down();
    EXPECT_EQ(error_of([&] { recordset->set_sort("nobody"); }), error_number(Code::ItemNotFound));
    EXPECT_EQ(error_of([&] { recordset->set_sort("name,"); }), kInvalid);
}

TEST_F(PeopleTest, FindsTheNextRecord) {
    for (const bool whole : {false, true}) {
        const auto recordset = whole ? held_whole() : pushed_down();
        const auto find = [&](std::initializer_list<Variant> arguments) {
            get(*recordset, "Find", arguments);
            return recordset->eof() ? "EOF" : recordset->bof() ? "BOF" : text(recordset->value(0));
        };
        EXPECT_EQ(find({"age = 30"}), "1"); // starts at the current record
        EXPECT_EQ(find({"age = 30", Variant(1)}), "5");
        EXPECT_EQ(find({"name LIKE 'b*'", Variant(1), Variant(-1)}), "2");
        EXPECT_EQ(find({"id > 9"}), "EOF");
        EXPECT_EQ(error_of([&] { find({"id = 1"}); }), error_number(Code::NoCurrentRecord));
    }
}

} // namespace tabrixdb::ado
