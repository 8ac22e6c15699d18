#pragma once

#include "ado/connection.h"
#include "ado/fields.h"
#include "ado/result.h"
#include "platform/data.h"

#include <string>
#include <string_view>
#include <vector>

namespace tabrixdb::ado {

// ADODB.Recordset: the settings with which a query is opened, and, while it is, its Result. A client-side
// cursor, and every other one than forward-only, is opened as a static one; the default is forward-only and
// read-only.
class Recordset final : public platform::Recordset {
public:
    const ClassInfo& class_info() const override;

    void set_cursor_location(platform::CursorLocation location) override;
    void open(std::string_view source, platform::Connection& connection, platform::CursorType cursor,
              platform::LockType lock, std::int32_t options) override;
    void open_query(std::string_view source, const std::vector<Variant>& parameters,
                    platform::Connection& connection, platform::CursorType cursor, platform::LockType lock,
                    std::int32_t options) override;
    // As Connection.Execute opens it: with the connection's cursor location, read-only; closed when the text
    // gives no rows. The rows that it has changed, -1: none did.
    std::int64_t open_executed(Connection& connection, std::string_view text, std::int32_t options);
    void close() override;

    std::int32_t state() const override {
        return result_ && result_->is_open() ? platform::kStateOpen : platform::kStateClosed;
    }

    void requery() override { result().requery(); }

    std::string source() const override { return source_; }

    void set_source(std::string_view source) override;

    const std::vector<platform::Column>& columns() const override { return result().columns(); }

    std::size_t column(std::string_view name) const override { return result().column(name); }

    Variant value(std::size_t field) override { return result().value(field); }

    void append_value(std::size_t field, std::string& out) override { result().append_value(field, out); }

    void set_value(std::size_t field, const Variant& value) override { result().set_value(field, value); }

    std::int32_t actual_size(std::size_t field) override { return result().actual_size(field); }

    Variant get_chunk(std::size_t field, std::int32_t size) override {
        return result().get_chunk(field, size);
    }

    void append_chunk(std::size_t field, const Variant& chunk) override {
        result().append_chunk(field, chunk);
    }

    void set_filter(std::string_view expression) override;
    void set_sort(std::string_view expression) override;
    std::vector<std::string> columns_in_filter(std::string_view expression) override;
    std::vector<std::string> columns_in_sort(std::string_view expression) override;

    std::int32_t page_size() const override { return page_size_; }

    void set_page_size(std::int32_t rows) override;

    std::int32_t page_count() override { return result().page_count(); }

    std::int32_t absolute_page() override { return result().absolute_page(); }

    void set_absolute_page(std::int32_t page) override { result().set_absolute_page(page); }

    std::int32_t absolute_position() override { return result().absolute_position(); }

    std::int32_t record_count() override { return result().record_count(); }

    bool bof() override { return result().bof(); }

    bool eof() override { return result().eof(); }

    void move(std::int32_t records) override { result().move(records); }

    void move_first() override { result().move_first(); }

    void move_next() override { result().move(1); }

    Variant bookmark() override { return result().bookmark(); }

    void set_bookmark(const Variant& bookmark) override { result().set_bookmark(bookmark); }

    void add_new() override { result().add_new(); }

    void update() override { result().update(); }

    void cancel_update() override { result().cancel_update(); }

    void remove() override { result().remove(); }

    std::string get_string(std::int32_t rows, std::string_view column_delimiter,
                           std::string_view row_delimiter, std::string_view null_text) override;

private:
    template <class Parse>
    std::vector<std::string> columns_in(const Parse& parse);
    // Error 3704 when closed.
    Result& result() const;
    void require_closed() const;
    // Opens the request for what Source is to say.
    void open_request(std::string_view source, RunRequest request, platform::Connection& connection,
                      platform::CursorType cursor, platform::LockType lock);
    std::int64_t start(const std::shared_ptr<Session>& session, RunRequest request);

    // --- Members as pages call them ----------------------------------------------------------------

    void open_from_page(const Variant& source, const Variant& connection, std::int32_t cursor,
                        std::int32_t lock, std::int32_t options);
    void requery_from_page(std::int32_t options);
    void move_from(std::int32_t records, const Variant& start);

    void move_previous() { result().move(-1); }

    void move_last() { result().move_last(); }

    void set_absolute_position(std::int32_t position) { result().set_absolute_position(position); }

    void find_record(const std::string& criterion, std::int32_t skip, std::int32_t direction,
                     const Variant& start);
    void start_at(const Variant& start);

    Variant filter() const { return filter_.empty() ? Variant(std::int32_t{0}) : Variant(filter_); }

    void set_filter_from_page(const Variant& filter);

    std::string sort() const { return sort_; }

    void set_sort_from_page(const std::string& expression) { set_sort(expression); }

    Ref<Fields> fields();

    Variant active_connection() const { return Variant(Ref<Object>(connection_.get())); }

    void set_active_connection(const Variant& connection);

    void set_source_from_page(const std::string& source) { set_source(source); }

    std::int32_t cursor_location() const { return static_cast<std::int32_t>(location_); }

    void set_cursor_location_from_page(std::int32_t location);

    std::int32_t cursor_type() const { return static_cast<std::int32_t>(cursor_); }

    void set_cursor_type(std::int32_t cursor);

    std::int32_t lock_type() const { return static_cast<std::int32_t>(lock_); }

    void set_lock_type(std::int32_t lock);

    std::int32_t edit_mode() const { return static_cast<std::int32_t>(result().edit_mode()); }

    std::int32_t status() const;
    void add_new_from_page(const Variant& fields, const Variant& values);
    void update_from_page(const Variant& fields, const Variant& values);
    void assign(const Variant& fields, const Variant& values);

    void remove_from_page(std::int32_t affected);
    Variant get_rows(std::int32_t rows, const Variant& start, const Variant& fields);
    std::string get_string_from_page(std::int32_t format, std::int32_t rows, const std::string& columns,
                                     const std::string& ends, const std::string& null_text);
    Ref<Recordset> clone(std::int32_t lock);
    bool supports(std::int32_t options) const;

    Variant next_recordset() { return Variant::nothing(); }

    std::int32_t compare_bookmarks(const Variant& first, const Variant& second);

    Ref<Connection> connection_;
    Ref<Result> result_;
    Ref<Fields> fields_; // of result_
    std::string source_;
    RunRequest opened_; // what was run for source_
    std::string filter_, sort_;
    platform::CursorLocation location_ = platform::CursorLocation::Server;
    platform::CursorType cursor_ = platform::CursorType::ForwardOnly;
    platform::LockType lock_ = platform::LockType::ReadOnly;
    bool location_chosen_ = false; // else the connection's counts
    std::int32_t page_size_ = 10;
    std::int32_t cache_size_ = 1; // kept for pages that set it
};

} // namespace tabrixdb::ado
