#include "server/http_server.h"

#include "asp/page.h"
#include "server/content_types.h"
#include "server/deadlines.h"
#include "server/host_names.h"
#include "server/listener.h"
#include "server/origin.h"
#include "server/page_jobs.h"
#include "server/proxies.h"
#include "server/router.h"
#include "server/static_file.h"
#include "server/template_files.h"

#include <algorithm>
#include <atomic>
#include <charconv>
#include <condition_variable>
#include <cstring>
#include <optional>
#include <system_error>
#include <thread>

#include <fcntl.h>
#include <microhttpd.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tabrixdb::server {

namespace {

// Bodies held in memory at once, of all connections together; more is answered with 503.
constexpr std::size_t kMaxBodies = std::size_t{256} * 1024 * 1024;
// Room for the answer's head in the memory of a connection, beside the request's.
constexpr std::size_t kAnswerHeadBytes = std::size_t{32} * 1024;
// How long the last answers may take to be sent once the server stops.
constexpr std::chrono::seconds kSendSeconds{2};

// The ports of http and https, when an address gives none.
constexpr std::uint16_t kPlainPort = 80, kSecurePort = 443;

constexpr std::string_view kReadMethods = "GET, HEAD, OPTIONS";
constexpr std::string_view kPageMethods = "GET, HEAD, POST, OPTIONS";

bool is_client_there(int socket) {
    pollfd wanted{.fd = socket, .events = POLLRDHUP, .revents = 0};
    return poll(&wanted, 1, 0) == 0 || !(wanted.revents & (POLLRDHUP | POLLHUP | POLLERR));
}

// A body whose end two servers in a row could see at different places, so that one of them would take its
// rest for a request of somebody else.
bool has_doubtful_length(const asp::Headers& headers) {
    int lengths = 0, codings = 0;
    for (const asp::Header& header : headers) {
        lengths += equal_ignore_case(header.name, "Content-Length");
        if (equal_ignore_case(header.name, "Transfer-Encoding"))
            codings += equal_ignore_case(header.value, "chunked") ? 1 : 2;
    }
    return lengths + codings > 1;
}

using ResponsePointer = std::unique_ptr<MHD_Response, decltype(&MHD_destroy_response)>;

// The library takes the body over without copying it.
ResponsePointer response_of_text(std::string body) {
    auto* held = new std::string(std::move(body));
    const auto free_text = [](void* text) { delete static_cast<std::string*>(text); };
    return {
        MHD_create_response_from_buffer_with_free_callback_cls(held->size(), held->data(), free_text, held),
        MHD_destroy_response};
}

void add_headers(MHD_Response& response, const asp::Headers& headers) {
    for (const asp::Header& header : headers)
        MHD_add_response_header(&response, header.name.c_str(), header.value.c_str());
}

} // namespace

class HttpServer::State {
public:
    State(asp::Site& site, const Settings& settings);

    ~State() { stop(kGrace); }

    void stop(std::chrono::seconds grace);

    const Settings settings;
    Listener listener;

private:
    // A connection, from its start to its end.
    struct Client {
        Deadlines::Connection* deadline;
        std::string target; // of the request that is arriving, as the client wrote it
    };

    // One request, from its head to the end of its answer.
    struct Exchange {
        Exchange(State& server_state, std::string request_target)
            : server(server_state),
              target(std::move(request_target)) {}

        ~Exchange() { server.body_bytes_ -= body_bytes; }

        State& server;
        std::string target; // as the client wrote it
        int refused = 0;    // the status that says why it is; 0: it is not
        std::size_t body_bytes = 0;
        Route route;
        asp::HttpRequest request;
        std::optional<asp::HttpResponse> answer;
    };

    // --- The library's callbacks
    static void* on_target(void* state, const char* uri, MHD_Connection* connection);
    static MHD_Result on_request(void* state, MHD_Connection* connection, const char* url, const char* method,
                                 const char* version, const char* data, std::size_t* size, void** exchange);
    static void on_completed(void* state, MHD_Connection* connection, void** exchange,
                             MHD_RequestTerminationCode reason);
    static void on_connection(void* state, MHD_Connection* connection, void** context,
                              MHD_ConnectionNotificationCode code);

    static Client& client_of(MHD_Connection* connection);
    Exchange* new_exchange(Client& client);
    static int socket_of(MHD_Connection* connection);

