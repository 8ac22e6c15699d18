#pragma once

#include <string_view>

namespace tabrixdb::server {

// The content type of a file by its name; empty for a type that is not known. Only known types are served,
// so that databases, sources, settings and what an editor leaves behind stay where they are.
std::string_view content_type(std::string_view file_name) noexcept;

bool is_html(std::string_view content_type) noexcept;

// Whether a browser that shows such a file runs nothing of it: pictures, sound, plain text, PDF.
bool is_passive(std::string_view content_type) noexcept;

inline constexpr std::string_view kUnknownContent = "application/octet-stream";

} // namespace tabrixdb::server
