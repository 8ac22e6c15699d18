#include "server/settings.h"

#include "asp/code_page.h"
#include "asp/files.h"
#include "server/host_names.h"

#include <algorithm>
#include <limits>

#include <toml++/toml.h>

namespace tabrixdb::server {

namespace {

// One table of the file. Each setting that is read is known; finish() refuses the others, so that a
// misspelt setting does not pass for a set one.
class Section {
public:
    // `node`: nullptr when the file does not have it.
    Section(const toml::node* node, std::string name, const std::string& file_name)
        : file_name_(file_name),
          name_(std::move(name)) {
        if (!node)
            return;
        table_ = node->as_table();
        if (!table_)
            fail(*node, name_, "is a table");
    }

    template <class T>
    void number(std::string_view key, T& value, std::int64_t least, std::int64_t most) {
        if (const toml::node* node = find(key)) {
            const auto given = node->value_exact<std::int64_t>();
            if (!given || *given < least || *given > most)
                fail(*node, full(key),
                     "is a number from " + std::to_string(least) + " to " + std::to_string(most));
            value = static_cast<T>(*given);
        }
    }

    void text(std::string_view key, std::string& value) {
        if (const toml::node* node = find(key))
            value = text_of(*node, key);
    }

    void boolean(std::string_view key, bool& value) {
        if (const toml::node* node = find(key)) {
            const auto given = node->value_exact<bool>();
            if (!given)
                fail(*node, full(key), "is true or false");
            value = *given;
        }
    }

    void texts(std::string_view key, std::vector<std::string>& values) {
        const toml::node* node = find(key);
        if (!node)
            return;
        if (!node->is_array())
            fail(*node, full(key), "is a list of texts");
        values.clear();
        for (const toml::node& item : *node->as_array())
            values.push_back(text_of(item, key));
    }

    void finish() const {
        if (!table_)
            return;
        for (const auto& [key, node] : *table_)
            if (std::ranges::find(known_, std::string(key.str())) == known_.end())
                fail(node, full(key.str()), "is no setting");
    }

    [[noreturn]] void fail(const toml::node& node, const std::string& what, const std::string& why) const {
        throw SettingsError(file_name_ + ", line " + std::to_string(node.source().begin.line) + ": " + what +
                            ' ' + why + '.');
    }

private:
    const toml::node* find(std::string_view key) {
        known_.emplace_back(key);
        return table_ ? table_->get(key) : nullptr;
    }

    std::string text_of(const toml::node& node, std::string_view key) const {
        const auto given = node.value_exact<std::string>();
        if (!given)
            fail(node, full(key), "is a text");
        return *given;
    }

    std::string full(std::string_view key) const { return name_ + '.' + std::string(key); }

