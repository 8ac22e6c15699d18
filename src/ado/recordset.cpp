#include "ado/recordset.h"

#include "ado/expression.h"
#include "ado/sql_words.h"
#include "ado/values.h"
#include "automation/array.h"
#include "automation/conversions.h"
#include "automation/text.h"

#include <algorithm>

namespace tabrixdb::ado {

namespace {

// Bits of the Options argument.
constexpr std::int32_t kCommandTable = 2;
constexpr std::int32_t kCommandStoredProcedure = 4;
constexpr std::int32_t kCommandTableDirect = 512;

// Values of bookmark arguments that name a place.
constexpr std::int32_t kBookmarkFirst = 1, kBookmarkLast = 2;

// Whether the text can only be a table's name: one word, and none that is a statement by itself.
bool is_name(std::string_view text) {
    for (const std::string_view statement :
         {"begin", "commit", "end", "rollback", "vacuum", "analyze", "reindex"})
        if (equal_ignore_case(text, statement))
            return false;
    return !text.empty() && text.find_first_of(" \t\r\n\f\v(;,") == std::string_view::npos;
}

// Whether the text is one quoted name, `[order lines]`, also behind another: `"main"."orders"`.
bool is_quoted_name(std::string_view text) {
    SqlWords words(text);
    bool wants_name = true;
    std::size_t end = 0; // of a name in "", which goes on where a doubled sign stands in it
    for (std::string_view sign = words.next(); !sign.empty(); sign = words.next()) {
        const bool quoted = sign.size() >= 2 && sign.front() == '"' && sign.back() == '"';
        const bool is_name = quoted || (sign.front() == '[' && sign.back() == ']');
        const bool goes_on = quoted && end != 0 && words.start() == end;
        if (sign == "." ? wants_name : !is_name || (!wants_name && !goes_on))
            return false;
        wants_name = sign == ".";
        end = quoted ? words.end() : 0;
    }
    return !wants_name;
}

std::string command_text(std::string_view source, std::int32_t options) {
    if (options != -1 && (options & kCommandStoredProcedure))
        throw error(Code::FeatureNotAvailable, kRecordsetSource, "SQLite has no stored procedures.");
    const bool is_table =
        options == -1 ? is_name(source) : (options & (kCommandTable | kCommandTableDirect)) != 0;
    if (!is_table)
        return std::string(source);
    if (is_quoted_name(source))
        return "SELECT * FROM " + std::string(source);
    return "SELECT * FROM \"" + replace_all(source, "\"", "\"\"") + "\"";
}

} // namespace

Result& Recordset::result() const {
    if (!result_ || !result_->is_open())
        throw error(Code::ObjectClosed, kRecordsetSource);
    return *result_;
}

void Recordset::require_closed() const {
    if (state() == platform::kStateOpen)
        throw error(Code::ObjectOpen, kRecordsetSource);
}

void Recordset::set_cursor_location(platform::CursorLocation location) {
    require_closed();
    if (location != platform::CursorLocation::Server && location != platform::CursorLocation::Client)
        throw error(Code::InvalidArgument, kRecordsetSource);
    location_ = location;
    location_chosen_ = true;
}

void Recordset::set_source(std::string_view source) {
    require_closed();
    source_ = source;
}

void Recordset::open(std::string_view source, platform::Connection& connection, platform::CursorType cursor,
                     platform::LockType lock, std::int32_t options) {
    open_request(source, {.sql = command_text(source, options)}, connection, cursor, lock);
}

void Recordset::open_query(std::string_view source, const std::vector<Variant>& parameters,
                           platform::Connection& connection, platform::CursorType cursor,
                           platform::LockType lock, std::int32_t options) {
    RunRequest request{.sql = command_text(source, options), .is_own = true};
    for (const Variant& parameter : parameters)
        request.parameters.push_back(parameter_cell(parameter));
    open_request(source, std::move(request), connection, cursor, lock);
}

void Recordset::open_request(std::string_view source, RunRequest request, platform::Connection& connection,
                             platform::CursorType cursor, platform::LockType lock) {
    require_closed();
    auto* own = dynamic_cast<Connection*>(&connection);
    if (!own)
        throw error(Code::InvalidConnection, kRecordsetSource);
    connection_ = Ref<Connection>(own);
    if (!location_chosen_)
        location_ = static_cast<platform::CursorLocation>(own->cursor_location());
    if (cursor != platform::CursorType::Unspecified)
        cursor_ = cursor;
    if (lock != platform::LockType::Unspecified)
        lock_ = lock;
    source_ = source;
    start(own->session(), std::move(request));
}

std::int64_t Recordset::open_executed(Connection& connection, std::string_view text, std::int32_t options) {
    connection_ = Ref<Connection>(&connection);
    location_ = static_cast<platform::CursorLocation>(connection.cursor_location());
    source_ = text;
    return start(connection.session(), {.sql = command_text(text, options)});
}

std::int64_t Recordset::start(const std::shared_ptr<Session>& session, RunRequest request) {
    using platform::CursorType;
    using platform::LockType;
    const bool scrolls = location_ == platform::CursorLocation::Client || cursor_ != CursorType::ForwardOnly;
    opened_ = std::move(request);
    Execution execution = run(session, opened_, scrolls);
    filter_.clear();
    sort_.clear();
    fields_ = nullptr;
    result_ = nullptr;
    if (!execution.cursor)
        return execution.rows_changed;
    // What is given may differ from what was asked for, and the properties say so.
    cursor_ = execution.cursor->scrolls() ? CursorType::Static : CursorType::ForwardOnly;
    if (lock_ != LockType::ReadOnly)
        lock_ = LockType::Optimistic;
    result_ = make_ref<Result>(session, std::move(execution.cursor), lock_ != LockType::ReadOnly, opened_);
    result_->set_page_size(page_size_);
    return execution.rows_changed;
}

void Recordset::close() {
    result().close();
    result_ = nullptr;
    fields_ = nullptr;
}

void Recordset::set_page_size(std::int32_t rows) {
    if (result_)
        result_->set_page_size(rows);
    else if (rows < 1)
        throw error(Code::InvalidArgument, kRecordsetSource);
    page_size_ = rows;
}

void Recordset::set_filter(std::string_view expression) {
    result().set_filter(expression);
    filter_ = expression;
}

void Recordset::set_sort(std::string_view expression) {
    result().set_sort(expression);
    sort_ = expression;
}

// Those of the names that `parse` adds which are columns.
template <class Parse>
std::vector<std::string> Recordset::columns_in(const Parse& parse) {
    std::vector<std::string> names;
    try {
        parse([&](std::string_view name) {
            const auto known = std::ranges::find_if(columns(), [&](const platform::Column& column) {
                return equal_ignore_case(column.name, name);
            });
            if (known != columns().end())
                names.push_back(known->name);
        });
    } catch (const Error&) { // for who sets the expression
    }
    return names;
}

std::vector<std::string> Recordset::columns_in_filter(std::string_view expression) {
    return columns_in([&](const auto& add) {
        for (const auto& clauses : parse_filter(expression).alternatives)
            for (const Clause& clause : clauses)
                add(clause.name);
    });
}

std::vector<std::string> Recordset::columns_in_sort(std::string_view expression) {
    return columns_in([&](const auto& add) {
        for (const SortTerm& term : parse_sort(expression))
            add(term.name);
    });
}

std::string Recordset::get_string(std::int32_t rows, std::string_view column_delimiter,
                                  std::string_view row_delimiter, std::string_view null_text) {
    return result().get_string(rows, column_delimiter, row_delimiter, null_text);
}

// --- Members as pages call them ------------------------------------------------------------------------

void Recordset::open_from_page(const Variant& source, const Variant& connection, std::int32_t cursor,
                               std::int32_t lock, std::int32_t options) {
    require_closed();
    if (!connection.is_missing())
        set_active_connection(connection);
    if (!connection_)
        throw error(Code::InvalidConnection, kRecordsetSource);
    const std::string text = source.is_missing() ? source_ : to_text(source).str();
    open(text, *connection_, static_cast<platform::CursorType>(cursor), static_cast<platform::LockType>(lock),
         options);
}

void Recordset::set_active_connection(const Variant& connection) {
    require_closed();
    if (connection.is_object()) {
        auto* own = dynamic_cast<Connection*>(connection.object());
        if (!own && connection.object())
            throw error(Code::InvalidConnection, kRecordsetSource);
        connection_ = Ref<Connection>(own);
        return;
    }
    auto own = make_ref<Connection>();
    own->open(to_text(connection).view(), {}, {}, -1);
    connection_ = std::move(own);
}

void Recordset::set_cursor_location_from_page(std::int32_t location) {
    set_cursor_location(static_cast<platform::CursorLocation>(location));
}

void Recordset::set_cursor_type(std::int32_t cursor) {
    require_closed();
    if (cursor < -1 || cursor > 3)
        throw error(Code::InvalidArgument, kRecordsetSource);
    cursor_ = cursor == -1 ? platform::CursorType::ForwardOnly : static_cast<platform::CursorType>(cursor);
}

void Recordset::set_lock_type(std::int32_t lock) {
    require_closed();
    if (lock != -1 && (lock < 1 || lock > 4))
        throw error(Code::InvalidArgument, kRecordsetSource);
    lock_ = lock == -1 ? platform::LockType::ReadOnly : static_cast<platform::LockType>(lock);
}

void Recordset::requery_from_page(std::int32_t) {
    requery();
}

void Recordset::start_at(const Variant& start) {
    if (start.is_missing() || start.is_empty())
        return;
    if (start.is_string())
        return set_bookmark(start);
    const std::int32_t place = to_long(start);
    if (place == kBookmarkFirst)
        move_first();
    else if (place == kBookmarkLast)
        move_last();
}

void Recordset::move_from(std::int32_t records, const Variant& start) {
    start_at(start);
    move(records);
}

void Recordset::find_record(const std::string& criterion, std::int32_t skip, std::int32_t direction,
                            const Variant& start) {
    start_at(start);
    result().find(criterion, skip, direction == -1);
}

void Recordset::set_filter_from_page(const Variant& given) {
    const Variant filter = value_of(given);
    if (filter.is_string())
        return set_filter(filter.text().view());
    if (filter.is_array() || to_long(filter) != 0)
        throw error(Code::FeatureNotAvailable, kRecordsetSource,
                    "A filter is an expression, or adFilterNone.");
    set_filter({});
}

Ref<Fields> Recordset::fields() {
    if (!fields_) {
        result();
        fields_ = make_ref<Fields>(result_);
    }
    return fields_;
}

std::int32_t Recordset::status() const {
    switch (result().edit_mode()) {
    case Result::EditMode::Add:
        return 1;
    case Result::EditMode::InProgress:
        return 2;
    default:
        return 0;
    }
}

void Recordset::assign(const Variant& fields, const Variant& values) {
    const auto position = [this](const Variant& field) {
        return field.is_string() ? result().column(field.text().view()) : result().column(to_long(field));
    };
    if (!fields.is_array())
        return result().set_value(position(value_of(fields)), values);
    if (!values.is_array() || values.array()->size() != fields.array()->size())
        throw error(Code::InvalidArgument, kRecordsetSource, "There is not one value for each field.");
    for (std::size_t i = 0; i < fields.array()->size(); ++i)
        result().set_value(position(value_of(fields.array()->elements()[i])), values.array()->elements()[i]);
}

void Recordset::add_new_from_page(const Variant& fields, const Variant& values) {
    add_new();
    if (fields.is_missing())
        return;
    assign(fields, values);
    update();
}

void Recordset::update_from_page(const Variant& fields, const Variant& values) {
    if (!fields.is_missing())
        assign(fields, values);
    update();
}

void Recordset::remove_from_page(std::int32_t affected) {
    if (affected != 1)
        throw error(Code::InvalidArgument, kRecordsetSource, "Only the current record can be deleted.");
    remove();
}

Variant Recordset::get_rows(std::int32_t rows, const Variant& start, const Variant& fields) {
    start_at(start);
    std::vector<std::size_t> wanted;
    const auto add = [&](const Variant& given) {
        const Variant field = value_of(given);
        wanted.push_back(field.is_string() ? result().column(field.text().view())
                                           : result().column(to_long(field)));
    };
    if (fields.is_array()) {
        for (const Variant& field : fields.array()->elements())
            add(field);
    } else if (!fields.is_missing()) {
        add(fields);
    } else {
        for (std::size_t i = 0; i < columns().size(); ++i)
            wanted.push_back(i);
    }
    return result().get_rows(rows, wanted);
}

std::string Recordset::get_string_from_page(std::int32_t, std::int32_t rows, const std::string& columns,
                                            const std::string& ends, const std::string& null_text) {
    return get_string(rows, columns, ends, null_text);
}

Ref<Recordset> Recordset::clone(std::int32_t lock) {
    if (!result().scrolls())
        throw error(Code::FeatureNotAvailable, kRecordsetSource, "A forward-only cursor cannot be cloned.");
    auto copy = make_ref<Recordset>();
    copy->location_ = location_;
    copy->location_chosen_ = true;
    copy->page_size_ = page_size_;
    const bool reads_only = static_cast<platform::LockType>(lock) == platform::LockType::ReadOnly;
    copy->open_request(opened_.sql, opened_, *connection_, cursor_,
                       reads_only ? platform::LockType::ReadOnly : lock_);
    return copy;
}

bool Recordset::supports(std::int32_t options) const {
    constexpr std::int32_t kScrolling = 0x200 | 0x2000 | 0x4000; // back, bookmarks, positions
    constexpr std::int32_t kFind = 0x80000;
    constexpr std::int32_t kWriting = 0x1000400 | 0x1000800 | 0x1008000; // add, delete, update
    const std::int32_t able =
        kFind | (result().scrolls() ? kScrolling : 0) | (result().writable() ? kWriting : 0);
    return (able & options) == options;
}

std::int32_t Recordset::compare_bookmarks(const Variant& first, const Variant& second) {
    return result().compare_bookmarks(to_text(first).view(), to_text(second).view());
}

} // namespace tabrixdb::ado