    MHD_Result begin(Exchange& exchange, MHD_Connection* connection, const char* method, const char* version);
    void describe_connection(Exchange& exchange, MHD_Connection* connection) const;
    void believe_proxies(asp::HttpRequest& request) const;
    int refusal(const Exchange& exchange, MHD_Connection* connection) const;
    std::string own_file(const asp::Headers& headers, std::string_view address);
    void take_body(Exchange& exchange, const char* data, std::size_t size);
    MHD_Result answer(Exchange& exchange, MHD_Connection* connection);
    MHD_Result run_page(Exchange& exchange, MHD_Connection* connection);
    MHD_Result send_file(const Exchange& exchange, MHD_Connection* connection);
    static MHD_Result send_refusal(const Exchange& exchange, MHD_Connection* connection);
    static MHD_Result send(MHD_Connection* connection, asp::HttpResponse response);
    static MHD_Result send_status(MHD_Connection* connection, int status, asp::Headers headers = {});

    void keep_house(const std::stop_token& stop);

    asp::Site& site_;
    Deadlines deadlines_;
    std::atomic<std::size_t> body_bytes_ = 0;
    std::mutex mutex_;
    std::condition_variable_any changed_;
    std::size_t exchanges_ = 0;
    TemplateFiles templates_; // asked by the library's thread only
    PageJobs jobs_;
    MHD_Daemon* daemon_ = nullptr;
    std::jthread housekeeper_;
};

HttpServer::State::State(asp::Site& site, const Settings& server_settings)
    : settings(server_settings),
      listener(settings.host, settings.port),
      site_(site),
      deadlines_(std::chrono::seconds(settings.idle_seconds), std::chrono::seconds(settings.request_seconds)),
      jobs_(site, settings.workers) {
    const auto no_log = [](void*, const char*, va_list) {};
    // Addresses are decoded by the router, once.
    const auto no_decoding = [](void*, MHD_Connection*, char* text) { return std::strlen(text); };
    // One address may have half of all connections: a proxy in front needs many, and still others get in.
    const unsigned per_address = std::max(1U, settings.connections / 2);
    daemon_ = MHD_start_daemon(
        MHD_USE_EPOLL_INTERNAL_THREAD | MHD_ALLOW_SUSPEND_RESUME | MHD_USE_ERROR_LOG, 0, nullptr, nullptr,
        on_request, this, MHD_OPTION_EXTERNAL_LOGGER, +no_log, nullptr, MHD_OPTION_LISTEN_SOCKET,
        listener.socket(), MHD_OPTION_STRICT_FOR_CLIENT, 1, MHD_OPTION_CONNECTION_MEMORY_LIMIT,
        settings.header_bytes + kAnswerHeadBytes, MHD_OPTION_CONNECTION_LIMIT, settings.connections,
        MHD_OPTION_PER_IP_CONNECTION_LIMIT, per_address, MHD_OPTION_CONNECTION_TIMEOUT, settings.idle_seconds,
        MHD_OPTION_URI_LOG_CALLBACK, on_target, this, MHD_OPTION_NOTIFY_COMPLETED, on_completed, this,
        MHD_OPTION_NOTIFY_CONNECTION, on_connection, this, MHD_OPTION_UNESCAPE_CALLBACK, +no_decoding,
        nullptr, MHD_OPTION_END);
    if (!daemon_)
        throw std::system_error(errno, std::generic_category(), "cannot start the HTTP server");
    housekeeper_ = std::jthread([this](const std::stop_token& stop) { keep_house(stop); });
}

void HttpServer::State::stop(std::chrono::seconds grace) {
    if (!daemon_)
        return;
    housekeeper_.request_stop();
    housekeeper_.join();
    MHD_quiesce_daemon(daemon_);
    listener.close();
    jobs_.stop(grace);
    {
        std::unique_lock lock(mutex_);
        changed_.wait_for(lock, kSendSeconds, [this] { return exchanges_ == 0; });
    }
    MHD_stop_daemon(daemon_);
    daemon_ = nullptr;
}

void HttpServer::State::keep_house(const std::stop_token& stop) {
    constexpr std::chrono::seconds kEvery{1};
    std::unique_lock lock(mutex_);
    while (!changed_.wait_for(lock, stop, kEvery, [&] { return stop.stop_requested(); })) {
        lock.unlock();
        deadlines_.sweep(Deadlines::Clock::now());
        site_.sessions.sweep(asp::Clock::now());
        lock.lock();
    }
}

