#include "tests/ado/shop.h"

#include <algorithm>
#include <map>
#include <random>
#include <vector>

namespace tabrixdb::ado {

namespace {

struct Row {
    std::int32_t id, group;
    std::string name;
};

// What a recordset must do, in its plainest form: all rows in a vector, and a place in it.
class Model {
public:
    explicit Model(std::vector<Row> rows) : all_(std::move(rows)), shown_(all_) {}

    std::vector<Row>& shown() { return shown_; }

    void arrange(std::int32_t group, int sort) {
        shown_ = all_;
        if (group >= 0)
            std::erase_if(shown_, [group](const Row& row) { return row.group != group; });
        if (sort != 0) {
            std::ranges::stable_sort(shown_, [sort](const Row& a, const Row& b) {
                return sort < 3 ? a.group < b.group : compare_ignore_case(a.name, b.name) < 0;
            });
            if (sort % 2 == 0) // going down is going up reversed
                std::ranges::reverse(shown_);
        }
        at = 1;
    }

    bool bof() const { return shown_.empty() || at < 1; }

    bool eof() const { return shown_.empty() || at > count(); }

    int count() const { return static_cast<int>(shown_.size()); }

    int position() const { return shown_.empty() ? -1 : at < 1 ? -2 : at > count() ? -3 : at; }

    // False where the move is an error.
    bool move(int by) {
        if (shown_.empty() || (at > count() && by >= 0) || (at < 1 && by <= 0))
            return false;
        at = std::clamp(at + by, 0, count() + 1);
        return true;
    }

    int at = 1;

private:
    std::vector<Row> all_, shown_;
};

class RandomWalk : public ShopTest {
protected:
    static constexpr int kRows = 3000; // several stretches of the largest size
    static constexpr int kGroups = 7;
    static constexpr std::string_view kSorts[] = {"", "grp", "grp desc", "name", "name desc"};

    std::vector<Row> make_rows() {
        std::vector<Row> rows;
        execute("create table t (id integer primary key, grp integer, name varchar(20))");
        get(*connection_, "BeginTrans");
        for (int i = 1; i <= kRows; ++i) {
            const int hash = (i * 7919) % 1009;
            rows.push_back({i, hash % kGroups, (hash % 2 ? "N" : "n") + std::to_string(hash % 50)});
            execute("insert into t values (" + std::to_string(i) + "," + std::to_string(rows.back().group) +
                    ",'" + rows.back().name + "')");
        }
        get(*connection_, "CommitTrans");
        return rows;
    }
};

} // namespace

TEST_F(RandomWalk, DoesWhatAVectorOfRowsDoes) {
    const std::vector<Row> rows = make_rows();
    for (const std::string_view query : {"select * from t", "select * from t; select 1"}) {
        std::mt19937 random(20240531);
        const auto pick = [&random](int from, int to) {
            return static_cast<int>(random() % static_cast<unsigned>(to - from + 1)) + from;
        };
        const auto recordset = open(query);
        Model model(rows);
        std::map<int, Variant> bookmarks; // by id
        int page_size = 10, group = -1, sort = 0;
        std::string history;
        for (int step = 0; step < 4000; ++step) {
            const int action = pick(0, 99);
            history = "step " + std::to_string(step) + ", action " + std::to_string(action);
            if (action < 45) { // small moves, the usual thing
                const int by = action < 25 ? 1 : action < 35 ? -1 : pick(-20, 20);
                EXPECT_EQ(error_of([&] { recordset->move(by); }) == 0, model.move(by));
            } else if (action < 55) {
                const int by = pick(-2000, 2000);
                EXPECT_EQ(error_of([&] { recordset->move(by); }) == 0, model.move(by));
            } else if (action < 65 && model.count() > 0) {
                const int page = pick(1, (model.count() + page_size - 1) / page_size + 1);
                recordset->set_absolute_page(page);
                model.at = std::min((page - 1) * page_size + 1, model.count() + 1);
            } else if (action < 70) {
                page_size = pick(1, 40);
                recordset->set_page_size(page_size);
            } else if (action < 74) {
                group = pick(-1, kGroups); // kGroups: no row is left
                recordset->set_filter(group < 0 ? "" : "grp = " + std::to_string(group));
                model.arrange(group, sort);
            } else if (action < 78) {
                sort = pick(0, 4);
                recordset->set_sort(kSorts[sort]);
                model.arrange(group, sort);
            } else if (action < 82 && model.count() > 0) {
                get(*recordset, action % 2 ? "MoveFirst" : "MoveLast");
                model.at = action % 2 ? 1 : model.count();
            } else if (action < 86 && !model.bof() && !model.eof()) {
                bookmarks[model.shown()[static_cast<std::size_t>(model.at - 1)].id] = recordset->bookmark();
            } else if (action < 90 && !bookmarks.empty()) {
                const auto& [id, bookmark] =
                    *std::next(bookmarks.begin(), pick(0, static_cast<int>(bookmarks.size()) - 1));
                const auto found = std::ranges::find(model.shown(), id, &Row::id);
                const bool shown = found != model.shown().end();
                EXPECT_EQ(error_of([&] { recordset->set_bookmark(bookmark); }) == 0, shown);
                if (shown)
                    model.at = static_cast<int>(found - model.shown().begin()) + 1;
            } else if (action < 94) {
                EXPECT_EQ(recordset->record_count(), model.count());
                EXPECT_EQ(recordset->page_count(), (model.count() + page_size - 1) / page_size);
            }
            ASSERT_EQ(recordset->bof(), model.bof()) << history;
            ASSERT_EQ(recordset->eof(), model.eof()) << history;
            ASSERT_EQ(recordset->absolute_position(), model.position()) << history;
            if (!model.bof() && !model.eof()) {
                const Row& row = model.shown()[static_cast<std::size_t>(model.at - 1)];
                ASSERT_EQ(text(recordset->value(0)), std::to_string(row.id)) << history;
                ASSERT_EQ(text(recordset->value(2)), row.name) << history;
                ASSERT_EQ(recordset->absolute_page(), (model.at - 1) / page_size + 1) << history;
            }
        }
    }
}

} // namespace tabrixdb::ado
