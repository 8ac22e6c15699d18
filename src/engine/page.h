#pragma once

#include "platform/host.h"

#include <string>

namespace tabrixdb {

// What the engine's classes share on one thread of the host. The intrinsic objects are the host's
// (platform::Host::page()); these two texts outlive any one engine object, as pages expect.
struct ThreadTexts {
    std::string error_template; // the site's error page; empty: the built-in one is used and stored here
    std::string admin_email;    // who is told of errors; empty: nobody
};

ThreadTexts& thread_texts() noexcept;

// The intrinsic objects of the page that runs on this thread; each raises Error 91 when the host has none.
platform::Response& response();
platform::Request& request();
platform::Session& session();
platform::Server& server();
platform::Application& application();

} // namespace tabrixdb
