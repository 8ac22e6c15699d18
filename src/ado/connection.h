#pragma once

#include "ado/error_objects.h"
#include "ado/session.h"
#include "platform/data.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tabrixdb::ado {

class Recordset;

// ADODB.Connection. Holds a Session while it is open; recordsets share it and live on without the object.
class Connection final : public platform::Connection {
public:
    const ClassInfo& class_info() const override;

    void open(std::string_view connection_string, std::string_view user, std::string_view password,
              std::int32_t options) override;
    void close() override;

    std::int32_t state() const override {
        return session_ && session_->is_open() ? platform::kStateOpen : platform::kStateClosed;
    }

    std::int32_t begin_transaction() override;
    void commit_transaction() override;
    void rollback_transaction() override;
    void after_commit(std::function<void()> action) override;

    std::vector<platform::DataError> errors() const override;

    // Error 3709 when it is closed.
    const std::shared_ptr<Session>& session() const;

    std::int32_t cursor_location() const noexcept { return cursor_location_; }

private:
    void open_from_page(const std::string& connection_string, const std::string& user,
                        const std::string& password, std::int32_t options);
    Ref<Recordset> execute(const std::string& sql, Variant& records_affected, std::int32_t options);
    Ref<Errors> error_objects();

    std::string connection_string() const { return connection_string_; }

    void set_connection_string(const std::string& text);
    std::string provider() const;
    void set_provider(const std::string& name);

    std::string version() const { return "6.1"; }

    std::string default_database() const;
    void set_cursor_location(std::int32_t location); // Error 3001

    std::int32_t command_timeout() const { return command_timeout_; }

    void set_command_timeout(std::int32_t seconds);

    std::shared_ptr<Session> session_;
    std::string connection_string_;
    std::vector<ErrorRecord> open_errors_; // while there is no session to hold them
    std::int32_t cursor_location_ = static_cast<std::int32_t>(platform::CursorLocation::Server);
    std::int32_t command_timeout_ = 30;    // seconds; 0: no limit
    std::int32_t connection_timeout_ = 15; // kept for pages that set it; opening a file does not wait
    std::int32_t mode_ = 0;                // likewise: the connection string's Mode counts
    std::int32_t isolation_level_ = 4096;  // likewise
    std::int32_t attributes_ = 0;          // likewise
};

} // namespace tabrixdb::ado
