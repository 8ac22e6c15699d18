#include "asp/site_paths.h"

#include "asp/asp_error.h"

#include <algorithm>
#include <cstdlib>
#include <vector>

#include <dirent.h>
#include <sys/stat.h>

namespace tabrixdb::asp {

namespace {

// Listings kept at once, and names in one of them: folders with more are searched anew each time.
constexpr std::size_t kMaxListings = 512;
constexpr std::size_t kMaxListedNames = 20'000;
// Longest virtual path, as the platform has it.
constexpr std::size_t kMaxPathBytes = 2048;

bool is_device_name(std::string_view segment) {
    const std::string_view stem = segment.substr(0, segment.find('.'));
    for (const std::string_view device : {"con", "prn", "aux", "nul", "conin$", "conout$"})
        if (equal_ignore_case(stem, device))
            return true;
    return stem.size() == 4 && stem[3] >= '0' && stem[3] <= '9' &&
           (equal_ignore_case(stem.substr(0, 3), "com") || equal_ignore_case(stem.substr(0, 3), "lpt"));
}

bool is_plain_segment(std::string_view segment) {
    const bool bad_character = std::ranges::any_of(segment, [](char c) {
        return static_cast<unsigned char>(c) < ' ' || c == 0x7F ||
               std::string_view("*?\"<>|:\\").find(c) != std::string_view::npos;
    });
    return !bad_character && segment.back() != ' ' && segment.back() != '.' && !is_device_name(segment);
}

// Adds the segments of a path to those before; false when it leaves the root or has a bad name.
bool add_segments(std::vector<std::string_view>& segments, std::string_view path) {
    for (std::size_t from = 0; from < path.size();) {
        const std::size_t end = std::min(path.find('/', from), path.size());
        const std::string_view segment = path.substr(from, end - from);
        from = end + 1;
        if (segment.empty() || segment == ".")
            continue;
        if (segment == "..") {
            if (segments.empty())
                return false;
            segments.pop_back();
        } else if (is_plain_segment(segment)) {
            segments.push_back(segment);
        } else {
            return false;
        }
    }
    return true;
}

} // namespace

FileStamp stamp_of(const struct stat& status) noexcept {
    return {std::int64_t{status.st_mtim.tv_sec} * 1'000'000'000 + status.st_mtim.tv_nsec,
            static_cast<std::uint64_t>(status.st_size)};
}

std::optional<FileStamp> stamp_of(const std::string& physical_path) {
    struct stat status {};

    if (stat(physical_path.c_str(), &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    return stamp_of(status);
}

std::optional<std::string> plain_path(std::string_view path, std::string_view folder, bool backslashes) {
    if (path.size() > kMaxPathBytes)
        return std::nullopt;
    std::string slashed(path);
    if (backslashes)
        std::ranges::replace(slashed, '\\', '/');
    std::vector<std::string_view> segments;
    if (!slashed.starts_with('/') && !add_segments(segments, folder))
        return std::nullopt;
    if (!add_segments(segments, slashed))
        return std::nullopt;
    std::string plain;
    for (const std::string_view segment : segments)
        plain.append("/").append(segment);
    if (plain.empty() || slashed.empty() || slashed.ends_with('/'))
        plain += '/';
    return plain;
}

std::string_view folder_of(std::string_view virtual_path) noexcept {
    const std::size_t slash = virtual_path.rfind('/');
    return slash == std::string_view::npos ? "/" : virtual_path.substr(0, slash + 1);
}

SitePaths::SitePaths(const std::filesystem::path& root) : root_(std::filesystem::canonical(root).string()) {
    if (!std::filesystem::is_directory(root_))
        throw std::filesystem::filesystem_error("a site is a folder", root,
                                                std::make_error_code(std::errc::not_a_directory));
    if (root_ == "/")
        root_.clear();
}

bool SitePaths::within(std::string_view real_path) const noexcept {
    return real_path.starts_with(root_) &&
           (real_path.size() == root_.size() || real_path[root_.size()] == '/');
}

std::optional<SitePaths::Found> SitePaths::find(std::string_view plain) const {
    char* const real = realpath(walk(plain).c_str(), nullptr);
    if (!real)
        return std::nullopt;
    Found found;
    found.physical = real;
    std::free(real);

    struct stat status {};

    if (!within(found.physical) || stat(found.physical.c_str(), &status) != 0)
        return std::nullopt;
    found.folder = S_ISDIR(status.st_mode);
    if (!found.folder && (!S_ISREG(status.st_mode) || plain.ends_with('/')))
        return std::nullopt;
    found.stamp = stamp_of(status);
    return found;
}

std::string SitePaths::map(std::string_view path, std::string_view folder) const {
    constexpr std::string_view kObject = "Server object";
    if (path.size() > 1 && path[1] == ':')
        throw asp_error(172, kObject);
    if (path.find_first_of(std::string_view("\0*?\"<>|:", 8)) != std::string_view::npos)
        throw asp_error(173, kObject);
    const std::optional<std::string> plain = plain_path(path, folder, true);
    if (!plain)
        throw asp_error(175, kObject);
    std::string physical = walk(*plain);
    // What is there already must not lead out of the site through a link.
    std::string existing = physical;
    char* real = nullptr;
    while (!(real = realpath(existing.c_str(), nullptr)) && existing.size() > root_.size())
        existing.resize(existing.rfind('/'));
    const bool inside = real && within(real);
    std::free(real);
    if (!inside)
        throw asp_error(175, kObject);
    return physical;
}

std::string SitePaths::resolve_physical(std::string_view path) const {
    std::string slashed(path);
    std::ranges::replace(slashed, '\\', '/');

    struct stat status {};

    if (stat(slashed.c_str(), &status) == 0)
        return slashed;
    return within(slashed) ? walk(std::string_view(slashed).substr(root_.size())) : slashed;
}

bool SitePaths::is_temporary(std::string_view path) const noexcept {
    return path.starts_with(root_) &&
           equal_ignore_case(path.substr(root_.size()).substr(0, kTemporaryFolder.size()), kTemporaryFolder);
}

std::string SitePaths::walk(std::string_view plain) const {
    while (plain.size() > 1 && plain.ends_with('/'))
        plain.remove_suffix(1);
    std::string path = root_;
    if (plain.empty() || plain == "/")
        return path.empty() ? "/" : path;
    path += plain;

    struct stat status {};

    if (stat(path.c_str(), &status) == 0)
        return path;
    path = root_;
    for (std::size_t from = 1; from <= plain.size();) {
        const std::size_t end = std::min(plain.find('/', from), plain.size());
        const std::string_view segment = plain.substr(from, end - from);
        const std::optional<std::string> name = name_in(path, segment);
        if (!name)
            return path.append("/").append(plain.substr(from));
        path.append("/").append(*name);
        from = end + 1;
    }
    return path;
}

std::optional<std::string> SitePaths::name_in(const std::string& folder, std::string_view name) const {
    struct stat status {};

    if (stat((folder + '/').append(name).c_str(), &status) == 0)
        return std::string(name);
    const std::shared_ptr<const Listing> names = listing(folder.empty() ? "/" : folder);
    if (!names)
        return std::nullopt;
    const auto found = names->names.find(name);
    return found == names->names.end() ? std::nullopt : std::optional(found->second);
}

std::shared_ptr<const SitePaths::Listing> SitePaths::listing(const std::string& folder) const {
    struct stat status {};

    if (stat(folder.c_str(), &status) != 0 || !S_ISDIR(status.st_mode))
        return nullptr;
    const std::int64_t modified = stamp_of(status).modified;
    {
        const std::lock_guard lock(mutex_);
        const auto kept = listings_.find(folder);
        if (kept != listings_.end() && kept->second->modified == modified)
            return kept->second;
    }
    auto fresh = std::make_shared<Listing>();
    fresh->modified = modified;
    const std::unique_ptr<DIR, int (*)(DIR*)> directory(opendir(folder.c_str()), closedir);
    if (!directory)
        return nullptr;
    while (const dirent* entry = readdir(directory.get())) {
        // Of names that differ in case only, the same one is found each time.
        const auto [at, added] = fresh->names.try_emplace(entry->d_name, entry->d_name);
        if (!added && std::string_view(entry->d_name) < at->second)
            at->second = entry->d_name;
    }
    const std::lock_guard lock(mutex_);
    if (listings_.size() >= kMaxListings)
        listings_.clear();
    if (fresh->names.size() <= kMaxListedNames)
        listings_[folder] = fresh;
    return fresh;
}

} // namespace tabrixdb::asp
