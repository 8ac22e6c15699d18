#pragma once

#include "asp/site_paths.h"

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
    bool uploaded = false; // a File that a visitor may have brought
};

struct RouteSettings {
    std::vector<std::string> default_pages;  // tried, in order, when an address names a folder
    std::vector<std::string> upload_folders; // "/uploads/": what lies below is never run as a page
};

// Finds what a request's target names. 400 for one that cannot be read; 404 for what is not there, what
// leads out of the site, and what is never served: hidden files, types that are not known, pages among the
// files that visitors have uploaded.
Route route(const asp::SitePaths& paths, std::string_view target, const RouteSettings& settings);

} // namespace tabrixdb::server
