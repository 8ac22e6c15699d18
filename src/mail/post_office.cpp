#include "mail/post_office.h"

#include "automation/error.h"
#include "platform/host.h"

#include <algorithm>
#include <filesystem>
#include <random>

namespace tabrixdb::mail {

namespace {

constexpr std::string_view kSource = "CDONTS.NewMail";

std::string random_id() {
    std::random_device random;
    std::string id;
    for (int i = 0; i < 16; ++i)
        id += "0123456789abcdefghijklmnopqrstuv"[random() % 32];
    return id;
}

std::vector<std::string> recipients_of(const Message& message) {
    std::vector<std::string> addresses;
    for (const auto* list : {&message.to, &message.cc, &message.bcc})
        for (const Mailbox& mailbox : *list)
            addresses.push_back(mailbox.address);
    return addresses;
}

} // namespace

PostOffice::PostOffice(Settings settings, const std::string& root)
    : settings_(std::move(settings)),
      pickup_((std::filesystem::path(root) / settings_.pickup).string()) {}

void PostOffice::post(const Message& message) const {
    if (message.from.address.empty())
        throw Error(kErrorCall, "The message has no sender.", std::string(kSource));
    const std::vector<std::string> recipients = recipients_of(message);
    if (recipients.empty())
        throw Error(kErrorCall, "The message has no recipient.", std::string(kSource));
    const std::string id = random_id();
    const bool by_file = settings_.server.address.empty();
    const std::string text = to_mime(message, std::chrono::system_clock::now(), id, by_file);
    if (!by_file)
        return send_by_smtp(settings_.server, message.from.address, recipients, text);
    platform::FileSystem& files = platform::Host::current().file_system();
    files.make_folder(pickup_);
    const auto file = files.create(pickup_ + '/' + id + ".eml");
    file->write(text);
    file->finish();
}

bool PostOffice::admit_error(std::string_view page) {
    const auto now = std::chrono::steady_clock::now();
    const std::lock_guard lock(mutex_);
    while (!errors_.empty() && now - errors_.front().time >= std::chrono::hours(1))
        errors_.pop_front();
    const auto of_page = std::ranges::count(errors_, page, &ErrorMail::page);
    if (errors_.size() >= settings_.errors_per_hour ||
        of_page >= std::max<std::int64_t>(settings_.errors_per_hour / 4, 1))
        return false;
    errors_.push_back({now, std::string(page)});
    return true;
}

} // namespace tabrixdb::mail
