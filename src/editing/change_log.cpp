#include "editing/change_log.h"

#include "automation/error.h"
#include "automation/log_text.h"
#include "automation/text.h"
#include "data/sources.h"

#include <algorithm>
#include <utility>

namespace tabrixdb {

namespace {

// Of one value; longer ones are cut.
constexpr std::size_t kMaxValueBytes = 200;
// Of one line, about: a table may have hundreds of columns.
constexpr std::size_t kMaxLineBytes = 8000;

// Columns whose names hold one of these words are masked.
constexpr std::string_view kSecret[] = {"pass", "pwd", "secret"};

bool is_secret(std::string_view column) {
    return std::ranges::any_of(kSecret,
                               [&](std::string_view word) { return contains_ignore_case(column, word); });
}

bool is_binary(const platform::Column& column) {
    using namespace platform::data_type;
    return column.type == kBinary || column.type == kVarBinary || column.type == kLongVarBinary;
}

// As the line has it.
std::string shown(const platform::Column& column, const std::optional<std::string>& value) {
    if (is_secret(column.name))
        return "***";
    if (!value)
        return "null";
    return is_binary(column) ? *value + " bytes" : quoted_line(*value, kMaxValueBytes);
}

std::string table_of(const platform::Recordset& records) {
    const std::string table = table_name(records.source());
    return table.substr(0, table.find_first_of(" \t\r\n,;()"));
}

} // namespace

ChangeLog ChangeLog::of_delete(const Edit& edit) {
    return {edit, Kind::Deleted};
}

ChangeLog ChangeLog::of_add(const Edit& edit) {
    return {edit, Kind::Added};
}

ChangeLog ChangeLog::of_update(const Edit& edit, const PostedForm& form, std::int16_t row) {
    ChangeLog log(edit, Kind::Changed);
    const auto& columns = edit.records().columns();
    for (std::size_t i = 0; log.visitor_ && i < columns.size(); ++i)
        log.received_.push_back(is_binary(columns[i]) && !form.value(i, row).value_or("").empty());
    return log;
}

ChangeLog::ChangeLog(const Edit& edit, Kind kind)
    : edit_(edit),
      kind_(kind),
      visitor_(platform::Host::current().logged_visitor()) {
    if (visitor_ && kind_ != Kind::Added)
        before_ = read();
}

void ChangeLog::written() {
    if (!visitor_)
        return;
    if (kind_ != Kind::Deleted)
        after_ = read();
    const auto write = [line = line()]() noexcept {
        if (!line.empty())
            platform::Host::current().log(line);
    };
    try {
        edit_.source.connection->after_commit(write);
    } catch (const Error&) { // the page has closed it; then nothing is open that could be taken back
        write();
    }
}

// The current record's values as text, of binary ones their sizes.
ChangeLog::Values ChangeLog::read() const {
    platform::Recordset& records = edit_.records();
    Values values;
    try {
        for (std::size_t i = 0; i < records.columns().size(); ++i) {
            std::string text;
            const bool binary = is_binary(records.columns()[i]);
            if (const std::int32_t size = binary ? records.actual_size(i) : 0; size > 0)
                text = std::to_string(size);
            else if (!binary)
                records.append_value(i, text);
            if (!text.empty())
                values.emplace_back(std::move(text));
            else if (records.value(i).is_null())
                values.emplace_back();
            else
                values.emplace_back(binary ? "0" : "");
        }
    } catch (const Error&) {
        values.clear();
    }
    return values;
}

// "" when the record is as it was.
std::string ChangeLog::line() const {
    const auto& columns = edit_.records().columns();
    std::string differences;
    for (std::size_t i = 0; i < columns.size() && differences.size() < kMaxLineBytes; ++i)
        if (const std::string difference = this->difference(i); !difference.empty())
            differences.append(differences.empty() ? " " : ", ").append(difference);
    if (kind_ == Kind::Changed && differences.empty() && !before_.empty() && !after_.empty())
        return {};
    constexpr std::string_view kWords[] = {"added", "changed", "deleted"};
    return "Record " + std::string(kWords[static_cast<std::size_t>(kind_)]) + ": " + *visitor_ +
           " grid=" + quoted_line(edit_.state.grid(), kMaxValueBytes) +
           " table=" + quoted_line(table_of(edit_.records()), kMaxValueBytes) + " key=(" + key() + ")" +
           (differences.size() < kMaxLineBytes ? differences : shortened(differences, kMaxLineBytes));
}

std::string ChangeLog::key() const {
    const auto& columns = edit_.records().columns();
    const Values& values = kind_ == Kind::Added ? after_ : before_;
    std::string key;
    for (std::size_t i = 0; i < std::min(columns.size(), values.size()); ++i)
        if ((columns[i].attributes & platform::kFieldKeyColumn) != 0)
            key += (key.empty() ? "" : ", ") + one_line(columns[i].name) + "=" + shown(columns[i], values[i]);
    return key;
}

// What happened to one column; "" for nothing.
std::string ChangeLog::difference(std::size_t column) const {
    const platform::Column& info = edit_.records().columns()[column];
    const std::string name = one_line(info.name) + ": ";
    const bool had = column < before_.size(), has = column < after_.size();
    if (had && has) {
        const bool received = column < received_.size() && received_[column];
        return before_[column] == after_[column] && !received
                   ? ""
                   : name + shown(info, before_[column]) + " -> " + shown(info, after_[column]);
    }
    const Values& only = kind_ == Kind::Added ? after_ : before_;
    if (kind_ == Kind::Changed || column >= only.size() || !only[column])
        return {};
    return name + shown(info, only[column]);
}

} // namespace tabrixdb
