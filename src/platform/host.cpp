#include "platform/host.h"

#include "automation/error.h"

namespace tabrixdb::platform {

namespace {
thread_local Host* current_host = nullptr;
constexpr std::int32_t kErrorDenied = 70;
} // namespace

// A host that gives no way to write denies it.

void FileSystem::write_text(std::string_view, std::string_view, bool) {
    throw Error(kErrorDenied);
}

std::unique_ptr<FileReader> FileSystem::open(std::string_view) {
    throw Error(kErrorDenied);
}

std::unique_ptr<FileWriter> FileSystem::create(std::string_view) {
    throw Error(kErrorDenied);
}

void FileSystem::make_folder(std::string_view) {
    throw Error(kErrorDenied);
}

bool FileSystem::folder_exists(std::string_view) {
    return false;
}

std::optional<FileInfo> FileSystem::file_info(std::string_view) {
    return std::nullopt;
}

std::vector<FileInfo> FileSystem::files_in(std::string_view) {
    throw Error(kErrorDenied);
}

void FileSystem::delete_file(std::string_view) {
    throw Error(kErrorDenied);
}

void FileSystem::delete_old(std::string_view, std::string_view, std::chrono::seconds) {}

std::unique_ptr<FileWriter> Host::create_own_file(std::string_view) {
    return nullptr;
}

void Host::send_mail(const Mail&) {
    throw Error(kErrorCannotCreate);
}

bool Host::may_mail_error(std::string_view) {
    return true;
}

void Host::log(std::string_view) {}

std::string Host::log_failure(std::string_view, std::string_view) {
    return {};
}

bool Host::tells_visitors() {
    return false;
}

std::string Host::without_disk_paths(std::string_view text) {
    return std::string(text);
}

std::optional<std::string> Host::logged_visitor() {
    return std::nullopt;
}

bool Host::permits_any_command() {
    return false;
}

std::string Host::bytes_of_text(std::string_view text) {
    return std::string(text);
}

std::string Host::text_of_bytes(std::string_view bytes) {
    return std::string(bytes);
}

Host& Host::current() {
    if (!current_host)
        throw Error(kErrorNothing);
    return *current_host;
}

HostScope::HostScope(Host& host) noexcept : previous_(std::exchange(current_host, &host)) {}

HostScope::~HostScope() {
    current_host = previous_;
}

} // namespace tabrixdb::platform