// --- Callbacks -------------------------------------------------------------------------------------

int HttpServer::State::socket_of(MHD_Connection* connection) {
    return MHD_get_connection_info(connection, MHD_CONNECTION_INFO_CONNECTION_FD)->connect_fd;
}

HttpServer::State::Client& HttpServer::State::client_of(MHD_Connection* connection) {
    return *static_cast<Client*>(
        MHD_get_connection_info(connection, MHD_CONNECTION_INFO_SOCKET_CONTEXT)->socket_context);
}

void HttpServer::State::on_connection(void* state, MHD_Connection* connection, void** context,
                                      MHD_ConnectionNotificationCode code) {
    Deadlines& deadlines = static_cast<State*>(state)->deadlines_;
    if (code == MHD_CONNECTION_NOTIFY_STARTED) {
        *context = new Client{deadlines.add(socket_of(connection)), {}};
    } else {
        const std::unique_ptr<Client> client(static_cast<Client*>(*context));
        deadlines.remove(client->deadline);
    }
}

// The library calls this before it takes the query apart, into a record of each field in its memory for the
// connection; when that becomes too small it neither goes on nor answers. Pages have the query from `target`,
// so that the library's own copy, in a buffer that it writes into as well, is ended at its "?".
void* HttpServer::State::on_target(void* state, const char* uri, MHD_Connection* connection) {
    Client& client = client_of(connection);
    static_cast<State*>(state)->deadlines_.begin_request(client.deadline);
    client.target = uri;
    if (const std::size_t mark = client.target.find('?'); mark != std::string::npos)
        const_cast<char*>(uri)[mark + 1] = '\0';
    return nullptr;
}

HttpServer::State::Exchange* HttpServer::State::new_exchange(Client& client) {
    const std::lock_guard lock(mutex_);
    ++exchanges_;
    return new Exchange(*this, std::move(client.target));
}

void HttpServer::State::on_completed(void* state, MHD_Connection* connection, void** exchange,
                                     MHD_RequestTerminationCode) {
    State& self = *static_cast<State*>(state);
    self.deadlines_.await_next(client_of(connection).deadline);
    if (!*exchange)
        return;
    delete static_cast<Exchange*>(std::exchange(*exchange, nullptr));
    const std::lock_guard lock(self.mutex_);
    --self.exchanges_;
    self.changed_.notify_all();
}

// Called once when the head is there, then for each part of the body, then when all is there; and again
// when a page's answer is ready.
MHD_Result HttpServer::State::on_request(void* state, MHD_Connection* connection, const char*,
                                         const char* method, const char* version, const char* data,
                                         std::size_t* size, void** context) {
    State& self = *static_cast<State*>(state);
    if (!*context) {
        *context = self.new_exchange(client_of(connection));
        return self.begin(*static_cast<Exchange*>(*context), connection, method, version);
    }
    Exchange& exchange = *static_cast<Exchange*>(*context);
    if (*size > 0) {
        self.take_body(exchange, data, *size);
        *size = 0;
        return MHD_YES;
    }
    if (exchange.answer)
        return send(connection, std::move(*exchange.answer));
    self.deadlines_.end_request(client_of(connection).deadline);
    return self.answer(exchange, connection);
}

// --- The request -----------------------------------------------------------------------------------

MHD_Result HttpServer::State::begin(Exchange& exchange, MHD_Connection* connection, const char* method,
                                    const char* version) {
    asp::HttpRequest& request = exchange.request;
    request.method = method;
    request.protocol = version;
    MHD_get_connection_values(
        connection, MHD_HEADER_KIND,
        [](void* headers, MHD_ValueKind, const char* name, const char* value) {
            static_cast<asp::Headers*>(headers)->push_back({name, value ? value : ""});
            return MHD_YES;
        },
        &request.headers);
    exchange.route = route(site_.paths, exchange.target, settings.routes,
                           [&](std::string_view address) { return own_file(request.headers, address); });
    if (!has_bad_host(request.headers))
        describe_connection(exchange, connection);
    exchange.refused = refusal(exchange, connection);
    // An answer before the body ends the connection; without a body there is no need for that.
    const bool has_body = asp::find_header(request.headers, "Content-Length") ||
                          asp::find_header(request.headers, "Transfer-Encoding");
    return exchange.refused && has_body ? send_refusal(exchange, connection) : MHD_YES;
}

