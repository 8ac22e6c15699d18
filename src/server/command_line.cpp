#include "server/command_line.h"

#include "asp/page.h"
#include "automation/log_text.h"
#include "server/databases.h"
#include "server/http_server.h"
#include "server/settings.h"

#include <algorithm>
#include <charconv>
#include <csignal>
#include <ctime>
#include <filesystem>
#include <mutex>
#include <optional>
#include <string>

#include <pthread.h>

namespace tabrixdb::server {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kVersion = "0.1.0";

constexpr std::string_view kHelp =
    R"(TabrixDb serves classic ASP pages that put database tables on the web.

  tabrixdb serve [SITE] [--host H] [--port N]
      Serves a folder of pages until it is interrupted. SITE is "." unless given. What
      the command line does not say is read from SITE/tabrixdb.toml. Port 0 takes a free one.

  tabrixdb run PAGE.asp [--site DIR] [--query Q] [--form BODY] [--include-headers]
      Runs one page and prints what it writes. The site is the nearest folder upward with a
      tabrixdb.toml, otherwise the page's own folder. --form posts BODY (a=1&b=2).

  tabrixdb --help
  tabrixdb --version

Exit code: 0 done, 1 the page failed or the site can't be served, 2 wrong use or settings.
)";

class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// The arguments after the command, taken from the front.
class Arguments {
public:
    explicit Arguments(std::span<const std::string_view> all) : rest_(all) {}

    std::optional<std::string_view> next() {
        if (rest_.empty())
            return std::nullopt;
        const std::string_view first = rest_.front();
        rest_ = rest_.subspan(1);
        return first;
    }

    std::string value_of(std::string_view option) {
        const std::optional<std::string_view> value = next();
        if (!value)
            throw UsageError(std::string(option) + " needs a value.");
        return std::string(*value);
    }

private:
    std::span<const std::string_view> rest_;
};

[[noreturn]] void fail_argument(std::string_view argument) {
    throw UsageError("'" + std::string(argument) + "' is not understood here.");
}

std::uint16_t port_number(const std::string& text) {
    std::uint16_t port = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), port);
    if (error != std::errc() || end != text.data() + text.size())
        throw UsageError("A port is a number from 0 to 65535.");
    return port;
}

void check_site(const fs::path& site) {
    if (!fs::is_directory(site))
        throw UsageError(site.string() + " is not a folder.");
}

// --- serve -----------------------------------------------------------------------------------------

struct ServeOptions {
    fs::path site = ".";
    std::optional<std::string> host;
    std::optional<std::uint16_t> port;
};

ServeOptions serve_options(Arguments arguments) {
    ServeOptions options;
    bool has_site = false;
    while (const std::optional<std::string_view> argument = arguments.next()) {
        if (*argument == "--host") {
            options.host = arguments.value_of(*argument);
        } else if (*argument == "--port") {
            options.port = port_number(arguments.value_of(*argument));
        } else if (argument->starts_with("-") || has_site) {
            fail_argument(*argument);
        } else {
            options.site = *argument;
            has_site = true;
        }
    }
    return options;
}

std::string time_now() {
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
    localtime_r(&now, &parts);
    char text[32];
    std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &parts);
    return text;
}

// The signals that end the program, held back in all threads from here on, so that only wait() takes them.
class StopSignals {
public:
    StopSignals() {
        sigemptyset(&set_);
        sigaddset(&set_, SIGINT);
        sigaddset(&set_, SIGTERM);
        pthread_sigmask(SIG_BLOCK, &set_, &before_);
        std::signal(SIGPIPE, SIG_IGN); // a client may go while its file is sent
    }

    ~StopSignals() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

    StopSignals(const StopSignals&) = delete;
    StopSignals& operator=(const StopSignals&) = delete;

    void wait() const {
        int signal = 0;
        sigwait(&set_, &signal);
    }

private:
    sigset_t set_, before_;
};

int serve(const ServeOptions& options, std::ostream& out, std::ostream& err) {
    check_site(options.site);
    Settings settings = read_settings(options.site);
    settings.host = options.host.value_or(settings.host);
    settings.port = options.port.value_or(settings.port);
    create_databases(options.site, settings.databases, err);

    std::mutex log_mutex;
    const auto log = [&](std::string_view line) {
        const std::lock_guard lock(log_mutex);
        err << time_now() << ' ' << one_line(line) << std::endl;
    };
    const StopSignals signals;
    asp::Site site(options.site, settings.pages, log);
    HttpServer server(site, settings);
    out << "Serving " << options.site.string() << " at " << server.address() << std::endl;
    signals.wait();
    server.stop();
    return kExitOk;
}