    const std::string& file_name_;
    std::string name_;
    const toml::table* table_ = nullptr;
    std::vector<std::string> known_;
};

constexpr std::int64_t kDay = 24 * 60 * 60;

void read_databases(const toml::table& file, const std::string& name, Settings& settings) {
    const toml::node* node = file.get("database");
    if (!node)
        return;
    const toml::array* entries = node->as_array();
    for (std::size_t i = 0; entries && i < entries->size(); ++i) {
        const toml::table* table = entries->get(i)->as_table();
        if (!table)
            break;
        Section section(table, "database", name);
        DatabaseSetting database;
        section.text("file", database.file);
        section.text("script", database.script);
        section.finish();
        if (database.file.empty() || database.script.empty())
            section.fail(*table, "database", "has a file and a script");
        settings.databases.push_back(std::move(database));
    }
    if (!entries || settings.databases.size() != entries->size())
        throw SettingsError(name + ", line " + std::to_string(node->source().begin.line) +
                            ": a database stands in a table of its own, [[database]].");
}

void check_hosts(std::vector<std::string>& hosts, const std::string& name) {
    for (std::string& host : hosts) {
        if (!is_host(host))
            throw SettingsError(name + ": server.hosts are names such as \"shop.example\".");
        host = asp::split_host(host).name;
    }
}

void add_ranges(AddressRanges& ranges, const std::vector<std::string>& texts, const std::string& name) {
    for (const std::string& text : texts)
        if (!ranges.add(text))
            throw SettingsError(name +
                                ": server.trusted_proxies are addresses such as \"127.0.0.1\" and ranges " +
                                "such as \"10.0.0.0/8\".");
}

void check_headers(const asp::PageSettings& pages, const std::string& name) {
    constexpr std::string_view kCaches[] = {"private, no-cache", "no-store", "private"};
    if (std::ranges::find(kCaches, pages.session_cache) == std::end(kCaches))
        throw SettingsError(name + ": security.cache is \"private, no-cache\", \"no-store\" or \"private\".");
    // A ";" would begin another rule, a "," another policy.
    if (std::ranges::any_of(pages.frame_ancestors,
                            [](char c) { return c < ' ' || c > '~' || c == ';' || c == ','; }))
        throw SettingsError(name +
                            ": security.frame_ancestors are sources with blanks between them, such as " +
                            "\"'self' https://other.example\".");
}

Settings read(const toml::table& file, const std::string& name) {
    Settings settings;
    std::vector<std::string> proxies;

    Section server(file.get("server"), "server", name);
    server.text("host", settings.host);
    server.number("port", settings.port, 0, 65535);
    server.number("workers", settings.workers, 0, 256);
    server.texts("hosts", settings.hosts);
    server.texts("trusted_proxies", proxies);
    server.finish();
    check_hosts(settings.hosts, name);
    add_ranges(settings.trusted_proxies, proxies, name);

    Section limits(file.get("limits"), "limits", name);
    limits.number("body_bytes", settings.body_bytes, 0, std::numeric_limits<std::int32_t>::max());
    limits.number("header_bytes", settings.header_bytes, 1024, 16 * 1024 * 1024);
    limits.number("script_seconds", settings.pages.script_seconds, 1, kDay);
    limits.number("idle_seconds", settings.idle_seconds, 1, kDay);
    limits.number("request_seconds", settings.request_seconds, 1, kDay);
    limits.number("connections", settings.connections, 1, 100'000);
    limits.number("blob_bytes", settings.pages.exports.blob_bytes, 0, std::int64_t{1} << 40);
    limits.number("download_bytes", settings.pages.exports.download_bytes, 0, std::int64_t{1} << 50);
    limits.number("recursion", settings.pages.recursion, 1, 1000);
    limits.finish();

    Section session(file.get("session"), "session", name);
    session.number("minutes", settings.pages.session_minutes, 1, asp::kMaxSessionMinutes);
    session.finish();

    Section security(file.get("security"), "security", name);
    security.boolean("same_origin_posts", settings.same_origin_posts);
    security.texts("allowed_origins", settings.allowed_origins);
    security.texts("upload_folders", settings.routes.upload_folders);
    security.text("cache", settings.pages.session_cache);
    security.text("frame_ancestors", settings.pages.frame_ancestors);
    security.boolean("serve_templates", settings.serve_templates);
    std::string commands = "offered";
    security.text("commands", commands);
    security.boolean("share_exports", settings.pages.share_exports);
    security.finish();
    settings.pages.any_command = commands == "any";
    if (!settings.pages.any_command && commands != "offered")
        throw SettingsError(name + ": security.commands is \"offered\" or \"any\".");
    for (std::string& folder : settings.routes.upload_folders) {
        if (!folder.starts_with('/'))
            throw SettingsError(name + ": security.upload_folders are addresses such as \"/uploads/\".");
        folder += folder.ends_with('/') ? "" : "/";
    }

    check_headers(settings.pages, name);

    Section site(file.get("site"), "site", name);
    site.number("code_page", settings.pages.code_page, 1, 65535);
    site.texts("default_pages", settings.routes.default_pages);
    site.finish();
    if (!asp::is_code_page(settings.pages.code_page))
        throw SettingsError(name + ": site.code_page " + std::to_string(settings.pages.code_page) +
                            " is not known.");

    mail::SmtpServer& smtp = settings.pages.mail.server;
    Section mail(file.get("mail"), "mail", name);
    mail.text("pickup", settings.pages.mail.pickup);
    mail.text("server", smtp.address);
    mail.text("user", smtp.user);
    mail.text("password", smtp.password);
    mail.boolean("require_tls", smtp.require_tls);
    mail.text("ca_file", smtp.ca_file);
    mail.number("errors_per_hour", settings.pages.mail.errors_per_hour, 0, 100'000);
    mail.finish();
    if (!smtp.address.empty() && !smtp.address.starts_with("smtp://") &&
        !smtp.address.starts_with("smtps://"))
        throw SettingsError(name + ": mail.server begins with smtp:// or smtps://.");

    std::string details = "log";
    Section errors(file.get("errors"), "errors", name);
    errors.text("details", details);
    errors.finish();
    if (details != "log" && details != "visitor")
        throw SettingsError(name + ": errors.details is \"log\" or \"visitor\".");
    settings.pages.tell_visitors = details == "visitor";

    Section log(file.get("log"), "log", name);
    log.boolean("changes", settings.pages.log_changes);
    log.text("user_key", settings.pages.log_user_key);
    log.finish();

    read_databases(file, name, settings);
    for (const auto& [key, node] : file) {
        constexpr std::string_view kSections[] = {"server", "limits", "session", "security", "site",
                                                  "mail",   "errors", "log",     "database"};
        if (std::ranges::find(kSections, key.str()) == std::end(kSections))
            throw SettingsError(name + ", line " + std::to_string(node.source().begin.line) + ": " +
                                std::string(key.str()) + " is no setting.");
    }
    return settings;
}

} // namespace

Settings parse_settings(std::string_view text, const std::string& name) {
    try {
        return read(toml::parse(text), name);
    } catch (const toml::parse_error& error) {
        throw SettingsError(name + ", line " + std::to_string(error.source().begin.line) + ": " +
                            std::string(error.description()));
    }
}

Settings read_settings(const std::filesystem::path& site) {
    const std::filesystem::path file = site / kSettingsFile;
    if (!std::filesystem::exists(file))
        return {};
    const std::optional<std::string> text = asp::read_bytes(file.string());
    if (!text)
        throw SettingsError(file.string() + " cannot be read.");
    return parse_settings(*text, file.string());
}

} // namespace tabrixdb::server
