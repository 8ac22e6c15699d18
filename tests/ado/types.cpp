#include "tests/ado/shop.h"

namespace tabrixdb::ado {

namespace {

struct Case {
    std::string_view declared;
    std::string_view literal; // as SQL stores it
    std::int32_t type;        // that Field.Type reports
    Type variant;             // of the value
    std::string_view text;    // of the value, as a page writes it
    std::int32_t size = 0;    // DefinedSize
};

constexpr std::int32_t kUnbound = 1073741823;

const Case kCases[] = {
    {"integer", "42", 3, Type::Long, "42", 4},
    {"integer", "5000000000", 3, Type::LongLong, "5000000000", 4},
    {"integer", "'many'", 3, Type::String, "many", 4}, // what does not fit comes as it is
    {"integer", "1.5", 3, Type::Double, "1.5", 4},
    {"smallint", "7", 2, Type::Integer, "7", 2},
    {"smallint", "70000", 2, Type::Long, "70000", 2},
    {"tinyint", "255", 17, Type::Byte, "255", 1},
    {"bigint", "7", 20, Type::LongLong, "7", 8},
    {"boolean", "1", 11, Type::Boolean, "True", 2},
    {"bit", "'no'", 11, Type::Boolean, "False", 2},
    {"boolean", "'perhaps'", 11, Type::String, "perhaps", 2},
    {"double", "0.1", 5, Type::Double, "0.1", 8},
    {"float", "3", 5, Type::Double, "3", 8},
    {"single", "0.1", 4, Type::Single, "0.1", 4},
    {"money", "12.5", 6, Type::Currency, "12.5", 8},
    {"decimal(10,2)", "0.1", 131, Type::Currency, "0.1", 19},
    {"numeric", "123456789", 131, Type::Currency, "123456789", 19},
    {"numeric(20,8)", "0.00000001", 131, Type::Double, "0.00000001", 19},
    {"date", "'2024-05-31'", 133, Type::Date, "5/31/2024", 6},
    {"date", "'someday'", 133, Type::String, "someday", 6},
    {"date", "'2024-02-30'", 133, Type::String, "2024-02-30", 6},
    {"time", "'18:30'", 134, Type::Date, "6:30:00 PM", 6},
    {"datetime", "'2024-05-31 18:30:00'", 135, Type::Date, "5/31/2024 6:30:00 PM", 16},
    {"datetime", "'2024-05-31T18:30:00.250Z'", 135, Type::Date, "5/31/2024 6:30:00 PM", 16},
    {"datetime", "2460462.25", 135, Type::Date, "5/31/2024 6:00:00 PM", 16},  // Julian day
    {"timestamp", "1717180200", 135, Type::Date, "5/31/2024 6:30:00 PM", 16}, // seconds since 1970
    {"timestamp", "1717180200000", 135, Type::Date, "5/31/2024 6:30:00 PM", 16},
    {"varchar(40)", "'text'", 202, Type::String, "text", 40},
    {"varchar(40)", "12", 202, Type::String, "12", 40},
    {"text", "'long'", 203, Type::String, "long", kUnbound},
    {"text(80)", "'short'", 202, Type::String, "short", 80},
    {"uniqueidentifier", "'{1}'", 72, Type::String, "{1}", kUnbound},
    {"blob", "x'414243'", 205, Type::ByteArray, "ABC", 2147483647},
    {"varbinary(9)", "x'00'", 204, Type::ByteArray, std::string_view("\0", 1), 9},
    {"", "42", 3, Type::Long, "42", 4}, // undeclared: as the first value is
    {"", "'t'", 202, Type::String, "t", kUnbound},
    {"", "1.25", 5, Type::Double, "1.25", 8},
    {"", "null", 202, Type::Null, "", kUnbound},
    {"integer", "null", 3, Type::Null, "", 4},
};

} // namespace

TEST_F(ShopTest, GivesValuesTheTypeOfTheirColumn) {
    for (const Case& c : kCases) {
        SCOPED_TRACE(std::string(c.declared) + " " + std::string(c.literal));
        execute("create table t (v " + std::string(c.declared) + "); insert into t values (" +
                std::string(c.literal) + ")");
        {
            const auto recordset = open("select v from t");
            EXPECT_EQ(recordset->columns()[0].type, c.type);
            const Variant value = recordset->value(0);
            EXPECT_EQ(value.type(), c.variant);
            EXPECT_EQ(value.is_byte_array() ? value.text().str() : text(value), c.text);
            std::string appended;
            recordset->append_value(0, appended);
            EXPECT_EQ(appended, text(value));
            const Variant field = get(*recordset, "", {Variant("V")});
            EXPECT_EQ(text(get(*field.object(), "DefinedSize")), std::to_string(c.size));
        }
        execute("drop table t");
    }
}

TEST_F(ShopTest, DescribesColumns) {
    execute("create table t (id integer primary key, n integer primary_key_not, must varchar(9) not null, "
            "price decimal(8,3), note text);"
            "create table counted (id integer primary key autoincrement, a integer);"
            "create table lines (a integer, b integer, c text, primary key (a, b));"
            "create view v as select id, price * 2 as twice from t");
    using namespace platform;
    constexpr std::int32_t kNull = kFieldIsNullable | kFieldMayBeNull;

    const struct {
        std::string_view column;
        std::int32_t attributes;
    } cases[] = {
        {"id from t", kFieldUpdatable | kFieldFixed | kFieldKeyColumn},
        {"n from t", kFieldUpdatable | kFieldFixed | kNull},
        {"must from t", kFieldUpdatable},
        {"note as remark from t", kFieldUpdatable | kNull | kFieldLong},
        {"id from counted", kFieldFixed | kFieldKeyColumn}, // numbered by the table alone
        {"b from lines", kFieldUpdatable | kFieldFixed | kFieldKeyColumn},
        {"n + 1 from t", kFieldFixed | kNull},
        {"id from v", kFieldUpdatable | kFieldFixed | kFieldKeyColumn},
        {"twice from v", kFieldFixed | kNull},
    };

    execute("insert into t (id, n, must, price) values (1, 1, '', 1.5); insert into counted (a) values (1);"
            "insert into lines values (1, 1, '')");
    for (const auto& c : cases) {
        const auto recordset = open("select " + std::string(c.column));
        EXPECT_EQ(recordset->columns()[0].attributes, c.attributes) << c.column;
    }
    const auto price = get(*open("select price from t"), "", {Variant(0)});
    EXPECT_EQ(text(get(*price.object(), "Precision")), "8");
    EXPECT_EQ(text(get(*price.object(), "NumericScale")), "3");
    const auto read_only = open("select must from t", *connection_, LockType::ReadOnly);
    EXPECT_EQ(read_only->columns()[0].attributes, 0);
}

// Which values are worked out, and which key the database gives out.
TEST_F(ShopTest, TellsWhereValuesComeFrom) {
    execute("create table plain (id integer primary key, n text, g as (id + 1));"
            "create table counted (id integer primary key autoincrement);"
            "create table backwards (id integer primary key desc);" // not the row's number
            "create table without (id integer primary key) without rowid;"
            "create table coded (code text primary key); create table pairs (a, b, primary key (a, b));"
            "create table loose (n); create table named (rowid text, n);"
            "create view v as select id, n || '' as text from plain");

    enum { None = 0, Computed = 1, Numbered = 2 };

    const struct {
        std::string_view column;
        int expected;
    } cases[] = {
        {"id from plain", Numbered},
        {"rowid from plain", Numbered},
        {"id as other from plain", Numbered},
        {"id from counted", Numbered},
        {"id from backwards", None},
        {"id from without", None},
        {"rowid from backwards", Numbered},
        {"rowid from coded", Numbered},
        {"code from coded", None},
        {"a from pairs", None},
        {"rowid from loose", Numbered},
        {"rowid from named", None},
        {"n from plain", None},
        {"g from plain", None},
        {"id from v", Numbered},
        {"text from v", Computed},
        {"p.n from plain p join loose l on l.n = p.n", None},
        {"n from (select n from plain where id > 0)", None},
        {"id + 1 from plain", Computed},
        {"max(id) from plain", Computed},
        {"'n' from plain", Computed},
        {"n from plain union select n from loose", Computed | None},
        {"id from plain where id in (select 1 union select 2)", Numbered},
    };

    for (const auto& c : cases) {
        const platform::Column column = open("select " + std::string(c.column))->columns()[0];
        EXPECT_EQ(column.computed * Computed | column.numbered * Numbered, c.expected) << c.column;
    }
    // What was taken for a row's number could have deleted two rows.
    execute("insert into named values ('same', 1), ('same', 2)");
    EXPECT_EQ(error_of([&] { open("select rowid, n from named")->remove(); }),
              error_number(Code::FeatureNotAvailable));
    EXPECT_EQ(scalar("select count(*) from named"), "2");
}

} // namespace tabrixdb::ado