// --- run -------------------------------------------------------------------------------------------

struct RunOptions {
    fs::path page;
    std::optional<fs::path> site;
    std::string query;
    std::optional<std::string> form;
    bool include_headers = false;
};

RunOptions run_options(Arguments arguments) {
    RunOptions options;
    while (const std::optional<std::string_view> argument = arguments.next()) {
        if (*argument == "--site")
            options.site = arguments.value_of(*argument);
        else if (*argument == "--query")
            options.query = arguments.value_of(*argument);
        else if (*argument == "--form")
            options.form = arguments.value_of(*argument);
        else if (*argument == "--include-headers")
            options.include_headers = true;
        else if (argument->starts_with("-") || !options.page.empty())
            fail_argument(*argument);
        else
            options.page = *argument;
    }
    if (options.page.empty())
        throw UsageError("'run' needs a page.");
    return options;
}

fs::path site_of(const fs::path& page) {
    for (fs::path folder = page.parent_path();; folder = folder.parent_path()) {
        if (fs::exists(folder / kSettingsFile))
            return folder;
        if (folder == folder.root_path())
            return page.parent_path();
    }
}

void print(const asp::HttpResponse& response, bool include_headers, std::ostream& out) {
    if (include_headers) {
        out << "HTTP/1.1 " << response.status << ' ' << asp::reason_phrase(response.status) << "\r\n";
        for (const asp::Header& header : response.headers)
            out << header.name << ": " << header.value << "\r\n";
        out << "\r\n";
    }
    out << response.body << std::flush;
}

int run(const RunOptions& options, std::ostream& out, std::ostream& err) {
    std::error_code error;
    const fs::path page = fs::canonical(options.page, error);
    if (error || !fs::is_regular_file(page))
        throw UsageError("There is no page " + options.page.string() + '.');
    const fs::path folder = options.site ? *options.site : site_of(page);
    check_site(folder);
    Settings settings = read_settings(folder);
    settings.pages.tell_visitors = true; // who runs it may know
    settings.pages.share_exports = true; // nobody asks for it later: a download is a file of the site's
    create_databases(folder, settings.databases, err);

    asp::Site site(folder, settings.pages,
                   [&](std::string_view line) { err << one_line(line) << std::endl; });
    const std::string& root = site.paths.root();
    if (!page.string().starts_with(root + '/'))
        throw UsageError(options.page.string() + " does not lie in the site " + root + '.');
    asp::HttpRequest request;
    request.path = page.string().substr(root.size());
    request.query = options.query;
    request.headers = {{"Host", "localhost"}};
    if (options.form) {
        request.method = "POST";
        request.body = *options.form;
        request.headers.push_back({"Content-Type", "application/x-www-form-urlencoded"});
    }
    const std::string path = request.path;
    Interrupt interrupt;
    asp::Page running(site, std::make_shared<asp::HttpRequest>(std::move(request)), path, {}, interrupt);
    const asp::HttpResponse response = running.run();
    print(response, options.include_headers, out);
    return response.status < 400 ? kExitOk : kExitFailed;
}

int dispatch(std::span<const std::string_view> arguments, std::ostream& out, std::ostream& err) {
    if (arguments.empty())
        throw UsageError("A command is needed.");
    const std::string_view command = arguments.front();
    const Arguments rest(arguments.subspan(1));
    if (command == "serve")
        return serve(serve_options(rest), out, err);
    if (command == "run")
        return run(run_options(rest), out, err);
    if (command == "--help" || command == "-h") {
        out << kHelp;
        return kExitOk;
    }
    if (command == "--version") {
        out << "tabrixdb " << kVersion << '\n';
        return kExitOk;
    }
    throw UsageError("'" + std::string(command) + "' is no command.");
}

} // namespace

int run_command(std::span<const std::string_view> arguments, std::ostream& out, std::ostream& err) {
    try {
        return dispatch(arguments, out, err);
    } catch (const UsageError& error) {
        err << "tabrixdb: " << error.what() << "\nTry 'tabrixdb --help'.\n";
        return kExitUsage;
    } catch (const SettingsError& error) {
        err << "tabrixdb: " << error.what() << '\n';
        return kExitUsage;
    } catch (const std::exception& error) {
        err << "tabrixdb: " << error.what() << '\n';
        return kExitFailed;
    }
}

} // namespace tabrixdb::server