// The file that the client's session has at an address, or "".
std::string HttpServer::State::own_file(const asp::Headers& headers, std::string_view address) {
    const std::string id = session_id_of(headers);
    const std::shared_ptr<asp::SessionState> session = id.empty() ? nullptr : site_.sessions.find(id);
    const auto file = session ? session->exports.file(session.get(), address) : nullptr;
    return file ? file->path() : "";
}

MHD_Result HttpServer::State::send_refusal(const Exchange& exchange, MHD_Connection* connection) {
    if (exchange.refused != 405 && exchange.refused != 204)
        return send_status(connection, exchange.refused);
    const bool is_page = exchange.route.kind == Route::Kind::Page;
    return send_status(connection, exchange.refused,
                       {{"Allow", std::string(is_page ? kPageMethods : kReadMethods)}});
}

// Between whom the request went, and which host it is for.
void HttpServer::State::describe_connection(Exchange& exchange, MHD_Connection* connection) const {
    asp::HttpRequest& request = exchange.request;
    if (const auto authority = authority_of_target(exchange.target))
        set_host(request.headers, std::string(*authority)); // it counts where both are given
    if (exchange.route.kind != Route::Kind::Page && settings.trusted_proxies.empty())
        return; // nobody asks
    const int socket = socket_of(connection);
    request.remote_address = peer_address(socket);
    request.server_address = own_address(socket);
    request.server_port = listener.port();
    believe_proxies(request);
}

void HttpServer::State::believe_proxies(asp::HttpRequest& request) const {
    // A zone ("fe80::1%eth0") is this machine's own matter.
    const std::string_view peer = request.remote_address;
    const std::optional<IpAddress> address = parse_address(peer.substr(0, peer.find('%')));
    if (!address || !settings.trusted_proxies.contains(*address))
        return;
    Forwarded told = read_forwarded(request.headers, settings.trusted_proxies);
    if (!told.client.empty())
        request.remote_address = std::move(told.client);
    if (told.host.empty() && !told.secure)
        return;
    if (!told.host.empty())
        set_host(request.headers, std::move(told.host));
    request.secure = told.secure.value_or(false);
    request.server_port = request.secure ? kSecurePort : kPlainPort;
    if (const std::string* host = asp::find_header(request.headers, "Host")) {
        const std::string_view port = asp::split_host(*host).port;
        std::from_chars(port.data(), port.data() + port.size(), request.server_port);
    }
}

// Why a request is refused by its head; 0 when it is not.
int HttpServer::State::refusal(const Exchange& exchange, MHD_Connection* connection) const {
    const asp::HttpRequest& request = exchange.request;
    const MHD_ConnectionInfo* head =
        MHD_get_connection_info(connection, MHD_CONNECTION_INFO_REQUEST_HEADER_SIZE);
    if (head && head->header_size > settings.header_bytes)
        return 431;
    if (has_doubtful_length(request.headers) || has_bad_host(request.headers))
        return 400;
    if (!is_served(request.headers, settings.hosts))
        return 421;
    if (exchange.target == "*" && request.method == "OPTIONS")
        return 204;
    if (exchange.route.kind == Route::Kind::Refused)
        return exchange.route.status;
    const bool reads = request.method == "GET" || request.method == "HEAD";
    if (request.method == "OPTIONS")
        return 204;
    if (!reads && !(request.method == "POST" && exchange.route.kind == Route::Kind::Page))
        return 405;
    if (!reads && settings.same_origin_posts && !is_from_own_pages(request.headers, settings.allowed_origins))
        return 403;
    const std::string* length = asp::find_header(request.headers, "Content-Length");
    if (length && std::strtoull(length->c_str(), nullptr, 10) > settings.body_bytes)
        return 413;
    return 0;
}

void HttpServer::State::take_body(Exchange& exchange, const char* data, std::size_t size) {
    if (exchange.refused)
        return; // read to its end, so that the client hears why
    if (size > settings.body_bytes - std::min(exchange.body_bytes, settings.body_bytes)) {
        exchange.refused = 413; // it came without a length
        return;
    }
    exchange.body_bytes += size;
    if (body_bytes_.fetch_add(size) + size > kMaxBodies)
        exchange.refused = 503;
    else
        exchange.request.body.append(data, size);
}

