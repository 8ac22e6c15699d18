#include "data/sources.h"

#include "automation/conversions.h"
#include "automation/operators.h"
#include "automation/text.h"
#include "data/column_list.h"
#include "data/filter_values.h"
#include "engine/grid_state.h"
#include "engine/report.h"

#include <algorithm>
#include <utility>

namespace tabrixdb {

namespace {

// Opens a source on the connection of that name and makes its fields.
void open(DbSource& source, Pro& pro, const std::string& sql, std::string_view connection_id,
          const SourceOptions& options) {
    source.connection = pro.connections->get<platform::Connection>(connection_id);
    source.records().open_query(sql, source.dynamic_values, *source.connection,
                                static_cast<platform::CursorType>(options.cursor_type),
                                static_cast<platform::LockType>(options.lock_type), options.options);
    source.make_fields();
}

// One of the column's extremes, by a query of its own; 0 when the column holds nothing.
std::int32_t extreme(platform::Connection& connection, std::string_view function, std::string_view column,
                     std::string_view table) {
    const Ref<platform::Recordset> result = platform::Host::current().create_recordset();
    // The column name is put between brackets as it is, deliberately without escaping.
    result->open_query("select " + std::string(function) + "([" + std::string(column) + "]) as " +
                           std::string(function) + "Value from " + std::string(table),
                       {}, connection, platform::CursorType::ForwardOnly, platform::LockType::ReadOnly, -1);
    const Variant value = result->eof() ? Variant::null() : result->value(0);
    result->close();
    return value.is_null() ? 0 : to_long(value);
}

// The bounds of every numeric column, between which bar graphs are scaled.
void find_extremes(const DbSource& source, std::string_view sql) {
    const std::string table = table_name(sql);
    for (const platform::Column& column : source.records().columns()) {
        if (platform::type_class(column.type) != platform::TypeClass::Number)
            continue;
        DbField& field = source.field_of(column.name);
        field.min = extreme(*source.connection, "Min", column.name, table);
        field.max = extreme(*source.connection, "Max", column.name, table);
    }
}

// Whether the filter form's "display" flag equals False; a flag that was never set does.
bool filter_form_hidden(const std::string& id) {
    return compare(session().value(id + "_filterdisplay"), Variant(false)) == Order::Equal;
}

// What the page has left in the session for one column of a dynamic source.
void take_settings(DbField& field, const GridState& settings) {
    field.content = settings.text("_Content");
    field.set_view(FormMode::Edit, settings.text("_ViewEdit"));
    field.set_view(FormMode::Add, settings.text("_ViewAdd"));
    field.set_view(FormMode::Filter, settings.text("_ViewFilter"));
}

// Takes up a filter, and puts its form away where the user had asked for it.
void keep_filter(const std::string& id, const std::string& expression) {
    session().set_value(id + "_filterstr", expression);
    if (filter_form_hidden(id))
        session().set_value(id + "_showfilter", "");
}

// Whether all columns that a filter names may be searched by, as far as it is known yet.
bool may_filter(const Pro& pro, const DbSource& source, const std::string& id) {
    const std::string form = GridState(session(), id).text(kFormColumns);
    return std::ranges::all_of(
        source.records().columns_in_filter(source.posted_filter), [&](const std::string& column) {
            return lists_column(form, column) || lists_column(pro.filter_columns, column);
        });
}

void apply_filter(const DbSource& source, const std::string& id) {
    const std::string expression = GridState(session(), id).text("_filterstr");
    if (expression.empty() || page_ended())
        return;
    guard(
        "CreateSource", [&] { source.records().set_filter(expression); },
        post_button(id, "filter_source_clear", "", "Show all records"));
}

// The source's command and the filter that it leaves.
void filter(const Pro& pro, DbSource& source, const std::string& id) {
    const std::string command = read_command_word(request(), id);
    if (command == "filter_source") {
        source.posted_filter = filter_form_values(source);
        if (source.posted_filter.empty() || may_filter(pro, source, id))
            return take_posted_filter(source, id);
    } else if (command == "filter_source_clear") {
        keep_filter(id, "");
    }
    apply_filter(source, id);
}

} // namespace

void create_source(Pro& pro, const std::string& id, const std::string& sql, const std::string& connection_id,
                   const SourceOptions& options) {
    const auto source = make_ref<DbSource>();
    source->recordset->set_cursor_location(static_cast<platform::CursorLocation>(options.cursor_location));
    open(*source, pro, sql, connection_id, options);
    if (pro.bar_graph)
        find_extremes(*source, sql);
    pro.sources->add(source, id);
    filter(pro, *source, id);
}

void take_posted_filter(DbSource& source, const std::string& id) {
    keep_filter(id, std::exchange(source.posted_filter, {}));
    apply_filter(source, id);
}

void create_dynamic_source(Pro& pro, const std::string& id, const std::string& sql,
                           const std::string& connection_id, const SourceOptions& options) {
    const auto source = make_ref<DbSource>();
    source->dynamic = true;
    source->dynamic_sql = sql;
    source->dynamic_connection_id = connection_id;
    source->dynamic_cursor_type = options.cursor_type;
    source->dynamic_lock_type = options.lock_type;
    pro.sources->add(source, id);
}

void open_dynamic_source(Pro& pro, const std::string& id) {
    guard("Open Dynamic Source", [&] {
        const Ref<DbSource> source = pro.sources->get<DbSource>(id);
        source->records().set_cursor_location(platform::CursorLocation::Client);
        open(*source, pro, source->dynamic_sql, source->dynamic_connection_id,
             {.cursor_type = source->dynamic_cursor_type, .lock_type = source->dynamic_lock_type});
        source->dynamic_source_open = true;
        for (const platform::Column& column : source->records().columns())
            take_settings(source->field_of(column.name), GridState(session(), id + "_" + column.name));
    });
}

void close_dynamic_source(Pro& pro, const std::string& id) {
    guard("Close Dynamic Source", [&] {
        const Ref<DbSource> source = pro.sources->get<DbSource>(id);
        for (std::int32_t i = source->fields->count(); i >= 1; --i)
            source->fields->remove(i);
        source->records().close();
        source->dynamic_source_open = false;
    });
}

std::string table_name(std::string_view sql) {
    const std::string query = upper(sql);
    const std::size_t from = query.find("FROM"); // deliberately also inside a longer word
    if (from == std::string::npos)
        return query;
    const std::string rest = query.substr(std::min(from + 5, query.size()));
    return rest.substr(0, rest.find(' '));
}

} // namespace tabrixdb
