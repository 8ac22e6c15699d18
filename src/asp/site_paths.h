#pragma once

#include "automation/text.h"

#include <cstdint>
#include <ctime>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

// How names of a site become files. Names are found without regard to case; an exact name is found first.
// Nothing that is found lies outside the site's folder, through ".." or a symbolic link.
struct stat;

namespace tabrixdb::asp {

// When a file was last changed, in nanoseconds, and its size: what says that it is the same file still.
struct FileStamp {
    std::int64_t modified = 0;
    std::uint64_t size = 0;

    friend bool operator==(const FileStamp&, const FileStamp&) = default;

    std::time_t modified_seconds() const { return modified / 1'000'000'000; }
};

FileStamp stamp_of(const struct stat& status) noexcept;
// The stamp of a regular file; nullopt when there is none.
std::optional<FileStamp> stamp_of(const std::string& physical_path);

// Makes a virtual path plain: joins a relative one to `folder` ("/demo/"), takes "." and empty segments out,
// resolves "..". The result starts with "/" and ends with one when the path did. nullopt for a path that
// leaves the site, and for one with a name no file of a site may have: control characters, any of
// `* ? " < > | :` (drives and streams), a device name, a trailing blank or dot. `backslashes`: taken as
// slashes, as pages write them; otherwise refused.
std::optional<std::string> plain_path(std::string_view path, std::string_view folder, bool backslashes);

// Where uploads wait for the database, and downloads for their readers.
inline constexpr std::string_view kTemporaryFolder = "/TabrixDb/temp/";

// "/demo/" of "/demo/orders.asp".
std::string_view folder_of(std::string_view virtual_path) noexcept;

// Thread-safe. Listings of folders are kept, and read again when the folder has changed.
class SitePaths {
public:
    // `root` must be a folder; std::filesystem::filesystem_error otherwise.
    explicit SitePaths(const std::filesystem::path& root);

    // The real path of the site's folder, without a slash at the end.
    const std::string& root() const noexcept { return root_; }

    struct Found {
        std::string physical; // real path
        bool folder = false;
        FileStamp stamp; // of a file
    };

    // The file or folder at a plain path.
    std::optional<Found> find(std::string_view plain) const;

    // Server.MapPath: the physical path, whether or not something is there; `path` relative to `folder`.
    // Raises Error (ASP 0172, 0173, 0175).
    std::string map(std::string_view path, std::string_view folder) const;

    // Whether a physical path lies below the folder of temporary files.
    bool is_temporary(std::string_view physical_path) const noexcept;

    // A physical path as scripts may write it (any case, backslashes): below the site, the name of what is
    // there; otherwise the path itself.
    std::string resolve_physical(std::string_view path) const;

private:
    struct Listing {
        std::int64_t modified = 0;
        std::unordered_map<std::string, std::string, IgnoreCaseHash, IgnoreCaseEqual> names;
    };

    // Follows the path from the root as far as there is something; what is left is put behind it.
    std::string walk(std::string_view plain) const;
    std::optional<std::string> name_in(const std::string& folder, std::string_view name) const;
    std::shared_ptr<const Listing> listing(const std::string& folder) const;
    bool within(std::string_view real_path) const noexcept;

    std::string root_;
    mutable std::mutex mutex_;
    mutable std::unordered_map<std::string, std::shared_ptr<const Listing>> listings_;
};

} // namespace tabrixdb::asp
