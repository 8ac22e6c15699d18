// Compiled rows against the step-by-step replacement that defines them: random templates over real records
// whose values are full of tags, pieces of tags, blanks and letters of every length.

#include "ado/classes.h"
#include "automation/error.h"
#include "automation/text.h"
#include "data/db_source.h"
#include "grid/row_template.h"
#include "platform/host.h"
#include "template/column_value.h"
#include "template/split.h"

#include <array>
#include <filesystem>
#include <optional>
#include <random>
#include <string>

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <unistd.h>

namespace tabrixdb {
namespace {

// As much of a host as a source needs.
class DataHost final : public platform::Host {
public:
    const platform::PageObjects& page() override { throw Error(kErrorNothing); }

    Ref<platform::Connection> create_connection() override { return make_ref<ado::Connection>(); }

    Ref<platform::Recordset> create_recordset() override { return make_ref<ado::Recordset>(); }

    Ref<platform::ScriptControl> create_script_control() override { throw Error(kErrorCannotCreate); }

    platform::FileSystem& file_system() override { throw Error(kErrorNothing); }
};

constexpr std::array kColumns = {"Name", "Name_2", "Unit Price", "Größe", "a"};

class Dice {
public:
    template <class List>
    const auto& one_of(const List& list) {
        return list[random_() % std::size(list)];
    }

    // A text of so many random pieces at most.
    template <class List>
    std::string text_of(const List& pieces, std::size_t most) {
        std::string text;
        for (std::size_t i = random_() % (most + 1); i > 0; --i)
            text += one_of(pieces);
        return text;
    }

private:
    std::minstd_rand random_{20260305};
};

// Values of which three in four could take part in a tag.
std::string random_value(Dice& dice) {
    static constexpr std::array kPlain = {"", " ", "x", "12", "ü", "Name", "</a>", "<b>"};
    static constexpr std::array kTagged = {
        "#~", "~#", "#",          "~",     "Name", "_2", "#~a~#", "#~NAME_2~#", "#~btn_edit_row~#",
        "",   " ",  "Unit_Price", "Größe", "a"};
    return dice.one_of(std::array{true, false}) ? dice.text_of(kPlain, 2) : dice.text_of(kTagged, 4);
}

std::string random_template(Dice& dice) {
    static constexpr std::array kPieces = {"#~Name~#",
                                           "#~name_2~#",
                                           "#~UNIT_PRICE~#",
                                           "#~unit price~#",
                                           "#~GRÖSSE~#",
                                           "#~GRÖßE~#",
                                           "#~a~#",
                                           "#~",
                                           "~#",
                                           "#",
                                           "~",
                                           "text",
                                           "é",
                                           "#~btn_edit_row~#",
                                           "<a href=\"#~btn_update_row~#\">",
                                           "</a>",
                                           "32748",
                                           "31336",
                                           "#~unknown~#",
                                           "Name"};
    return dice.text_of(kPieces, 9);
}

// Rows of plain values that get a small part of what the rows of a grid get after their columns.
class PlainRows final : public RowContent {
public:
    explicit PlainRows(const DbSource& source) {
        for (std::size_t i = 0; i < kColumns.size(); ++i)
            values_.emplace_back(source, i);
    }

    void append_value(std::string& out, std::size_t column, std::int16_t, HeldValues* held) override {
        std::string value;
        values_[column].append(value);
        out += held ? held->hold({std::move(value), {}}) : value;
    }

    bool is_plain(std::size_t) const override { return true; }

    void finish(std::string& text, std::int16_t row) override {
        replace_span(text, "<a href=\"#~btn_update_row~#", "</a>", "");
        text = replace_ignore_case(text, "#~btn_edit_row~#", "edit(" + std::to_string(row - 1) + ")");
    }

    const std::vector<ColumnValue>& values() const { return values_; }

private:
    std::vector<ColumnValue> values_;
};

class RandomRows : public testing::Test {
protected:
    static constexpr int kRecords = 200;

