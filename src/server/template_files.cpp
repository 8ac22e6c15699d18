#include "server/template_files.h"

#include <array>
#include <cerrno>
#include <optional>

#include <unistd.h>

namespace tabrixdb::server {

namespace {

// What is held of a file at once.
constexpr std::size_t kPieceBytes = std::size_t{64} * 1024;

constexpr std::string_view kComment = "<!--tabrixdb:";

char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// nullopt when it can't be read to its end.
std::optional<bool> has_marks(int file) {
    MarkScanner scanner;
    std::array<char, kPieceBytes> piece;
    for (off_t at = 0;;) {
        const ssize_t count = pread(file, piece.data(), piece.size(), at);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return std::nullopt;
        if (count == 0)
            return false;
        if (scanner.feed({piece.data(), static_cast<std::size_t>(count)}))
            return true;
        at += count;
    }
}

} // namespace

bool MarkScanner::feed(std::string_view piece) noexcept {
    for (const char c : piece) {
        if (c == '\0')
            continue;
        // Its first character stands nowhere else in it: a comment that breaks off can only begin anew.
        comment_ = lower(c) == kComment[comment_] ? comment_ + 1 : c == kComment[0];
        if (comment_ == kComment.size() || (previous_ == '~' && c == '#' && tag_open_) ||
            (previous_ == '~' && c == '$' && encoded_tag_open_))
            return true;
        const bool opens = c == '~' && (previous_ == '#' || previous_ == '$');
        if (opens)
            (previous_ == '#' ? tag_open_ : encoded_tag_open_) = true;
        previous_ = opens ? '\0' : c; // the "~" of an opening is not that of an end
    }
    return false;
}

bool TemplateFiles::is_template(const std::string& path, int file, const asp::FileStamp& stamp) {
    if (const auto kept = kept_.find(path); kept != kept_.end() && kept->second.stamp == stamp)
        return kept->second.is_template;
    const std::optional<bool> found = has_marks(file);
    if (!found)
        return true;
    if (kept_.size() >= kMaxKept)
        kept_.clear();
    kept_.insert_or_assign(path, Verdict{stamp, *found});
    return *found;
}

} // namespace tabrixdb::server