// --- The answer ------------------------------------------------------------------------------------

MHD_Result HttpServer::State::answer(Exchange& exchange, MHD_Connection* connection) {
    if (exchange.refused)
        return send_refusal(exchange, connection);
    switch (exchange.route.kind) {
    case Route::Kind::Page:
        return run_page(exchange, connection);
    case Route::Kind::File:
        return send_file(exchange, connection);
    case Route::Kind::Redirect:
        return send_status(connection, 301, {{"Location", exchange.route.location}});
    case Route::Kind::Refused:
        break;
    }
    return send_status(connection, exchange.route.status);
}

MHD_Result HttpServer::State::run_page(Exchange& exchange, MHD_Connection* connection) {
    auto request = std::make_shared<asp::HttpRequest>(std::move(exchange.request));
    const int socket = socket_of(connection);
    request->path = std::move(exchange.route.path);
    request->query = std::move(exchange.route.query);
    request->client_connected = [socket] { return is_client_there(socket); };
    // Suspended first: the answer may be ready before this thread goes on.
    MHD_suspend_connection(connection);
    jobs_.run(std::move(request), std::move(exchange.route.site_path),
              [&exchange, connection](asp::HttpResponse response) {
                  exchange.answer = std::move(response);
                  MHD_resume_connection(connection);
              });
    return MHD_YES;
}

MHD_Result HttpServer::State::send_file(const Exchange& exchange, MHD_Connection* connection) {
    const std::string& path = exchange.route.found.physical;
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW);

    struct stat status {};

    const std::string_view type = exchange.route.content_type;
    if (file < 0 || fstat(file, &status) != 0 || !S_ISREG(status.st_mode) ||
        (is_html(type) && !settings.serve_templates &&
         templates_.is_template(path, file, asp::stamp_of(status)))) {
        if (file >= 0)
            close(file);
        return send_status(connection, 404);
    }
    // A page or script of a visitor's shall not run in the browser as one of the site's.
    const bool shown = !exchange.route.uploaded || is_passive(type);
    FileAnswer answer = answer_file(asp::stamp_of(status), shown ? type : kUnknownContent,
                                    exchange.request.headers, exchange.route.own);
    if (!shown)
        answer.headers.push_back({"Content-Disposition", "attachment"});
    ResponsePointer response(nullptr, MHD_destroy_response);
    if (answer.length > 0) {
        response.reset(MHD_create_response_from_fd_at_offset64(answer.length, file, answer.offset));
    } else {
        close(file);
        response = response_of_text({});
    }
    if (!response)
        return MHD_NO;
    add_headers(*response, answer.headers);
    return MHD_queue_response(connection, static_cast<unsigned>(answer.status), response.get());
}

MHD_Result HttpServer::State::send(MHD_Connection* connection, asp::HttpResponse answer) {
    if (answer.status == 204 || answer.status == 304)
        answer.body.clear();
    const ResponsePointer response = response_of_text(std::move(answer.body));
    if (!response)
        return MHD_NO;
    add_headers(*response, answer.headers);
    if (!asp::find_header(answer.headers, "X-Content-Type-Options"))
        MHD_add_response_header(response.get(), "X-Content-Type-Options", "nosniff");
    return MHD_queue_response(connection, static_cast<unsigned>(answer.status), response.get());
}

MHD_Result HttpServer::State::send_status(MHD_Connection* connection, int status, asp::Headers headers) {
    asp::HttpResponse response = asp::plain_message(status);
    std::ranges::move(headers, std::back_inserter(response.headers));
    return send(connection, std::move(response));
}

// --- HttpServer ------------------------------------------------------------------------------------

HttpServer::HttpServer(asp::Site& site, const Settings& settings)
    : state_(std::make_unique<State>(site, settings)) {}

HttpServer::~HttpServer() = default;

std::uint16_t HttpServer::port() const noexcept {
    return state_->listener.port();
}

std::string HttpServer::address() const {
    const std::string& host = state_->settings.host;
    const bool is_v6 = host.find(':') != std::string::npos;
    return "http://" + (is_v6 ? '[' + host + ']' : host) + ':' + std::to_string(port()) + '/';
}

void HttpServer::stop(std::chrono::seconds grace) {
    state_->stop(grace);
}

} // namespace tabrixdb::server
