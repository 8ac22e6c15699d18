#pragma once

#include "asp/files.h"
#include "asp/session_store.h"

#include <atomic>
#include <chrono>
#include <memory>
#include <string>
#include <string_view>

namespace tabrixdb::asp {

// Files that pages write for single sessions, to be sent at an address of the site. They lie in a hidden
// folder below that of temporary files, under names that nobody can guess and that no server knows the type
// of. A file ends with its session, otherwise after a day. Thread-safe.
class OwnFiles {
public:
    // Both outlive this.
    OwnFiles(const SitePaths& paths, SiteFiles& files) : paths_(paths), files_(files) {}

    // From finish() on it is the session's file at the address. Errors as SiteFiles::create.
    std::unique_ptr<platform::FileWriter> create(std::shared_ptr<SessionState> session,
                                                 std::string_view address);

private:
    // Deletes what a server has left that did not end in order, every now and then.
    void clean(const std::string& folder);

    const SitePaths& paths_;
    SiteFiles& files_;
    std::atomic<Clock::time_point> next_cleaning_ = Clock::time_point::min();
};

} // namespace tabrixdb::asp
