#pragma once

#include "asp/site_paths.h"
#include "vbscript/source.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// A page's text taken apart: what is script, what is written as it stands, with its included files in place.
namespace tabrixdb::asp {

// What the <%@ %> directive says.
struct Directives {
    std::optional<std::uint32_t> lcid;
    std::optional<std::uint32_t> code_page;
    bool session = true; // EnableSessionState
};

// A file that a page was made of, as it was then.
struct UsedFile {
    std::string physical;
    FileStamp stamp;
};

struct PageSource {
    vbscript::Source source;
    Directives directives;
    std::vector<UsedFile> files; // the page itself first
};

// Where the text of pages comes from.
class PageFiles {
public:
    virtual ~PageFiles() = default;

    struct File {
        std::string bytes;
        UsedFile used;
    };

    // The file at a plain virtual path; nullopt when it is not there.
    virtual std::optional<File> read(std::string_view plain) = 0;
};

// Bounds of what one page may be made of. They stop includes that multiply (a file included twice in each of
// many files); real pages stay far below.
inline constexpr std::size_t kMaxIncludeDepth = 32;
inline constexpr std::size_t kMaxIncludes = 1000;
inline constexpr std::size_t kMaxPageBytes = std::size_t{16} * 1024 * 1024;

// Reads the page at a plain virtual path and everything that it includes. Inline script comes first, then the
// server's script tags, as the platform runs them. `code_page` is the site's. nullopt when the page itself is
// not there; raises PageError for a mistake in it.
std::optional<PageSource> read_page(PageFiles& files, std::string_view plain, std::uint32_t code_page);

} // namespace tabrixdb::asp
