#pragma once

#include "asp/site.h"
#include "server/address_ranges.h"
#include "server/router.h"

#include <cstdint>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

namespace tabrixdb::server {

// A database that is made from a script of SQL when its file is missing; both relative to the site.
struct DatabaseSetting {
    std::string file;
    std::string script;
};

// What tabrixdb.toml says, and the defaults of docs/settings.md.
struct Settings {
    std::string host = "127.0.0.1";
    std::uint16_t port = 8080;      // 0: any free one
    unsigned workers = 0;           // threads that run pages; 0: one a processor, four at least
    std::vector<std::string> hosts; // the names that the site answers to, without a port; none: to any
    AddressRanges trusted_proxies;  // whose word about the visitor is believed

    std::size_t body_bytes = std::size_t{8} * 1024 * 1024;
    std::size_t header_bytes = std::size_t{64} * 1024;
    unsigned idle_seconds = 60;
    unsigned request_seconds = 30;
    unsigned connections = 1000;

    bool same_origin_posts = true;
    std::vector<std::string> allowed_origins; // "https://other.example", may post all the same
    bool serve_templates = false;             // send HTML files with the marks of a template

    RouteSettings routes = {.default_pages = {"default.asp", "default.htm", "default.html", "index.asp",
                                              "index.htm", "index.html"},
                            .upload_folders = {"/uploads/"}};
    std::vector<DatabaseSetting> databases;
    asp::PageSettings pages;
};

// A mistake in the settings file; its text names the file, the place and the setting.
class SettingsError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

inline constexpr const char* kSettingsFile = "tabrixdb.toml";

// The settings of a site; the defaults when it has no file of them. Raises SettingsError.
Settings read_settings(const std::filesystem::path& site);
// The same of a file's text; `name` stands in messages.
Settings parse_settings(std::string_view text, const std::string& name);

} // namespace tabrixdb::server
