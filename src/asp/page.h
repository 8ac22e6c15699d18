#pragma once

#include "asp/application.h"
#include "asp/code_page.h"
#include "asp/http.h"
#include "asp/page_cache.h"
#include "asp/page_fault.h"
#include "asp/request.h"
#include "asp/response.h"
#include "asp/server_object.h"
#include "asp/session.h"
#include "asp/site.h"
#include "automation/interrupt.h"
#include "platform/host.h"
#include "vbscript/machine.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tabrixdb::asp {

// Pages within pages (Server.Execute); each of them has a script machine of its own on the stack.
inline constexpr std::size_t kMaxExecuteDepth = 8;

// A response of the host's own: its status, and a page that says so.
HttpResponse plain_message(int status);

// One request of a page, from start to end on one thread: the page's intrinsic objects, and the host of what
// it creates. Lives for run(); objects that a session keeps longer are detached.
class Page final : public vbscript::Environment, public platform::Host, public SessionOwner {
public:
    // `site_path`: the page's plain virtual path in its real spelling. `lease`: the session of the client, if
    // it has one. `interrupt` may be stopped by other threads; it gets its deadline here.
    Page(Site& site, std::shared_ptr<const HttpRequest> request, std::string site_path, SessionLease lease,
         Interrupt& interrupt);
    ~Page() override;
    Page(const Page&) = delete;
    Page& operator=(const Page&) = delete;

    // Never throws: whatever goes wrong is in the response.
    HttpResponse run();

    // --- For the Server object
    std::string map_path(std::string_view virtual_path) const;

    std::int32_t script_timeout() const { return script_seconds_; }

    void set_script_timeout(std::int32_t seconds);
    // Runs another page with these objects. Its error is raised here.
    void execute(const std::string& path);
    // The same, and then this page ends.
    void transfer(const std::string& path);

    PageFault last_fault() const { return fault_; }

    // --- For the Session object
    SessionState* create_session() override;
    void renew_session(SessionState& session) override;

    // --- vbscript::Environment
    Ref<Object> create_object(std::string_view program_id) override;
    Ref<Object> new_object(std::string_view name) override;
    Object* global_object(std::string_view name) override;

    void write(const Variant& value) override { response_->write_value(value); }

    void write_literal(std::string_view text) override { response_->write(text); }

    // --- platform::Host
    const platform::PageObjects& page() override { return objects_; }

    Ref<platform::Connection> create_connection() override;
    Ref<platform::Recordset> create_recordset() override;
    Ref<platform::ScriptControl> create_script_control() override;

    platform::FileSystem& file_system() override { return site_.files; }

    std::unique_ptr<platform::FileWriter> create_own_file(std::string_view address) override;
    void send_mail(const platform::Mail& mail) override;
    bool may_mail_error(std::string_view error) override;

    bool permits_any_command() override { return site_.settings.any_command; }

    void log(std::string_view line) override { site_.log(line); }

    std::string log_failure(std::string_view failure, std::string_view reference) override;

    bool tells_visitors() override { return site_.settings.tell_visitors; }

    std::string without_disk_paths(std::string_view text) override;
    std::optional<std::string> logged_visitor() override;

    std::string bytes_of_text(std::string_view text) override {
        return encode_single_bytes(text, site_.settings.code_page);
    }

    std::string text_of_bytes(std::string_view bytes) override {
        return decode_single_bytes(bytes, site_.settings.code_page);
    }

private:
    void prepare(const Directives& directives);
    void run_program(const CompiledPage& page);
    HttpResponse finish();
    void fail(PageFault fault, int status);
    // `file`: where it is, which is said already; `reference`: "" makes one. Returns the reference.
    std::string log_failure_of(std::string_view file, std::string_view failure, std::string_view reference);
    SessionState* visitor(bool create);

    Site& site_;
    std::shared_ptr<const HttpRequest> request_data_;
    std::vector<std::string> paths_; // of the pages that run, each executed by the one before it
    SessionLease lease_;
    std::shared_ptr<SessionState> visitor_; // the client's session, also when the page itself has none
    Interrupt& interrupt_;
    const Interrupt::Clock::time_point started_ = Interrupt::Clock::now();
    std::int32_t script_seconds_;
    bool with_session_ = false;                     // EnableSessionState
    bool new_session_id_ = false;                   // which the client has to be told
    std::shared_ptr<SessionState> passing_session_; // of a page whose session was renewed while it waited
    PageFault fault_;
    const vbscript::Machine* machine_ = nullptr; // of the page at work

    Ref<Response> response_;
    Ref<Request> request_;
    Ref<Session> session_;
    Ref<Application> application_;
    Ref<Server> server_;
    platform::PageObjects objects_; // the same, as the engine sees them
};

} // namespace tabrixdb::asp
