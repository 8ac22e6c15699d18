#pragma once

#include "asp/http.h"
#include "asp/site_paths.h"

#include <cstdint>

namespace tabrixdb::server {

// What is sent of a file: a status, headers, and the part of the file that is the body.
struct FileAnswer {
    int status = 200;
    asp::Headers headers;
    std::uint64_t offset = 0;
    std::uint64_t length = 0; // 0 for 304 and 416
};

// Answers a GET or HEAD for a file with this stamp: the conditions of the request (If-None-Match,
// If-Modified-Since), one range of bytes (with If-Range), and otherwise the whole.
// `own`: a file of one visitor's, which nothing on the way may keep for another.
FileAnswer answer_file(const asp::FileStamp& stamp, std::string_view content_type,
                       const asp::Headers& request, bool own = false);

} // namespace tabrixdb::server