    void SetUp() override {
        std::string name = (std::filesystem::temp_directory_path() / "tabrixdb-rows-XXXXXX").string();
        close(mkstemp(name.data()));
        path_ = name;
        fill();
        connection_->open("Provider=SQLite;Data Source=" + path_, "", "", -1);
        source_ = make_ref<DbSource>();
        source_->recordset->set_cursor_location(platform::CursorLocation::Client);
        source_->recordset->open("select * from t", *connection_, platform::CursorType::Static,
                                 platform::LockType::ReadOnly, -1);
        source_->make_fields();
        rows_.emplace(*source_);
        for (const char* const column : kColumns)
            tags_.emplace_back(column);
    }

    void TearDown() override { std::filesystem::remove(path_); }

    void fill() {
        sqlite3* database = nullptr;
        ASSERT_EQ(sqlite3_open(path_.c_str(), &database), SQLITE_OK);
        std::string sql =
            "begin; create table t (\"Name\" text, \"Name_2\" text, \"Unit Price\" text, \"Größe\" text, "
            "a text);";
        for (int i = 0; i < kRecords; ++i) {
            std::string values;
            for (std::size_t column = 0; column < kColumns.size(); ++column)
                values += (column == 0 ? "'" : ",'") + random_value(dice_) + "'";
            sql += "insert into t values (" + values + ");";
        }
        EXPECT_EQ(sqlite3_exec(database, (sql + "commit").c_str(), nullptr, nullptr, nullptr), SQLITE_OK);
        sqlite3_close(database);
    }

    // Values as text: each stands behind a word that no tag can hold until all tags are filled.
    std::string filled_with_words(std::string text, std::int16_t row) {
        const auto word = [](std::size_t column) { return "QZ" + std::to_string(column) + "QZ"; };
        for (std::size_t i = 0; i < tags_.size(); ++i)
            tags_[i].replace_in(text, word(i));
        rows_->finish(text, row);
        for (std::size_t i = 0; i < tags_.size(); ++i) {
            std::string value;
            rows_->append_value(value, i, row, nullptr);
            text = replace_all(text, word(i), shown_value(value));
        }
        return text;
    }

    DataHost host_;
    platform::HostScope scope_{host_};
    Dice dice_;
    std::string path_;
    Ref<platform::Connection> connection_ = make_ref<ado::Connection>();
    Ref<DbSource> source_;
    std::optional<PlainRows> rows_;
    std::vector<ColumnTag> tags_;
};

TEST_F(RandomRows, EqualReplacementStepByStep) {
    for (const bool trusts : {false, true}) {
        int compiled = 0;
        for (int i = 0; i < 300; ++i) {
            const std::string text = random_template(dice_);
            RowTemplate row_template(text, tags_, *rows_, {.trusts_values = trusts});
            source_->records().move_first();
            for (std::int16_t row = 1; row <= 40; ++row) {
                std::string expected, actual;
                row_template.append_step_by_step(expected, row);
                row_template.append(actual, row);
                ASSERT_EQ(actual, expected) << "template: " << text;
                if (!trusts) {
                    ASSERT_EQ(actual, filled_with_words(text, row)) << "template: " << text;
                }
                source_->records().move_next();
            }
            compiled += row_template.is_compiled();
        }
        EXPECT_GT(compiled, 75) << "the comparison is of little use when hardly a template is compiled";
    }
}

TEST_F(RandomRows, AreBounded) {
    // Values that unfold into one another would make 4096 times 4096 times 4096 characters.
    sqlite3* database = nullptr;
    ASSERT_EQ(sqlite3_open(path_.c_str(), &database), SQLITE_OK);
    const std::string many = "replace(hex(zeroblob(2048)), '0', '#~";
    const std::string sql = "update t set Name = " + many + "Name_2~#'), Name_2 = " + many +
                            "Unit_Price~#'), \"Unit Price\" = " + many + "a~#')";
    ASSERT_EQ(sqlite3_exec(database, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_close(database);
    source_->records().requery();
    RowTemplate row_template("#~Name~#", tags_, *rows_, {.trusts_values = true});
    std::string out;
    try {
        row_template.append(out, 1);
        FAIL() << out.size();
    } catch (const Error& error) {
        EXPECT_EQ(error.number(), 14);
    }
}

} // namespace
} // namespace tabrixdb
