#pragma once

#include "asp/site_paths.h"

#include <string>
#include <string_view>
#include <unordered_map>

namespace tabrixdb::server {

// Looks for the marks of a template in a text that comes piece by piece: the comment "<!--tabrixdb:" in any
// case, or a tag, "#~" with "~#" behind it, however far, or "$~" with "~$". Zero bytes are passed over, so
// that UTF-16 is judged as well.
class MarkScanner {
public:
    // True once a mark was found.
    bool feed(std::string_view piece) noexcept;

private:
    char previous_ = 0;
    std::size_t comment_ = 0; // characters of the comment's start that stand right before
    bool tag_open_ = false, encoded_tag_open_ = false;
};

// Which HTML files are templates: sources, with queries in their tags. Each version of a file (its time of
// change and size) is read once. One thread.
class TemplateFiles {
public:
    // `file`: open, at `path`, with this stamp; its position is left alone. One that can't be read to its end
    // counts as a template.
    bool is_template(const std::string& path, int file, const asp::FileStamp& stamp);

private:
    // Files that are known at once; about 200 bytes each.
    static constexpr std::size_t kMaxKept = 4096;

    struct Verdict {
        asp::FileStamp stamp;
        bool is_template;
    };

    std::unordered_map<std::string, Verdict> kept_;
};

} // namespace tabrixdb::server
