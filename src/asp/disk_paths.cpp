#include "asp/disk_paths.h"

#include "asp/encoding.h"
#include "automation/text.h"

#include <algorithm>

namespace tabrixdb::asp {

namespace {

// What a system has at the root of its disk.
constexpr std::string_view kTopFolders[] = {"bin", "boot", "dev",  "etc",  "home", "lib",  "lib64",
                                            "mnt", "opt",  "proc", "root", "run",  "sbin", "srv",
                                            "sys", "tmp",  "usr",  "var",  "media"};

// Where a path ends that stands in no quotes. "&" begins the reference of a quote in HTML.
constexpr std::string_view kEnds = " \t\r\n\"'<>|;,()&";

bool is_letter(char c) noexcept {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

// Whether a path can begin here: not within a name, another path or an address.
bool may_begin(std::string_view text, std::size_t at) noexcept {
    if (at == 0)
        return true;
    const char before = text[at - 1];
    return !is_letter(before) && !(before >= '0' && before <= '9') &&
           std::string_view("._-~/\\").find(before) == std::string_view::npos &&
           static_cast<unsigned char>(before) < 0x80;
}

// The end of the path at `at`, which goes on to `from` at least. One that stands right behind a quote goes on
// to the next, blanks and all.
std::size_t end_of_path(std::string_view text, std::size_t at, std::size_t from) noexcept {
    for (const std::string_view quote : {"\"", "'", "&quot;"})
        if (text.substr(0, at).ends_with(quote))
            if (const std::size_t end = text.find(quote, from); end != std::string_view::npos)
                return end;
    return std::min(text.find_first_of(kEnds, from), text.size());
}

bool is_below(std::string_view path, std::string_view folder) noexcept {
    return path.starts_with(folder) && (path.size() == folder.size() || path[folder.size()] == '/' ||
                                        kEnds.find(path[folder.size()]) != std::string_view::npos);
}

bool is_disk_path(std::string_view path) noexcept {
    if (path.size() > 2 && is_letter(path[0]) && path[1] == ':' && (path[2] == '\\' || path[2] == '/'))
        return path.size() == 3 || path[2] == '\\' || path[3] != '/'; // not "s://"
    if (path.starts_with("\\\\"))
        return true;
    if (!path.starts_with('/'))
        return false;
    const std::string_view top = path.substr(1, std::min(path.find('/', 1), path.size()) - 1);
    return top.size() + 1 < path.size() && std::ranges::find(kTopFolders, top) != std::end(kTopFolders);
}

} // namespace

std::string without_disk_paths(std::string_view text, std::string_view root) {
    const std::string encoded = html_encode(root);
    std::string out;
    out.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const std::string_view rest = text.substr(at);
        const bool begins = (rest[0] == '/' || rest[0] == '\\' || is_letter(rest[0])) && may_begin(text, at);
        const std::string_view folder = begins && is_below(rest, root)      ? root
                                        : begins && is_below(rest, encoded) ? std::string_view(encoded)
                                                                            : std::string_view();
        if (!folder.empty()) {
            const std::size_t end = end_of_path(text, at, at + folder.size());
            at += folder.size();
            out += end > at ? text.substr(at, end - at) : "/";
            at = end;
        } else if (begins && is_disk_path(rest)) {
            const std::size_t end = end_of_path(text, at, at);
            const std::string_view path = text.substr(at, end - at);
            out += path.substr(path.find_last_of("/\\") + 1);
            at = end;
        } else {
            out += text[at++];
        }
    }
    return out;
}

} // namespace tabrixdb::asp
