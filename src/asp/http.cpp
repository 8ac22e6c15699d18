#include "asp/http.h"

#include "automation/text.h"

#include <algorithm>
#include <array>

namespace tabrixdb::asp {

namespace {

struct Phrase {
    int status;
    std::string_view text;
};

constexpr Phrase kPhrases[] = {
    {200, "OK"},
    {201, "Created"},
    {204, "No Content"},
    {206, "Partial Content"},
    {301, "Moved Permanently"},
    {302, "Found"},
    {303, "See Other"},
    {304, "Not Modified"},
    {307, "Temporary Redirect"},
    {400, "Bad Request"},
    {401, "Unauthorized"},
    {403, "Forbidden"},
    {404, "Not Found"},
    {405, "Method Not Allowed"},
    {408, "Request Timeout"},
    {413, "Content Too Large"},
    {416, "Range Not Satisfiable"},
    {421, "Misdirected Request"},
    {431, "Request Header Fields Too Large"},
    {500, "Internal Server Error"},
    {501, "Not Implemented"},
    {503, "Service Unavailable"},
};

// strftime and strptime would use the process's language.
constexpr std::array<const char*, 7> kDays = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
constexpr std::array<const char*, 12> kMonths = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                 "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

} // namespace

const std::string* find_header(const Headers& headers, std::string_view name) noexcept {
    const auto found =
        std::ranges::find_if(headers, [&](const Header& h) { return equal_ignore_case(h.name, name); });
    return found == headers.end() ? nullptr : &found->value;
}

HostParts split_host(std::string_view host) noexcept {
    const std::size_t bracket = host.find(']');
    const std::size_t colon = host.find(':', bracket == std::string_view::npos ? 0 : bracket);
    if (colon == std::string_view::npos)
        return {host, {}};
    return {host.substr(0, colon), host.substr(colon + 1)};
}

std::string_view reason_phrase(int status) noexcept {
    const auto found = std::ranges::find(kPhrases, status, &Phrase::status);
    return found == std::end(kPhrases) ? std::string_view() : found->text;
}

std::string http_date(std::time_t time) {
    std::tm parts{};
    gmtime_r(&time, &parts);
    char text[64];
    std::snprintf(text, sizeof text, "%s, %02d %s %04d %02d:%02d:%02d GMT",
                  kDays[static_cast<std::size_t>(parts.tm_wday)], parts.tm_mday,
                  kMonths[static_cast<std::size_t>(parts.tm_mon)], parts.tm_year + 1900, parts.tm_hour,
                  parts.tm_min, parts.tm_sec);
    return text;
}

std::optional<std::time_t> parse_http_date(const std::string& text) {
    std::tm parts{};
    char day[4] = "", month[4] = "";
    int length = 0;
    if (std::sscanf(text.c_str(), "%3[A-Za-z], %2d %3[A-Za-z] %4d %2d:%2d:%2d GMT%n", day, &parts.tm_mday,
                    month, &parts.tm_year, &parts.tm_hour, &parts.tm_min, &parts.tm_sec, &length) != 7 ||
        static_cast<std::size_t>(length) != text.size())
        return std::nullopt;
    const auto found = std::ranges::find(kMonths, std::string_view(month));
    if (found == kMonths.end())
        return std::nullopt;
    parts.tm_mon = static_cast<int>(found - kMonths.begin());
    parts.tm_year -= 1900;
    return timegm(&parts);
}

} // namespace tabrixdb::asp
