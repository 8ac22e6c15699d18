#include "asp/disk_paths.h"
#include "asp/page.h"
#include "automation/conversions.h"
#include "automation/log_text.h"

#include <array>
#include <random>

// What a page tells the site's log of itself, and what it does not tell its visitors.
namespace tabrixdb::asp {

namespace {

// Nobody reads more of one failure, and whoever makes pages fail shall not fill the disk with it.
constexpr std::size_t kMaxFailureBytes = 4000;
// Of a user's name.
constexpr std::size_t kMaxUserBytes = 100;

// 40 random bits, without letters and digits that are taken for others.
std::string new_reference() {
    constexpr std::string_view kSigns = "23456789ABCDEFGHJKLMNPQRSTUVWXYZ";
    constexpr int kLength = 8;
    std::random_device random;
    std::string reference;
    for (int i = 0; i < kLength; ++i)
        reference += kSigns[random() % kSigns.size()];
    return reference;
}

} // namespace

std::string Page::log_failure_of(std::string_view file, std::string_view failure,
                                 std::string_view reference) {
    std::string name = reference.empty() ? new_reference() : std::string(reference);
    const std::string& page = paths_.front();
    site_.log(std::to_string(response_->status_code()) + ' ' + name + ' ' + std::string(failure) +
              (file == page ? "" : " (page " + page + ')'));
    return name;
}

std::string Page::log_failure(std::string_view failure, std::string_view reference) {
    const auto place = machine_ ? machine_->whereabouts() : std::nullopt;
    std::string line = "TabrixDb " + shortened(without_passwords(failure), kMaxFailureBytes) + " in ";
    if (!place)
        return log_failure_of(paths_.back(), line + paths_.back(), reference);
    line += place->file + ", line " + std::to_string(place->line);
    return log_failure_of(place->file, line, reference);
}

std::string Page::without_disk_paths(std::string_view text) {
    return asp::without_disk_paths(text, site_.paths.root());
}

std::optional<std::string> Page::logged_visitor() {
    if (!site_.settings.log_changes)
        return std::nullopt;
    std::string number = "none", user;
    if (const SessionState* const session = lease_.session()) {
        number = std::to_string(session->number);
        if (const Variant value = session->values.get(site_.settings.log_user_key);
            value.is_string() || value.is_number())
            append_text(user, value);
    }
    return "session=" + number + " address=" + request_data_->remote_address +
           " user=" + quoted_line(user, kMaxUserBytes) +
           " page=" + quoted_line(paths_.front(), paths_.front().size());
}

} // namespace tabrixdb::asp
