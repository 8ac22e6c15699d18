#pragma once

#include "asp/site_paths.h"
#include "platform/host.h"

#include <optional>
#include <string>

namespace tabrixdb::asp {

// The whole of a file; nullopt when it can't be read.
std::optional<std::string> read_bytes(const std::string& physical_path);

// The disk as the engine sees it. What it makes below the folder of temporary files is for the server's user
// alone, as it is somebody's before it is the site's; what it makes elsewhere has the rights that the process
// gives new files. Thread-safe.
class SiteFiles final : public platform::FileSystem {
public:
    // `paths` outlives this.
    SiteFiles(const SitePaths& paths, std::uint32_t code_page) : paths_(paths), code_page_(code_page) {}

    bool file_exists(std::string_view path) override;
    std::string read_text(std::string_view path) override;
    std::string read_bytes(std::string_view path) override;
    void write_text(std::string_view path, std::string_view text, bool append) override;
    std::unique_ptr<platform::FileReader> open(std::string_view path) override;
    std::unique_ptr<platform::FileWriter> create(std::string_view path) override;
    void make_folder(std::string_view path) override;
    bool folder_exists(std::string_view path) override;
    std::optional<platform::FileInfo> file_info(std::string_view path) override;
    std::vector<platform::FileInfo> files_in(std::string_view folder) override;
    void delete_file(std::string_view path) override;
    void delete_old(std::string_view folder, std::string_view ending, std::chrono::seconds age) override;

private:
    // The rights of a new file at a physical path.
    unsigned new_mode(const std::string& physical) const;

    const SitePaths& paths_;
    const std::uint32_t code_page_;
};

} // namespace tabrixdb::asp
