#include "editing/shown_rows.h"

#include "automation/conversions.h"
#include "automation/hash.h"
#include "automation/text.h"
#include "engine/page.h"
#include "engine/report.h"

#include <algorithm>
#include <charconv>

namespace tabrixdb {

// The field: "selected columns|bookmark,key,values|bookmark,key,values,e|...": the selected row and positions
// of columns between blanks, traces in hexadecimal digits, "e" for a row with controls. A bookmark that a
// comma or a bar would spoil is left out.

namespace {

constexpr std::string_view kField = "_shown";

// One less than a 16-bit row can count to, so that loops over rows end.
constexpr std::size_t kMostRows = INT16_MAX - 1;

template <class T>
bool read_number(std::string_view text, T& number, int base) {
    const auto read = std::from_chars(text.data(), text.data() + text.size(), number, base);
    return read.ec == std::errc() && read.ptr == text.data() + text.size();
}

bool read_mark(std::string_view text, RowMark& mark) {
    const std::vector<std::string_view> parts = split(text, ',');
    if (parts.size() < 3 || parts.size() > 4 || !read_number(parts[1], mark.key, 16) ||
        !read_number(parts[2], mark.values, 16))
        return false;
    mark.bookmark = parts[0];
    mark.edited = parts.size() == 4;
    return true;
}

std::string hexadecimal(std::uint64_t number) {
    char digits[16];
    const auto end = std::to_chars(std::begin(digits), std::end(digits), number, 16).ptr;
    return std::string(digits, end);
}

bool is_updatable(const platform::Column& column) {
    return (column.attributes & platform::kFieldUpdatable) != 0;
}

} // namespace

RowMarker::RowMarker(const DbSource& source) : records_(source.records()) {
    const auto& columns = records_.columns();
    const bool updatable = std::ranges::any_of(columns, is_updatable);
    for (const platform::Column& column : columns) {
        in_key_.push_back((column.attributes & platform::kFieldKeyColumn) != 0);
        // An expression may give another value each time that it is asked.
        in_values_.push_back(column.type != platform::data_type::kLongVarBinary &&
                             (!updatable || is_updatable(column)));
    }
}

RowMark RowMarker::mark() {
    RowMark mark{{}, kHashStart, kHashStart};
    for (std::size_t i = 0; i < in_key_.size(); ++i) {
        if (!in_key_[i] && !in_values_[i])
            continue;
        text_.clear();
        records_.append_value(i, text_);
        if (in_values_[i])
            mark.values = stable_hash(text_, mark.values);
        if (in_key_[i])
            mark.key = stable_hash(text_, mark.key);
    }
    if (std::ranges::find(in_key_, true) == in_key_.end())
        mark.key = mark.values;
    mark.bookmark = to_text(records_.bookmark()).str();
    return mark;
}

ShownRows ShownRows::posted(const std::string& grid) {
    ShownRows shown;
    const std::string field = request().form_value(grid + std::string(kField)).value_or("");
    if (field.empty())
        return shown;
    shown.posted_ = true;
    const std::vector<std::string_view> parts = split(field, '|');
    const std::vector<std::string_view> head = split(parts[0], ' ');
    if (std::int16_t row = 0; !head.empty() && read_number(head[0], row, 10))
        shown.select(row);
    for (std::size_t i = 1; i < head.size(); ++i)
        if (std::uint16_t position = 0; read_number(head[i], position, 10))
            shown.add_control(position);
    for (std::size_t i = 1; i < parts.size() && i <= kMostRows; ++i) {
        RowMark mark;
        if (!read_mark(parts[i], mark)) {
            shown.rows_.clear();
            break;
        }
        shown.add_row(std::move(mark));
    }
    return shown;
}

void ShownRows::add_control(std::size_t column) {
    if (controls_.size() <= column)
        controls_.resize(column + 1);
    controls_[column] = true;
}

const RowMark* ShownRows::row(std::int16_t row) const noexcept {
    return row >= 1 && row <= count() ? &rows_[static_cast<std::size_t>(row) - 1] : nullptr;
}

std::int16_t ShownRows::row_of(std::uint64_t key) const noexcept {
    const auto found = std::ranges::find(rows_, key, &RowMark::key);
    return found == rows_.end() ? std::int16_t{0} : static_cast<std::int16_t>(found - rows_.begin() + 1);
}

std::string ShownRows::text() const {
    std::string value = std::to_string(selected_);
    for (std::size_t i = 0; i < controls_.size(); ++i)
        if (controls_[i])
            value += " " + std::to_string(i);
    for (const RowMark& row : rows_) {
        const bool spoiled = row.bookmark.find_first_of(",|") != std::string::npos;
        value += "|" + (spoiled ? "" : row.bookmark) + "," + hexadecimal(row.key) + "," +
                 hexadecimal(row.values) + (row.edited ? ",e" : "");
    }
    return value;
}

std::string ShownRows::html(const std::string& grid) const {
    return "<input type=\"hidden\" name=\"" + grid + std::string(kField) + "\" value=\"" +
           html_encode(text()) + "\">\r\n";
}

} // namespace tabrixdb
