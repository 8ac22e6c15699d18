#include "asp/files.h"

#include "asp/code_page.h"
#include "automation/error.h"

#include <cerrno>
#include <cstdio>
#include <memory>

#include <fcntl.h>
#include <unistd.h>

namespace tabrixdb::asp {

namespace {
constexpr std::int32_t kErrorNoFile = 53;
constexpr std::int32_t kErrorDenied = 70;
constexpr std::int32_t kErrorNoFolder = 76;

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;
} // namespace

std::optional<std::string> read_bytes(const std::string& physical_path) {
    const File file(std::fopen(physical_path.c_str(), "rbe"), std::fclose);
    if (!file)
        return std::nullopt;
    std::string bytes;
    char buffer[16 * 1024];
    while (const std::size_t count = std::fread(buffer, 1, sizeof buffer, file.get()))
        bytes.append(buffer, count);
    return std::ferror(file.get()) ? std::nullopt : std::optional(std::move(bytes));
}

bool SiteFiles::file_exists(std::string_view path) {
    return stamp_of(paths_.resolve_physical(path)).has_value();
}

unsigned SiteFiles::new_mode(const std::string& physical) const {
    return paths_.is_temporary(physical) ? 0600 : 0666;
}

std::string SiteFiles::read_text(std::string_view path) {
    return decode_file(read_bytes(path), code_page_);
}

std::string SiteFiles::read_bytes(std::string_view path) {
    const std::string physical = paths_.resolve_physical(path);
    if (!stamp_of(physical))
        throw Error(kErrorNoFile);
    std::optional<std::string> bytes = asp::read_bytes(physical);
    if (!bytes)
        throw Error(kErrorDenied);
    return std::move(*bytes);
}

void SiteFiles::write_text(std::string_view path, std::string_view text, bool append) {
    const std::string physical = paths_.resolve_physical(path);
    const int flags = O_WRONLY | O_CREAT | O_CLOEXEC | (append ? O_APPEND : O_TRUNC);
    const int descriptor = ::open(physical.c_str(), flags, new_mode(physical));
    File file(descriptor < 0 ? nullptr : fdopen(descriptor, append ? "ab" : "wb"), std::fclose);
    if (!file)
        throw Error(errno == ENOENT ? kErrorNoFolder : kErrorDenied);
    const std::string bytes = encode_text(text, code_page_);
    const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file.get()) == bytes.size();
    if (std::fclose(file.release()) != 0 || !written)
        throw Error(kErrorDenied);
}

} // namespace tabrixdb::asp
