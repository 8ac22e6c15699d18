#include "grid/fast_grid.h"

#include "automation/text.h"
#include "engine/grid_state.h"
#include "engine/report.h"
#include "grid/db_grid.h"

namespace tabrixdb {

namespace {

constexpr std::string_view kBreak = "\r\n";

// With this one the query is not asked again.
constexpr std::int32_t kErrorFinal = -2147217824;

class FastGrid {
public:
    FastGrid(Pro& pro, const FastGridRequest& grid)
        : pro_(pro),
          grid_(grid),
          records_(platform::Host::current().create_recordset()) {}

    // Each statement is followed by the next even when it failed and was recovered from.
    void make() {
        using Statement = void (FastGrid::*)();
        for (const Statement statement : {&FastGrid::open, &FastGrid::count_fields, &FastGrid::make_head,
                                          &FastGrid::make_rows, &FastGrid::store, &FastGrid::close}) {
            try {
                (this->*statement)();
            } catch (const Error& error) {
                if (!recovered(error))
                    return;
            }
        }
    }

private:
    platform::Connection& connection() {
        return *pro_.connections->get<platform::Connection>(grid_.connection_id);
    }

    void open() {
        records_->set_cursor_location(platform::CursorLocation::Server);
        records_->set_source(grid_.sql);
        open_source();
    }

    void open_source() {
        records_->open_query(records_->source(), {}, connection(), platform::CursorType::Unspecified,
                             platform::LockType::Unspecified, -1);
    }

    void count_fields() { fields_ = to_short(static_cast<std::int64_t>(records_->columns().size())); }

    // Deliberately one cell more than a row has.
    void make_head() {
        const auto cell = [&](std::string_view text) {
            return grid_.head_start + std::string(kBreak) + std::string(text) + grid_.head_end +
                   std::string(kBreak);
        };
        head_ = "<tr>" + std::string(kBreak) + cell("");
        for (const platform::Column& column : records_->columns())
            head_ += cell(column.name);
        head_ += "</tr>";
    }

    void make_rows() {
        if (records_->eof())
            return;
        const std::string start = "<tr>" + std::string(kBreak) + grid_.cell_start + std::string(kBreak);
        const std::string end = grid_.cell_end + std::string(kBreak);
        const std::string row_end = end + "</tr>" + std::string(kBreak);
        rows_ = start + records_->get_string(grid_.rows, end + grid_.cell_start + std::string(kBreak),
                                             row_end + start, "&nbsp;");
        rows_.resize(rows_.size() - start.size());
    }

    void store() {
        const auto made = make_ref<DbGrid>();
        made->content =
            Text(grid_.table_tag + head_ + rows_ + std::string(kBreak) + "<tr>" + std::string(kBreak) +
                 "<td nowrap colspan=" + std::to_string(to_short(std::int64_t{fields_} + 1)) +
                 " >&nbsp;</td>" + std::string(kBreak) + "</tr></table>");
        pro_.grids->add(made, grid_.grid_id);
    }

    void close() { records_->close(); }

    bool recovered(const Error& error) {
        const std::string source = records_->source();
        const bool sorted = contains_ignore_case(source, "ORDER BY");
        if (error.number() != kErrorFinal && sorted)
            return true;
        if (error.number() == kErrorFinal || !asked_again(source)) {
            report(trapped(error, "CreateFastGrid -"));
            return false;
        }
        return true;
    }

    bool asked_again(const std::string& source) {
        try {
            if (records_->state() != platform::kStateClosed)
                records_->close();
            records_->set_source(source + " ORDER BY " + GridState(session(), grid_.grid_id).text("_Sort"));
            open_source();
            return true;
        } catch (const Error&) { // the first failure says more
            return false;
        }
    }

    Pro& pro_;
    const FastGridRequest& grid_;
    Ref<platform::Recordset> records_;
    std::int16_t fields_ = 0;
    std::string head_, rows_;
};

} // namespace

void create_fast_grid(Pro& pro, const FastGridRequest& grid) {
    FastGrid(pro, grid).make();
}

} // namespace tabrixdb
