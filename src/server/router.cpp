#include "server/router.h"

#include "asp/encoding.h"
#include "automation/text.h"
#include "server/content_types.h"

#include <algorithm>
#include <cctype>

namespace tabrixdb::server {

namespace {

Route refused(int status) {
    Route route;
    route.status = status;
    return route;
}

// "/path?query" of a target, which proxies give as "http://host/path?query".
std::string_view without_authority(std::string_view target) {
    for (const std::string_view scheme : {"http://", "https://"}) {
        if (target.size() > scheme.size() && equal_ignore_case(target.substr(0, scheme.size()), scheme)) {
            target.remove_prefix(scheme.size());
            target.remove_prefix(std::min(target.find_first_of("/?"), target.size()));
            return target.empty() ? "/" : target;
        }
    }
    return target;
}

bool has_bad_escape(std::string_view path) {
    for (std::size_t at = path.find('%'); at != std::string_view::npos; at = path.find('%', at + 1))
        if (at + 2 >= path.size() || !std::isxdigit(static_cast<unsigned char>(path[at + 1])) ||
            !std::isxdigit(static_cast<unsigned char>(path[at + 2])))
            return true;
    return false;
}

bool is_control(char c) {
    return static_cast<unsigned char>(c) < ' ' || c == 0x7F;
}

// A segment that starts with a dot: hidden files, "." and "..".
bool has_hidden_segment(std::string_view path) {
    return path.find("/.") != std::string_view::npos;
}

bool is_page_name(std::string_view path) {
    return path.size() > 4 && equal_ignore_case(path.substr(path.size() - 4), ".asp");
}

bool is_below(std::string_view path, std::string_view folder) {
    return equal_ignore_case(path.substr(0, folder.size()), folder);
}

bool is_uploaded(std::string_view path, const RouteSettings& settings) {
    return is_below(path, asp::kTemporaryFolder) || // in any case
           std::ranges::any_of(settings.upload_folders,
                               [&](const std::string& folder) { return is_below(path, folder); });
}

// Fills in what was found at a path that is known to be a file.
Route to_file(Route route, const asp::SitePaths& paths, asp::SitePaths::Found found,
              const RouteSettings& settings) {
    route.found = std::move(found);
    route.site_path = route.found.physical.substr(paths.root().size());
    if (has_hidden_segment(route.site_path))
        return refused(404);
    // A folder of uploads may be a link to another.
    route.uploaded = is_uploaded(route.site_path, settings) || is_uploaded(route.path, settings);
    if (is_page_name(route.site_path)) {
        if (route.uploaded)
            return refused(404);
        route.kind = Route::Kind::Page;
        return route;
    }
    route.kind = Route::Kind::File;
    route.content_type = content_type(route.site_path);
    return route.content_type.empty() ? refused(404) : route;
}

Route to_own_file(std::string path, std::string physical) {
    Route route;
    route.kind = Route::Kind::File;
    route.content_type = content_type(path);
    route.path = std::move(path);
    route.found.physical = std::move(physical);
    route.uploaded = true; // its content is a visitor's as much as a page's
    route.own = true;
    return route.content_type.empty() ? refused(404) : route;
}

} // namespace

Route route(const asp::SitePaths& paths, std::string_view target, const RouteSettings& settings,
            const OwnFileFinder& own_file) {
    target = without_authority(target);
    const std::size_t mark = std::min(target.find('?'), target.size());
    const std::string_view raw = target.substr(0, mark);
    if (!raw.starts_with('/') || has_bad_escape(raw))
        return refused(400);
    const std::string path = asp::percent_decode(raw, false);
    if (std::ranges::any_of(path, is_control))
        return refused(400);
    const std::optional<std::string> plain =
        has_hidden_segment(path) ? std::nullopt : asp::plain_path(path, "/", false);
    if (plain && is_below(*plain, asp::kTemporaryFolder))
        if (std::string physical = own_file(*plain); !physical.empty())
            return to_own_file(*plain, std::move(physical));
    std::optional<asp::SitePaths::Found> found = plain ? paths.find(*plain) : std::nullopt;
    if (!found)
        return refused(404);

    Route result;
    result.path = *plain;
    result.query = target.substr(std::min(mark + 1, target.size()));
    if (!found->folder)
        return to_file(std::move(result), paths, std::move(*found), settings);
    if (!plain->ends_with('/')) {
        result.kind = Route::Kind::Redirect;
        result.location = asp::encode_location(*plain + '/') + std::string(target.substr(mark));
        return result;
    }
    for (const std::string& name : settings.default_pages) {
        std::optional<asp::SitePaths::Found> page = paths.find(*plain + name);
        if (page && !page->folder) {
            result.path += name;
            return to_file(std::move(result), paths, std::move(*page), settings);
        }
    }
    return refused(404);
}

} // namespace tabrixdb::server
