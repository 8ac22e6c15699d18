#include "ado/connection.h"

#include "ado/recordset.h"
#include "automation/member.h"

namespace tabrixdb::ado {

const ClassInfo& Connection::class_info() const {
    static const ClassInfo info(
        "Connection", "ADODB.Connection",
        {
            method<&Connection::open_from_page>(
                "Open", {{"ConnectionString", ""}, {"UserID", ""}, {"Password", ""}, {"Options", -1}}),
            method<&Connection::close>("Close"),
            method<&Connection::execute>("Execute",
                                         {"CommandText", {"RecordsAffected", Variant()}, {"Options", -1}}),
            method<&Connection::begin_transaction>("BeginTrans"),
            method<&Connection::commit_transaction>("CommitTrans"),
            method<&Connection::rollback_transaction>("RollbackTrans"),
            property<&Connection::state>("State"),
            property<&Connection::error_objects>("Errors"),
            property<&Connection::connection_string, &Connection::set_connection_string>("ConnectionString")
                .as_default(),
            property<&Connection::provider, &Connection::set_provider>("Provider"),
            property<&Connection::version>("Version"),
            property<&Connection::default_database>("DefaultDatabase"),
            property<&Connection::cursor_location, &Connection::set_cursor_location>("CursorLocation"),
            property<&Connection::command_timeout, &Connection::set_command_timeout>("CommandTimeout"),
            field<&Connection::connection_timeout_>("ConnectionTimeout"),
            field<&Connection::mode_>("Mode"),
            field<&Connection::isolation_level_>("IsolationLevel"),
            field<&Connection::attributes_>("Attributes"),
        });
    return info;
}

void Connection::open(std::string_view connection_string, std::string_view, std::string_view, std::int32_t) {
    if (state() == platform::kStateOpen)
        throw error(Code::ObjectOpen, kConnectionSource);
    open_errors_.clear();
    connection_string_ = connection_string;
    try {
        session_ = Session::open(connection_string_);
        session_->database().set_time_limit(command_timeout_);
    } catch (const Error& failure) {
        open_errors_.push_back({failure.number(), failure.description(), failure.source(), 0, {}});
        throw;
    }
}

void Connection::open_from_page(const std::string& connection_string, const std::string& user,
                                const std::string& password, std::int32_t options) {
    const std::string& text = connection_string.empty() ? connection_string_ : connection_string;
    open(std::string(text), user, password, options);
}

void Connection::close() {
    if (state() != platform::kStateOpen)
        throw error(Code::ObjectClosed, kConnectionSource);
    session_->close();
    session_.reset();
}

const std::shared_ptr<Session>& Connection::session() const {
    if (state() != platform::kStateOpen)
        throw error(Code::InvalidConnection, kConnectionSource);
    return session_;
}

Ref<Recordset> Connection::execute(const std::string& sql, Variant& records_affected, std::int32_t options) {
    if (state() != platform::kStateOpen)
        throw error(Code::ObjectClosed, kConnectionSource);
    auto recordset = make_ref<Recordset>();
    const std::int64_t changed = recordset->open_executed(*this, sql, options);
    records_affected = Variant(static_cast<std::int32_t>(changed));
    return recordset;
}

std::int32_t Connection::begin_transaction() {
    session()->begin_transaction();
    return 1; // the level of nesting; there is one
}

void Connection::commit_transaction() {
    session()->commit_transaction();
}

void Connection::rollback_transaction() {
    session()->rollback_transaction();
}

void Connection::after_commit(std::function<void()> action) {
    session()->after_commit(std::move(action));
}

std::vector<platform::DataError> Connection::errors() const {
    const auto& records = session_ && session_->is_open() ? session_->database().errors() : open_errors_;
    std::vector<platform::DataError> errors;
    for (const ErrorRecord& record : records)
        errors.push_back({record.number, record.description, record.source});
    return errors;
}

Ref<Errors> Connection::error_objects() {
    return make_ref<Errors>(session_ && session_->is_open() ? session_->database().errors() : open_errors_);
}

void Connection::set_connection_string(const std::string& text) {
    if (state() == platform::kStateOpen)
        throw error(Code::ObjectOpen, kConnectionSource);
    connection_string_ = text;
}

std::string Connection::provider() const {
    return std::string(ConnectionString(connection_string_).value("Provider"));
}

void Connection::set_provider(const std::string& name) {
    set_connection_string("Provider=" + name + ";" + connection_string_);
}

std::string Connection::default_database() const {
    return std::string(ConnectionString(connection_string_).value("Data Source", "Database"));
}

void Connection::set_cursor_location(std::int32_t location) {
    if (location != static_cast<std::int32_t>(platform::CursorLocation::Server) &&
        location != static_cast<std::int32_t>(platform::CursorLocation::Client))
        throw error(Code::InvalidArgument, kConnectionSource);
    cursor_location_ = location;
}

void Connection::set_command_timeout(std::int32_t seconds) {
    if (seconds < 0)
        throw error(Code::InvalidArgument, kConnectionSource);
    command_timeout_ = seconds;
    if (state() == platform::kStateOpen)
        session_->database().set_time_limit(seconds);
}

} // namespace tabrixdb::ado
