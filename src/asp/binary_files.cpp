// Files in pieces: the part of SiteFiles that moves binary data and keeps the folder of temporary files
// small.

#include "asp/code_page.h"
#include "asp/files.h"
#include "automation/error.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tabrixdb::asp {

namespace {

namespace fs = std::filesystem;

constexpr std::int32_t kErrorNoFile = 53;
constexpr std::int32_t kErrorRead = 57;  // Device I/O error
constexpr std::int32_t kErrorWrite = 61; // Disk full
constexpr std::int32_t kErrorDenied = 70;
constexpr std::int32_t kErrorNoFolder = 76;

// Of a file that is not finished.
constexpr std::string_view kPartEnding = ".part";

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

class Reader final : public platform::FileReader {
public:
    explicit Reader(const std::string& path) : file_(std::fopen(path.c_str(), "rbe"), std::fclose) {
        if (!file_)
            throw Error(errno == ENOENT ? kErrorNoFile : kErrorDenied);
    }

    std::string read(std::size_t most) override {
        std::string bytes(most, '\0');
        bytes.resize(std::fread(bytes.data(), 1, most, file_.get()));
        if (std::ferror(file_.get()))
            throw Error(kErrorRead);
        return bytes;
    }

private:
    File file_;
};

// Unique among the requests of this and other servers on the same folder.
std::string part_name(const std::string& path) {
    static std::atomic<std::uint32_t> number = 0;
    return path + '.' + std::to_string(getpid()) + '-' + std::to_string(++number) + std::string(kPartEnding);
}

std::FILE* create_new(const std::string& path, unsigned mode) {
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
    return file < 0 ? nullptr : fdopen(file, "wb");
}

class Writer final : public platform::FileWriter {
public:
    Writer(std::string path, unsigned mode, std::uint32_t code_page)
        : path_(std::move(path)),
          part_(part_name(path_)),
          code_page_(code_page),
          file_(create_new(part_, mode), std::fclose) {
        if (!file_)
            throw Error(errno == ENOENT ? kErrorNoFolder : kErrorDenied);
    }

    ~Writer() override {
        if (!finished_)
            std::remove(part_.c_str());
    }

    void write(std::string_view bytes) override {
        if (std::fwrite(bytes.data(), 1, bytes.size(), file_.get()) != bytes.size())
            throw Error(kErrorWrite);
    }

    void write_text(std::string_view text) override { write(encode_text(text, code_page_)); }

    void finish() override {
        close();
        if (std::rename(part_.c_str(), path_.c_str()) != 0)
            throw Error(kErrorDenied);
        finished_ = true;
    }

    bool finish_new() override {
        close();
        if (renameat2(AT_FDCWD, part_.c_str(), AT_FDCWD, path_.c_str(), RENAME_NOREPLACE) == 0) {
            finished_ = true;
            return true;
        }
        // Not every file system can do that; others can't link.
        if (errno != EEXIST && link(part_.c_str(), path_.c_str()) == 0)
            return true;
        if (errno != EEXIST)
            throw Error(kErrorDenied);
        return false;
    }

private:
    void close() {
        if (std::fclose(file_.release()) != 0)
            throw Error(kErrorWrite);
    }

    std::string path_;
    std::string part_;
    std::uint32_t code_page_;
    File file_;
    bool finished_ = false;
};

} // namespace

std::unique_ptr<platform::FileReader> SiteFiles::open(std::string_view path) {
    const std::string physical = paths_.resolve_physical(path);
    if (!stamp_of(physical))
        throw Error(kErrorNoFile);
    return std::make_unique<Reader>(physical);
}

std::unique_ptr<platform::FileWriter> SiteFiles::create(std::string_view path) {
    std::string physical = paths_.resolve_physical(path);
    const unsigned mode = new_mode(physical);
    return std::make_unique<Writer>(std::move(physical), mode, code_page_);
}

void SiteFiles::make_folder(std::string_view path) {
    std::error_code error;
    const std::string physical = paths_.resolve_physical(path);
    if (mkdir(physical.c_str(), paths_.is_temporary(physical) ? 0700 : 0777) == 0)
        return;
    const int reason = errno;
    if (!fs::is_directory(physical, error))
        throw Error(reason == ENOENT ? kErrorNoFolder : kErrorDenied);
}

bool SiteFiles::folder_exists(std::string_view path) {
    std::error_code ignored;
    return fs::is_directory(paths_.resolve_physical(path), ignored);
}

std::optional<platform::FileInfo> SiteFiles::file_info(std::string_view path) {
    std::string physical = paths_.resolve_physical(path);
    const std::optional<FileStamp> stamp = stamp_of(physical);
    if (!stamp)
        return std::nullopt;
    return platform::FileInfo{std::move(physical), stamp->size, stamp->modified_seconds()};
}

std::vector<platform::FileInfo> SiteFiles::files_in(std::string_view folder) {
    std::error_code error;
    fs::directory_iterator at(paths_.resolve_physical(folder), error);
    if (error)
        throw Error(kErrorNoFolder);
    std::vector<platform::FileInfo> files;
    for (const fs::directory_iterator end; !error && at != end; at.increment(error))
        if (const std::optional<FileStamp> stamp = stamp_of(at->path().string()))
            files.push_back({at->path().string(), stamp->size, stamp->modified_seconds()});
    std::ranges::sort(files, {}, &platform::FileInfo::path);
    return files;
}

void SiteFiles::delete_file(std::string_view path) {
    const std::string physical = paths_.resolve_physical(path);
    if (!stamp_of(physical))
        throw Error(kErrorNoFile);
    if (std::remove(physical.c_str()) != 0)
        throw Error(kErrorDenied);
}

void SiteFiles::delete_old(std::string_view folder, std::string_view ending, std::chrono::seconds age) {
    std::error_code error;
    const auto oldest = fs::file_time_type::clock::now() - age;
    for (fs::directory_iterator at(paths_.resolve_physical(folder), error), end; !error && at != end;
         at.increment(error)) {
        const std::string name = at->path().filename().string();
        std::error_code ignored;
        if ((name.ends_with(ending) || name.ends_with(kPartEnding)) && at->is_regular_file(ignored) &&
            at->last_write_time(ignored) < oldest && !ignored)
            fs::remove(at->path(), ignored);
    }
}

} // namespace tabrixdb::asp
