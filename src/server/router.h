#pragma once

#include "asp/site_paths.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tabrixdb::server {

// What an address leads to.
struct Route {
    enum class Kind {
        Page,     // an .asp page
        File,     // a file, sent as it is
        Redirect, // a folder that was named without its slash
        Refused,  // nothing; `status` says why
    };

    Kind kind = Kind::Refused;
    int status = 404;
    std::string path;      // decoded, as the client spelt it; with the default page's name
    std::string query;     // raw
    std::string site_path; // in the real spelling
    std::string location;  // of a Redirect
    asp::SitePaths::Found found;
    std::string_view content_type; // of a File
    bool uploaded = false;         // a File that a visitor may have brought
    bool own = false;              // a File of one visitor's
};

struct RouteSettings {
    std::vector<std::string> default_pages;  // tried, in order, when an address names a folder
    std::vector<std::string> upload_folders; // "/uploads/": what lies below is never run as a page
};

// Finds what a request's target names. 400 for one that cannot be read; 404 for what is not there, what
// leads out of the site, and what is never served: hidden files, types that are not known, pages among the
// files that visitors have uploaded.
// `own_file`: the physical path of the file that the client has of its own at an address in the folder of
// temporary files; empty when it has none.
using OwnFileFinder = std::function<std::string(std::string_view address)>;
Route route(const asp::SitePaths& paths, std::string_view target, const RouteSettings& settings,
            const OwnFileFinder& own_file);

} // namespace tabrixdb::server
