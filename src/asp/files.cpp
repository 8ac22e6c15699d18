#include "asp/files.h"

#include "asp/code_page.h"
#include "automation/error.h"

#include <cstdio>
#include <memory>

namespace tabrixdb::asp {

namespace {
constexpr std::int32_t kErrorNoFile = 53;
constexpr std::int32_t kErrorDenied = 70;
} // namespace

std::optional<std::string> read_bytes(const std::string& physical_path) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(physical_path.c_str(), "rbe"),
                                                               std::fclose);
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

std::string SiteFiles::read_text(std::string_view path) {
    const std::string physical = paths_.resolve_physical(path);
    if (!stamp_of(physical))
        throw Error(kErrorNoFile);
    std::optional<std::string> bytes = read_bytes(physical);
    if (!bytes)
        throw Error(kErrorDenied);
    return decode_file(std::move(*bytes), code_page_);
}

} // namespace tabrixdb::asp
