#include "blob/csv.h"

#include "automation/conversions.h"

namespace tabrixdb {

namespace {

void append_field(std::string& line, std::string_view text) {
    line += '"';
    if (!text.empty() && std::string_view("=+-@\t\r").find(text.front()) != std::string_view::npos)
        line += '\'';
    for (std::size_t quote; (quote = text.find('"')) != std::string_view::npos; text.remove_prefix(quote + 1))
        line.append(text.substr(0, quote + 1)) += '"';
    line.append(text) += '"';
}

// By the kind of the value, not of its column: a column of numbers may hold a text.
void append_value(std::string& line, const Variant& value) {
    if (value.is_null())
        return;
    if (value.is_string())
        return append_field(line, value.text());
    std::string shown;
    append_text(shown, value);
    if (value.is_byte_array())
        return append_field(line, shown);
    const bool has_comma = shown.find(',') != std::string::npos; // as some locales write numbers
    line.append(has_comma ? "\"" : "").append(shown).append(has_comma ? "\"" : "");
}

template <class Append>
void append_line(std::string& lines, const std::vector<platform::Column>& columns, Append append) {
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (i)
            lines += ',';
        append(i);
    }
    lines += "\r\n";
}

} // namespace

void append_csv_heading(std::string& lines, platform::Recordset& records) {
    const auto& columns = records.columns();
    append_line(lines, columns, [&](std::size_t i) { append_field(lines, columns[i].name); });
}

void append_csv_record(std::string& lines, platform::Recordset& records) {
    append_line(lines, records.columns(), [&](std::size_t i) { append_value(lines, records.value(i)); });
}

} // namespace tabrixdb
