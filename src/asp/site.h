#pragma once

#include "asp/application.h"
#include "asp/files.h"
#include "asp/own_files.h"
#include "asp/page_cache.h"
#include "asp/session_store.h"
#include "asp/site_paths.h"
#include "mail/post_office.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

namespace tabrixdb::asp {

// What a site's settings say about its pages; the defaults are those of docs/settings.md.
struct PageSettings {
    std::uint32_t code_page = kUtf8Default;
    std::int32_t script_seconds = 90;
    std::size_t recursion = 256;
    std::int32_t session_minutes = 20;
    // Of pages with a session: Cache-Control, and the sources of frame-ancestors; "": the header is left out.
    std::string session_cache = "private, no-cache";
    std::string frame_ancestors = "'self'";
    mail::Settings mail = {};
    bool tell_visitors = false;        // what has failed, in place of a reference to the log
    bool any_command = false;          // grids take every command that changes records, offered or not
    bool log_changes = false;          // who changed which record
    std::string log_user_key = "user"; // the session's key for the name of who is logged in
    ExportLimits exports = {};
    bool share_exports = false; // what a page exports is every visitor's, not only its own one's

    static constexpr std::uint32_t kUtf8Default = 65001;
};

// A folder of pages and all that its requests share. Used by many threads at once.
class Site {
public:
    // `log` is called from any thread, a line a call. Raises std::filesystem::filesystem_error when `root`
    // is no folder.
    Site(const std::filesystem::path& root, PageSettings page_settings,
         std::function<void(std::string_view)> log_line)
        : settings(page_settings),
          log(std::move(log_line)),
          paths(root),
          post_office(settings.mail, paths.root()),
          files(paths, settings.code_page),
          own_files(paths, files),
          pages(paths, settings.code_page),
          sessions(settings.session_minutes, SessionStore::kMaxSessions, settings.exports) {}

    const PageSettings settings;
    const std::function<void(std::string_view)> log;
    const SitePaths paths;
    mail::PostOffice post_office;
    SiteFiles files;
    OwnFiles own_files;
    PageCache pages;
    ApplicationState application;
    SessionStore sessions;
};

} // namespace tabrixdb::asp
