// One page of a grid, 50 rows by 8 columns, beside a hand-written loop that steps the same statement and
// appends the same bytes.
//
//   rows/hand_written   sqlite3_step, sqlite3_column_text, append
//   rows/cursor         the recordset requeried, its page taken and walked, nothing rendered
//   rows/engine         the same, and the row template filled
//   rows/formatted      the same with a Format on two columns
//   rows/content        the same with a Content (a link) on one column
//   rows/create_grid    the whole CreateGrid: command, session, templates, captions, buttons, rows

#include "ado/classes.h"
#include "automation/error.h"
#include "automation/member.h"
#include "data/db_source.h"
#include "data/sources.h"
#include "engine/page.h"
#include "engine/pro.h"
#include "grid/db_grid.h"
#include "grid/nested_grid.h"
#include "grid/rows.h"

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <map>
#include <optional>

#include <benchmark/benchmark.h>
#include <sqlite3.h>
#include <unistd.h>

namespace {

using namespace tabrixdb;

constexpr std::int16_t kRows = 50;
constexpr std::string_view kQuery = "select id, name, city, street, price, stock, made, note from items";

// --- As much of a page as a grid needs
// ----------------------------------------------------------------------

class PageResponse final : public platform::Response {
public:
    const ClassInfo& class_info() const override {
        static const ClassInfo info("Response", "", {});
        return info;
    }

    void write(std::string_view html) override {
        std::cerr << html << '\n'; // an error page: there is nothing to measure then
        std::exit(1);
    }

    std::string text_of(std::string_view bytes) const override { return std::string(bytes); }

    void end() override {}

    bool ended() const override { return false; }

    void set_failed() override {}
};

class PageRequest final : public platform::Request {
public:
    const ClassInfo& class_info() const override {
        static const ClassInfo info("Request", "", {});
        return info;
    }

    std::string value(std::string_view) override { return {}; }

    std::optional<std::string> form_value(std::string_view) override { return {}; }

    std::optional<std::string> query_value(std::string_view) override { return {}; }

    std::string server_variable(std::string_view) override { return {}; }

    std::string query_string() override { return {}; }

    Pairs query_parameters() override { return {}; }

    Pairs form_fields() override { return {}; }
};

class PageSession final : public platform::Session {
public:
    const ClassInfo& class_info() const override {
        static const ClassInfo info("Session", "", {});
        return info;
    }

    Variant value(std::string_view key) override {
        const auto found = values_.find(std::string(key));
        return found == values_.end() ? Variant() : found->second;
    }

    void set_value(std::string_view key, const Variant& value) override { values_[std::string(key)] = value; }

private:
    std::map<std::string, Variant> values_;
};

class PageServer final : public platform::Server {
public:
    const ClassInfo& class_info() const override {
        static const ClassInfo info("Server", "", {});
        return info;
    }

    std::string map_path(std::string_view path) override { return std::string(path); }

    std::string url_encode(std::string_view text) override { return std::string(text); }
};

class PageScript final : public platform::ScriptControl {
public:
    const ClassInfo& class_info() const override {
        static const ClassInfo info("ScriptControl", "", {});
        return info;
    }

    void set_language(std::string_view) override {}

    void set_allow_ui(bool) override {}

    Variant eval(std::string_view) override { return {}; }

    Variant eval_with(std::string_view, const std::vector<Variant>&) override { return {}; }
};

constexpr std::string_view kTemplate =
    "<table><tr><th>#~name~#</th></tr><!--tabrixdb:content_start--><tr><td>#~id~#</td><td>#~name~#</td>"
    "<td>#~city~#</td><td>#~street~#</td><td class=\"n\">#~price~#</td><td class=\"n\">#~stock~#</td>"
    "<td>#~made~#</td><td>#~note~#</td></tr><!--tabrixdb:content_end--></table>";

class PageFiles final : public platform::FileSystem {
public:
    bool file_exists(std::string_view) override { return true; }

    std::string read_text(std::string_view) override { return std::string(kTemplate); }

    std::string read_bytes(std::string_view) override { return {}; }

    void write_text(std::string_view, std::string_view, bool) override {}
};

class PageHost final : public platform::Host {
public:
    bool tells_visitors() override { return true; }

    const platform::PageObjects& page() override { return objects_; }

    Ref<platform::Connection> create_connection() override { return make_ref<ado::Connection>(); }

    Ref<platform::Recordset> create_recordset() override { return make_ref<ado::Recordset>(); }

    Ref<platform::ScriptControl> create_script_control() override { return make_ref<PageScript>(); }

    platform::FileSystem& file_system() override { return files_; }

private:
    PageFiles files_;
    platform::PageObjects objects_{make_ref<PageResponse>(),
                                   make_ref<PageRequest>(),
                                   make_ref<PageSession>(),
                                   make_ref<PageServer>(),
                                   {}};
};

// --- The database
// -------------------------------------------------------------------------------------------

class Database {
public:
    Database() {
        std::string name = (std::filesystem::temp_directory_path() / "tabrixdb-bench-XXXXXX").string();
        ::close(mkstemp(name.data()));
        path = name;
        sqlite3_open(path.c_str(), &handle);
        sqlite3_exec(handle,
                     "create table items (id integer primary key, name varchar(40), city varchar(40), street "
                     "varchar(60), price double, stock integer, made varchar(10), note text);"
                     "with recursive n(i) as (select 1 union all select i + 1 from n where i < 1000)"
                     "insert into items select i, 'Item number ' || i, 'City ' || (i % 17), (i * 7 % 300) || "
                     "' Long Street', i + 0.25, i % 40, date('2026-01-01', '+' || i || ' days'), "
                     "'A note of some length about item ' || i from n;",
                     nullptr, nullptr, nullptr);
    }

