#include "platform/host.h"

#include "automation/error.h"

namespace tabrixdb::platform {

namespace {
thread_local Host* current_host = nullptr;
}

void FileSystem::write_text(std::string_view, std::string_view, bool) {
    constexpr std::int32_t kErrorDenied = 70;
    throw Error(kErrorDenied);
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
