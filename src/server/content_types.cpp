#include "server/content_types.h"

#include "automation/text.h"

namespace tabrixdb::server {

namespace {

struct ContentType {
    std::string_view extension;
    std::string_view type;
};

constexpr ContentType kTypes[] = {
    {"htm", "text/html; charset=utf-8"},
    {"html", "text/html; charset=utf-8"},
    {"css", "text/css; charset=utf-8"},
    {"js", "text/javascript; charset=utf-8"},
    {"mjs", "text/javascript; charset=utf-8"},
    {"json", "application/json"},
    {"map", "application/json"},
    {"webmanifest", "application/manifest+json"},
    {"txt", "text/plain; charset=utf-8"},
    {"csv", "text/csv; charset=utf-8"},
    {"xml", "application/xml"},
    {"rss", "application/rss+xml"},
    {"gif", "image/gif"},
    {"png", "image/png"},
    {"jpg", "image/jpeg"},
    {"jpeg", "image/jpeg"},
    {"jpe", "image/jpeg"},
    {"webp", "image/webp"},
    {"avif", "image/avif"},
    {"svg", "image/svg+xml"},
    {"bmp", "image/bmp"},
    {"tif", "image/tiff"},
    {"tiff", "image/tiff"},
    {"ico", "image/vnd.microsoft.icon"},
    {"woff", "font/woff"},
    {"woff2", "font/woff2"},
    {"ttf", "font/ttf"},
    {"otf", "font/otf"},
    {"mp3", "audio/mpeg"},
    {"ogg", "audio/ogg"},
    {"wav", "audio/wav"},
    {"mp4", "video/mp4"},
    {"webm", "video/webm"},
    {"pdf", "application/pdf"},
    {"rtf", "application/rtf"},
    {"zip", "application/zip"},
    {"gz", "application/gzip"},
    {"doc", "application/msword"},
    {"docx", "application/vnd.openxmlformats-officedocument.wordprocessingml.document"},
    {"xls", "application/vnd.ms-excel"},
    {"xlsx", "application/vnd.openxmlformats-officedocument.spreadsheetml.sheet"},
    {"odt", "application/vnd.oasis.opendocument.text"},
    {"ods", "application/vnd.oasis.opendocument.spreadsheet"},
    {"wasm", "application/wasm"},
};

} // namespace

std::string_view content_type(std::string_view file_name) noexcept {
    const std::size_t dot = file_name.rfind('.');
    if (dot == std::string_view::npos)
        return {};
    for (const ContentType& known : kTypes)
        if (equal_ignore_case(known.extension, file_name.substr(dot + 1)))
            return known.type;
    return {};
}

bool is_html(std::string_view content_type) noexcept {
    return content_type.starts_with("text/html");
}

bool is_passive(std::string_view content_type) noexcept {
    for (const std::string_view group : {"image/", "audio/", "video/"})
        if (content_type.starts_with(group))
            return content_type != "image/svg+xml";
    return content_type.starts_with("text/plain") || content_type.starts_with("text/csv") ||
           content_type == "application/pdf";
}

} // namespace tabrixdb::server
