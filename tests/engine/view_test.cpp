#include "automation/array.h"
#include "automation/conversions.h"
#include "data/sources.h"
#include "field/db_field.h"

#include <string>

#include <gtest/gtest.h>

namespace tabrixdb {
namespace {

const std::string kText = "<input type=\"text\" name=\"#~field_name~#\" value=\"#~field_value~#\" size=";
const std::string kHidden = "<input type=\"hidden\" name=\"#~field_name~#\" value=\"\" >\r\n";

TEST(View, RendersItsSpecification) {
    const struct {
        std::string specification, view, kind, default_value;
        int required;
    } cases[] = {
        {"", "NORMAL", "", "", 0},
        {"normal;x", "NORMAL", "", "", 0},
        {"TEXT", kText + "10  >\r\n", "NORMAL", "", 0},
        {"text;30;;R,50", kText + "30  MaxLength=\"50\"  >\r\n", "NORMAL", "", -1},
        {"TEXT;8;x;5", kText + "8  >\r\n", "NORMAL", "x", 5},
        {"TEXT;8;x;q,z", kText + "8  >\r\n", "NORMAL", "x", 0},
        {"MEMO;;40", "<textarea name=\"#~field_name~#\"  rows=  cols=40  >#~field_value~#</textarea>\r\n",
         "NORMAL", "", 0},
        {"Select;Normal;3;a,b;b;r",
         "<select name=\"#~field_name~#\" size=Normal  > \r\n<option></option>\r\n<option>a</option>\r\n"
         "<option>b</option>\r\n</select>\r\n",
         "SELECT", "b", -1},
        {"SELECT", "", "", "", 0},
        {"SELECT;LIST;a", "", "", "", 0},
        {"SELECT LOOKUP", "SELECT LOOKUP", "", "", 0},
        {"Choose: ;<b>x</b>", "Choose: ;<b>x</b>", "", "", 0},
        {"CHECKBOX", "<input type=\"checkbox\" name=\"#~field_name~#\" value=\"ON #~checked~#  >\r\n",
         "CHECKBOX", "", 0},
        {"CHECKBOX;1;0;id=k",
         "<input type=\"checkbox\" name=\"#~field_name~#\" value=\"1\" id=k#~checked~#  >\r\n", "CHECKBOX",
         "0", 0},
        {"GETCHOICE_FROMFIELD;Items;d;style=x", "Items", "GETCHOICE_FROMFIELD", "d", 0},
        {"GETCHECKBOX_FROMFIELD;Items", "Items", "GETCHECKBOX_FROMFIELD", "", 0},
        {"DATE;12;today",
         kText + "12   >\r\n<a href=\"javascript:show_date('#~grid_name~#','#~field_name~#')\" >Date</a>\r\n",
         "DATE", "today", 0},
        {"UPLOAD;x;/docs/",
         kText + "5   >\r\n<a href=\"javascript:upload_file('#~grid_name~#','#~field_name~#','/docs/')\" "
                 ">Upload</a>\r\n",
         "UPLOAD", "", 0},
        {"UPLOADIMAGE;/img/;20",
         kHidden + "<a href=\"javascript:upload_image('#~grid_name~#','#~field_name~#','/img/')\" >"
                   "<img name=\"#~field_name~#_image\" src='/img/#~field_value~#' width=20 height=10 "
                   "border=0 ></a>",
         "UPLOADIMAGE", "", 0},
        {"UPLOADDB",
         kHidden + "<a href=\"javascript:upload_to_db('#~grid_name~#','#~field_name~#')\" >Upload</a>",
         "UPLOADDB", "", 0},
        {"UPLOADDBIMAGE;/b.asp;5",
         kHidden + "<a href=\"javascript:upload_to_dbimage('#~grid_name~#','#~field_name~#')\" "
                   ">#~field_value~#</a>",
         "UPLOADDBIMAGE", "<img name=\"#~field_name~#_image\" src=\"/b.asp\" border=0  width = 5  >", 0},
    };

    for (const auto& expected : cases) {
        DbField field;
        field.set_view(FormMode::Edit, expected.specification);
        EXPECT_EQ(field.view(FormMode::Edit), expected.view) << expected.specification;
        EXPECT_EQ(field.view_kind(FormMode::Edit), expected.kind) << expected.specification;
        EXPECT_EQ(field.default_value, expected.default_value) << expected.specification;
        EXPECT_EQ(field.required, expected.required) << expected.specification;
        EXPECT_EQ(field.view(FormMode::Add), "NORMAL") << expected.specification;
    }
}

TEST(View, KeepsTheControlOfEachItem) {
    DbField field;
    field.set_view(FormMode::Filter, "CHOICE;Y~Yes,N~No,?;N;class=radio");
    EXPECT_EQ(field.view_kind(FormMode::Filter), "CHOICE");
    EXPECT_EQ(field.required, -1) << "any r in the attributes";
    ASSERT_TRUE(field.check_list.is_array());
    const auto items = field.check_list.array()->elements();
    ASSERT_EQ(items.size(), 3u);
    EXPECT_EQ(to_text(items[0]).str(),
              "<input type=\"radio\" name=\"#~field_name~#\" value=\"Y\" #~checked~# class=radio >Yes");
    EXPECT_EQ(to_text(items[2]).str(),
              "<input type=\"radio\" name=\"#~field_name~#\" value=\"?\" #~checked~# class=radio >?");
}

TEST(Source, FindsTheTableOfAQuery) {
    const struct {
        std::string sql, table;
    } cases[] = {
        {"select * from orders where id=1", "ORDERS"},
        {"select a from t", "T"},
        {"update t set a=1", "UPDATE T SET A=1"},
        {"select datefrom,b from t", "B"}, // a FROM inside a longer word counts
        {"select a from", ""},
        {"", ""},
    };

    for (const auto& [sql, table] : cases)
        EXPECT_EQ(table_name(sql), table) << sql;
}

} // namespace
} // namespace tabrixdb