    ~Database() {
        sqlite3_close(handle);
        std::filesystem::remove(path);
    }

    std::string path;
    sqlite3* handle = nullptr;
};

Database& database() {
    static Database only;
    return only;
}

// --- What is measured
// ---------------------------------------------------------------------------------------

std::string written_by_hand(sqlite3_stmt* statement) {
    static constexpr std::string_view kLiterals[] = {"<!--tabrixdb:content_start--><tr><td>",
                                                     "</td><td>",
                                                     "</td><td>",
                                                     "</td><td>",
                                                     "</td><td class=\"n\">",
                                                     "</td><td class=\"n\">",
                                                     "</td><td>",
                                                     "</td><td>"};
    std::string out;
    while (sqlite3_step(statement) == SQLITE_ROW) {
        for (int i = 0; i < 8; ++i) {
            out += kLiterals[i];
            const auto* const text = reinterpret_cast<const char*>(sqlite3_column_text(statement, i));
            out.append(text, static_cast<std::size_t>(sqlite3_column_bytes(statement, i)));
        }
        out += "</td></tr><!--tabrixdb:content_end-->";
    }
    sqlite3_reset(statement);
    return out;
}

sqlite3_stmt* statement_by_hand() {
    const std::string sql = std::string(kQuery) + " limit 50";
    sqlite3_stmt* statement = nullptr;
    sqlite3_prepare_v2(database().handle, sql.c_str(), -1, &statement, nullptr);
    return statement;
}

void hand_written(benchmark::State& state) {
    sqlite3_stmt* const statement = statement_by_hand();
    for (auto _ : state)
        benchmark::DoNotOptimize(written_by_hand(statement));
    sqlite3_finalize(statement);
}

// A page with its source, open and on page 1.
class Grid {
public:
    Grid() {
        std::string id = "shop", string = "Provider=SQLite;Data Source=" + database().path, none;
        pro->create_connection(id, string, none);
        tabrixdb::create_source(*pro, "items", std::string(kQuery), "shop", {});
        source = pro->sources->get<DbSource>("items");
    }

    PageHost host;
    platform::HostScope scope{host};
    Ref<Pro> pro = make_ref<Pro>();
    Ref<DbSource> source;

    platform::Recordset& page_1() {
        platform::Recordset& records = source->records();
        records.requery();
        records.set_page_size(kRows);
        records.set_absolute_page(1);
        return records;
    }
};

void walk_cursor(benchmark::State& state) {
    Grid grid;
    for (auto _ : state) {
        platform::Recordset& records = grid.page_1();
        for (int row = 0; row < kRows && !records.eof(); ++row)
            records.move_next();
    }
}

// `marked`: as in a grid with buttons to change its records.
void render_rows(benchmark::State& state, void (*prepare)(DbSource&), bool marked) {
    Grid grid;
    if (prepare)
        prepare(*grid.source);
    const GridCommand command;
    const GridState grid_state(session(), "g");
    const ButtonContext buttons{*grid.pro, command, grid_state, grid.source->records()};
    const GridLayout layout = layout_of_template(split_template(kTemplate), true);
    NestedGrid nested(*grid.pro, 0);
    std::string out;
    for (auto _ : state) {
        grid.page_1();
        out.clear();
        out.shrink_to_fit(); // as each request has to grow it
        GridRows rows(buttons, *grid.source, nested, {});
        ShownRows marks;
        std::string validation;
        if (marked)
            rows.mark_in(marks);
        rows.append(out, layout, kRows, validation);
        if (marked)
            benchmark::DoNotOptimize(marks.html("g"));
        benchmark::DoNotOptimize(out);
    }
    sqlite3_stmt* const statement = statement_by_hand();
    if (!prepare && out != written_by_hand(statement))
        state.SkipWithError("the two do not append the same bytes");
    sqlite3_finalize(statement);
}

void create_whole_grid(benchmark::State& state) {
    Grid grid;
    std::string id = "g", source = "items", path = "t.htm", none;
    std::int16_t rows = kRows, increment = 5;
    bool no = false;
    for (auto _ : state) {
        grid.source->records().requery();
        grid.pro->create_grid(id, source, path, none, none, rows, increment, no, no);
        benchmark::DoNotOptimize(grid.pro->grids->get<DbGrid>("g")->content.size());
    }
}

BENCHMARK(hand_written)->Name("rows/hand_written");
BENCHMARK(walk_cursor)->Name("rows/cursor");
BENCHMARK_CAPTURE(render_rows, engine, nullptr, false)->Name("rows/engine");
BENCHMARK_CAPTURE(render_rows, marked, nullptr, true)->Name("rows/marked");
BENCHMARK_CAPTURE(
    render_rows, formatted,
    [](DbSource& source) {
        source.field_of("price").format = "#,##0.00";
        source.field_of("stock").format = "0";
    },
    false)
    ->Name("rows/formatted");
BENCHMARK_CAPTURE(
    render_rows, content,
    [](DbSource& source) {
        source.field_of("name").content = "<a href=\"item.asp?name=$~name~$\">#~name~#</a>";
    },
    false)
    ->Name("rows/content");
BENCHMARK(create_whole_grid)->Name("rows/create_grid");

} // namespace
