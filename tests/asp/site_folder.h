#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace tabrixdb {

// A folder for a test's site, gone at the end.
class SiteFolder {
public:
    SiteFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "tabrixdb-site-XXXXXX").string();
        path_ = mkdtemp(name.data());
    }

    ~SiteFolder() { std::filesystem::remove_all(path_); }

    SiteFolder(const SiteFolder&) = delete;
    SiteFolder& operator=(const SiteFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }

    void write(const std::string& name, std::string_view text) const {
        std::filesystem::create_directories((path_ / name).parent_path());
        std::ofstream(path_ / name, std::ios::binary) << text;
    }

    void link(const std::filesystem::path& target, const std::string& name) const {
        std::filesystem::create_symlink(target, path_ / name);
    }

private:
    std::filesystem::path path_;
};

} // namespace tabrixdb
