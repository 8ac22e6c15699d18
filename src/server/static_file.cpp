#include "server/static_file.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <optional>

namespace tabrixdb::server {

namespace {

std::string entity_tag(const asp::FileStamp& stamp) {
    char text[48];
    std::snprintf(text, sizeof text, "\"%llx-%llx\"", static_cast<unsigned long long>(stamp.modified),
                  static_cast<unsigned long long>(stamp.size));
    return text;
}

// Whether a list of tags (`"a", W/"b"`, or `*`) has this one; weak tags compare by their text.
bool lists_tag(std::string_view list, std::string_view tag) {
    while (!list.empty()) {
        const std::size_t comma = std::min(list.find(','), list.size());
        std::string_view item = list.substr(0, comma);
        list.remove_prefix(std::min(comma + 1, list.size()));
        item.remove_prefix(std::min(item.find_first_not_of(" \t"), item.size()));
        item = item.substr(0, item.find_last_not_of(" \t") + 1);
        if (item == "*")
            return true;
        if (item.starts_with("W/"))
            item.remove_prefix(2);
        if (item == tag)
            return true;
    }
    return false;
}

bool is_unchanged(const asp::Headers& request, std::string_view tag, std::time_t modified) {
    if (const std::string* tags = asp::find_header(request, "If-None-Match"))
        return lists_tag(*tags, tag);
    const std::string* since = asp::find_header(request, "If-Modified-Since");
    const auto time = since ? asp::parse_http_date(*since) : std::nullopt;
    return time && modified <= *time;
}

// Whether a range may be sent: the client's part must be of this very file.
bool is_range_wanted(const asp::Headers& request, std::string_view tag, std::time_t modified) {
    const std::string* condition = asp::find_header(request, "If-Range");
    if (!condition)
        return true;
    return *condition == tag || asp::parse_http_date(*condition) == modified;
}

std::optional<std::uint64_t> number(std::string_view text) {
    std::uint64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(value) : std::nullopt;
}

struct Range {
    std::uint64_t first = 0;
    std::uint64_t length = 0; // 0: cannot be satisfied
};

// nullopt for what is not one range of bytes: such a header is passed over.
std::optional<Range> parse_range(std::string_view text, std::uint64_t size) {
    constexpr std::string_view kUnit = "bytes=";
    if (!text.starts_with(kUnit))
        return std::nullopt;
    text.remove_prefix(kUnit.size());
    const std::size_t dash = text.find('-');
    if (dash == std::string_view::npos)
        return std::nullopt;
    const auto first = number(text.substr(0, dash)), last = number(text.substr(dash + 1));
    if (dash == 0) {
        if (!last)
            return std::nullopt;
        const std::uint64_t length = std::min(*last, size);
        return Range{size - length, length};
    }
    if (!first || (dash + 1 < text.size() && (!last || *last < *first)))
        return std::nullopt;
    if (*first >= size)
        return Range{};
    return Range{*first, std::min(last.value_or(size - 1), size - 1) - *first + 1};
}

} // namespace

FileAnswer answer_file(const asp::FileStamp& stamp, std::string_view content_type,
                       const asp::Headers& request, bool own) {
    const std::string tag = entity_tag(stamp);
    const std::time_t modified = stamp.modified_seconds();
    FileAnswer answer;
    // Kept by the browser, but asked for again: an author sees a change at once.
    answer.headers = {{"ETag", tag},
                      {"Last-Modified", asp::http_date(modified)},
                      {"Cache-Control", own ? "private, no-cache" : "no-cache"}};
    if (is_unchanged(request, tag, modified)) {
        answer.status = 304;
        return answer;
    }
    answer.headers.push_back({"Content-Type", std::string(content_type)});
    answer.headers.push_back({"Accept-Ranges", "bytes"});
    answer.headers.push_back({"X-Content-Type-Options", "nosniff"});
    answer.length = stamp.size;
    const std::string* wanted = asp::find_header(request, "Range");
    const std::optional<Range> range =
        wanted && is_range_wanted(request, tag, modified) ? parse_range(*wanted, stamp.size) : std::nullopt;
    if (!range)
        return answer;
    answer.length = range->length;
    answer.offset = range->first;
    const std::string size = std::to_string(stamp.size);
    answer.status = range->length ? 206 : 416;
    const std::string part =
        range->length ? std::to_string(range->first) + '-' + std::to_string(range->first + range->length - 1)
                      : "*";
    answer.headers.push_back({"Content-Range", "bytes " + part + '/' + size});
    return answer;
}

} // namespace tabrixdb::server
