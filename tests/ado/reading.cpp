#include "tests/ado/shop.h"

namespace tabrixdb::ado {

TEST_F(ShopTest, ReadsRowsOfAQuery) {
    execute("create table t (id integer primary key, name varchar(20), price decimal(10,2), added date, "
            "sold boolean);"
            "insert into t values (1, 'One', 12.5, '2024-05-31', 1), (2, NULL, 3, '2024-06-01', 0)");
    const auto recordset = open("select * from t");
    EXPECT_EQ(rows(*recordset), "1,One,12.5,5/31/2024,True;2,NULL,3,6/1/2024,False;");
    EXPECT_TRUE(recordset->eof());
    EXPECT_EQ(recordset->record_count(), 2);
}

TEST_F(ShopTest, CountsByAnExpression) {
    execute("create table t (a)");
    EXPECT_EQ(text(value_of(get(*execute("select count(*) as n from t").object(), "", {Variant("n")}))), "0");
}

} // namespace tabrixdb::ado
