#include "asp/page.h"

#include "ado/classes.h"
#include "ado/session.h"
#include "asp/asp_error.h"
#include "asp/classes.h"
#include "asp/code_page.h"
#include "asp/encoding.h"
#include "automation/locale.h"
#include "engine/report.h"
#include "mail/new_mail.h"
#include "scripting/classes.h"
#include "scripting/script_control.h"
#include "vbscript/library.h"

#include <new>
#include <utility>

namespace tabrixdb::asp {

HttpResponse plain_message(int status) {
    return {.status = status,
            .headers = {{"Content-Type", "text/html; charset=utf-8"}},
            .body = message_page(status, {})};
}

Page::Page(Site& site, std::shared_ptr<const HttpRequest> request, std::string site_path, SessionLease lease,
           Interrupt& interrupt)
    : site_(site),
      request_data_(std::move(request)),
      paths_{std::move(site_path)},
      lease_(std::move(lease)),
      visitor_(lease_.shared()),
      interrupt_(interrupt),
      script_seconds_(site.settings.script_seconds),
      response_(make_ref<Response>(interrupt, site.settings.code_page)),
      application_(make_ref<Application>(
          site.application, site.settings.share_exports
                                ? Application::Visitor()
                                : Application::Visitor([this](bool create) { return visitor(create); }))),
      server_(make_ref<Server>(*this)) {
    set_script_timeout(script_seconds_);
    response_->client_connected = request_data_->client_connected;
    response_->log = site.log;
}

Page::~Page() {
    response_->detach();
    server_->detach();
    application_->detach();
    if (session_)
        session_->detach();
}

// --- Running ---------------------------------------------------------------------------------------

HttpResponse Page::run() {
    const platform::HostScope host(*this);
    const Interrupt::Scope interrupt(interrupt_);
    const LocaleScope locale(*Locale::find(0U));
    vbscript::reset_random();
    try {
        const std::shared_ptr<const CompiledPage> page = site_.pages.get(paths_.front());
        if (!page)
            return plain_message(404);
        prepare(page->directives);
        run_program(*page);
    } catch (const vbscript::ScriptError& error) {
        // An error that came out of an executed page keeps the place where it arose.
        PageFault fault = fault_of(error);
        const bool same = fault_.number == fault.number && fault_.description == fault.description;
        fail(same ? fault_ : std::move(fault), 500);
    } catch (const PageError& error) {
        fail(fault_of(error), 500);
    } catch (const std::exception& error) { // no memory, no disk
        PageFault fault = fault_of(115, paths_.front());
        fault.description = error.what();
        fail(std::move(fault), 500);
    }
    ado::release_snapshots(); // what a session keeps shall hold no lock
    if (interrupt_.reason() == Interrupt::Reason::TimedOut)
        fail(fault_of(113, paths_.front()), 500);
    else if (interrupt_.reason() == Interrupt::Reason::ShutDown)
        return plain_message(503);
    return finish();
}

void Page::prepare(const Directives& directives) {
    with_session_ = directives.session;
    if (!with_session_)
        lease_.release();
    SessionState* const state = lease_.session();
    const std::uint32_t code_page = state && state->code_page
                                        ? *state->code_page
                                        : directives.code_page.value_or(site_.settings.code_page);
    response_->set_code_page(static_cast<std::int32_t>(code_page));
    if (const auto lcid = state && state->lcid ? state->lcid : directives.lcid)
        if (const Locale* locale = Locale::find(*lcid))
            set_current_locale(*locale);
    session_ = make_ref<Session>(state, with_session_ ? this : nullptr);
    request_ = make_ref<Request>(
        request_data_, RequestPlace{site_.paths.root() + paths_.front(), site_.paths.root(), code_page});
    objects_ = {response_, request_, session_, server_, application_};
}

void Page::run_program(const CompiledPage& page) {
    const scripting::ScriptControl::Run controls;
    vbscript::Machine machine(*this, interrupt_, {.recursion = site_.settings.recursion});

    struct AtWork {
        const vbscript::Machine*& machine;
        const vbscript::Machine* const outer;

        ~AtWork() { machine = outer; }
    } const at_work{machine_, std::exchange(machine_, &machine)};

    machine.run(page.program);
}

void Page::execute(const std::string& path) {
    const std::optional<std::string> plain = plain_path(path, folder_of(paths_.back()), true);
    const std::optional<SitePaths::Found> found = plain ? site_.paths.find(*plain) : std::nullopt;
    if (paths_.size() > kMaxExecuteDepth || !found || found->folder)
        throw asp_error(230, "Server object", path);
    std::string real = found->physical.substr(site_.paths.root().size());
    const std::shared_ptr<const CompiledPage> page = site_.pages.get(real);
    if (!page)
        throw asp_error(230, "Server object", path);
    const std::size_t depth = paths_.size();
    paths_.push_back(std::move(real));
    try {
        run_program(*page);
    } catch (const vbscript::ScriptError& error) {
        fault_ = fault_of(error);
        paths_.resize(depth);
        throw;
    }
    paths_.resize(depth);
}

void Page::transfer(const std::string& path) {
    execute(path);
    response_->end();
}

void Page::set_script_timeout(std::int32_t seconds) {
    script_seconds_ = seconds;
    interrupt_.set_deadline(started_ + std::chrono::seconds(seconds));
}

SessionState* Page::create_session() {
    if (visitor_) // made for what the page has exported
        return visitor_.get();
    if (lease_.overtaken()) {
        // The client has another ID by now, which a cookie with a third one would take from it.
        visitor_ = passing_session_ = site_.sessions.create_passing();
        return visitor_.get();
    }
    std::shared_ptr<SessionState> state = site_.sessions.create();
    state->turnstile.enter([] {}); // nobody else knows it yet
    lease_ = SessionLease(site_.sessions, state, state->id);
    new_session_id_ = true;
    visitor_ = state;
    return state.get();
}

SessionState* Page::visitor(bool create) {
    return create ? create_session() : visitor_.get();
}

void Page::renew_session(SessionState& session) {
    if (&session == passing_session_.get())
        return; // nobody has its ID
    site_.sessions.renew(session);
    new_session_id_ = true;
}

// --- Ending ----------------------------------------------------------------------------------------

void Page::fail(PageFault fault, int status) {
    fault_ = std::move(fault);
    if (!response_->flushed())
        response_->set_status_code(status);
    const std::string reference = log_failure_of(fault_.file, fault_.summary(), "");
    try {
        // What was written stays, as the message's surroundings; a picture or a table of text makes room.
        if (!response_->is_html())
            response_->reset();
        const std::string html = tells_visitors()
                                     ? without_disk_paths(fault_.html())
                                     : "<p>" + html_encode(visitors_message(reference)) + "</p>\r\n";
        response_->write(response_->empty() ? message_page(status, html) : html);
    } catch (const Error&) { // the response is full: its beginning is what there is
    }
}

HttpResponse Page::finish() {
    if (with_session_)
        response_->add_private_headers(site_.settings.session_cache, site_.settings.frame_ancestors);
    HttpResponse response = response_->take();
    if (const SessionState* session = lease_.session(); session && new_session_id_)
        response.headers.push_back({"Set-Cookie", std::string(kSessionCookie) + '=' + session->id +
                                                      "; path=/; HttpOnly; SameSite=Lax" +
                                                      (request_data_->secure ? "; Secure" : "")});
    return response;
}

// --- What the script and the engine ask for ----------------------------------------------------------

std::string Page::map_path(std::string_view virtual_path) const {
    return site_.paths.map(virtual_path, folder_of(paths_.back()));
}

Object* Page::global_object(std::string_view name) {
    if (equal_ignore_case(name, "Response"))
        return response_.get();
    if (equal_ignore_case(name, "Request"))
        return request_.get();
    if (equal_ignore_case(name, "Session"))
        return session_.get();
    if (equal_ignore_case(name, "Server"))
        return server_.get();
    if (equal_ignore_case(name, "Application"))
        return application_.get();
    return nullptr;
}

Ref<platform::Connection> Page::create_connection() {
    return make_ref<ado::Connection>();
}

Ref<platform::Recordset> Page::create_recordset() {
    return make_ref<ado::Recordset>();
}

Ref<platform::ScriptControl> Page::create_script_control() {
    return make_ref<scripting::ScriptControl>();
}

std::unique_ptr<platform::FileWriter> Page::create_own_file(std::string_view address) {
    if (site_.settings.share_exports)
        return nullptr;
    create_session();
    return site_.own_files.create(visitor_, address);
}

void Page::send_mail(const platform::Mail& mail) {
    const auto message = make_ref<mail::NewMail>(site_.post_office);
    message->from = mail.from;
    message->to = mail.to;
    message->subject = mail.subject;
    message->body = mail.body;
    message->body_format = message->mail_format = mail.html ? 0 : 1;
    message->post();
}

bool Page::may_mail_error(std::string_view error) {
    const bool admitted = site_.post_office.admit_error(paths_.front());
    if (!admitted)
        site_.log("An error was not mailed, there were too many within an hour: " + paths_.front() + " | " +
                  std::string(error));
    return admitted;
}

Ref<Object> Page::new_object(std::string_view name) {
    return equal_ignore_case(name, "RegExp") ? scripting::create_object("VBScript.RegExp") : Ref<Object>();
}

Ref<Object> Page::create_object(std::string_view program_id) {
    if (equal_ignore_case(program_id, mail::NewMail::kProgramId))
        return make_ref<mail::NewMail>(site_.post_office);
    Ref<Object> object = create_known_class(program_id);
    if (!object)
        throw Error(kErrorCannotCreate);
    return object;
}

} // namespace tabrixdb::asp
