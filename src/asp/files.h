#pragma once

#include "asp/site_paths.h"
#include "platform/host.h"

#include <optional>
#include <string>

namespace tabrixdb::asp {

// The whole of a file; nullopt when it can't be read.
std::optional<std::string> read_bytes(const std::string& physical_path);

// The disk as the engine sees it. Thread-safe.
class SiteFiles final : public platform::FileSystem {
public:
    // `paths` outlives this.
    SiteFiles(const SitePaths& paths, std::uint32_t code_page) : paths_(paths), code_page_(code_page) {}

    bool file_exists(std::string_view path) override;
    std::string read_text(std::string_view path) override;
    std::string read_bytes(std::string_view path) override;
    void write_text(std::string_view path, std::string_view text, bool append) override;

private:
    const SitePaths& paths_;
    const std::uint32_t code_page_;
};

} // namespace tabrixdb::asp
