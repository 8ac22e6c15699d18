#include "mail/new_mail.h"

#include "automation/conversions.h"
#include "automation/member.h"
#include "platform/host.h"

namespace tabrixdb::mail {

namespace {

// Mail servers refuse more, and a message is held in memory several times.
constexpr std::size_t kMaxAttachedBytes = std::size_t{25} * 1024 * 1024;

constexpr std::int32_t kHtml = 0;

[[noreturn]] void refuse(const std::string& why) {
    throw Error(kErrorCall, why, std::string(NewMail::kProgramId));
}

} // namespace

const ClassInfo& NewMail::class_info() const {
    static const ClassInfo info(
        "NewMail", kProgramId,
        {property<&NewMail::header, &NewMail::set_header>("Value", {"Name"}).as_default(),
         field<&NewMail::from>("From"), field<&NewMail::to>("To"), field<&NewMail::cc>("Cc"),
         field<&NewMail::bcc>("Bcc"), field<&NewMail::subject>("Subject"), field<&NewMail::body>("Body"),
         field<&NewMail::body_format>("BodyFormat"), field<&NewMail::mail_format>("MailFormat"),
         field<&NewMail::importance>("Importance"), field<&NewMail::content_base>("ContentBase"),
         field<&NewMail::content_location>("ContentLocation"), property<&NewMail::version>("Version"),
         method<&NewMail::attach_file>(
             "AttachFile",
             {"Source", {"FileName", Variant::missing()}, {"EncodingMethod", Variant::missing()}}),
         method<&NewMail::send>("Send", {{"From", Variant::missing()},
                                         {"To", Variant::missing()},
                                         {"Subject", Variant::missing()},
                                         {"Body", Variant::missing()},
                                         {"Importance", Variant::missing()}})});
    return info;
}

void NewMail::send(const Variant& given_from, const Variant& given_to, const Variant& given_subject,
                   const Variant& given_body, const Variant& given_importance) {
    const auto take = [](std::string& property, const Variant& given) {
        if (!given.is_missing())
            property = to_text(given).str();
    };
    take(from, given_from);
    take(to, given_to);
    take(subject, given_subject);
    take(body, given_body);
    if (!given_importance.is_missing())
        importance = to_long(given_importance);
    post();
}

void NewMail::post() {
    const std::vector<Mailbox> senders = parse_addresses(from);
    if (senders.size() > 1)
        refuse("A message has one sender.");
    if (importance < 0 || importance > 2)
        refuse("Importance is 0, 1 or 2.");
    message_.from = senders.empty() ? Mailbox() : senders.front();
    message_.to = parse_addresses(to);
    message_.cc = parse_addresses(cc);
    message_.bcc = parse_addresses(bcc);
    message_.subject = subject;
    message_.body = body;
    message_.html = body_format == kHtml;
    message_.importance = static_cast<Importance>(importance);
    message_.base = content_base;
    message_.location = content_location;
    office_.post(message_);
}

void NewMail::set_header(const std::string& name, const std::string& value) {
    if (!is_free_header(name))
        refuse("Not a header that can be set: '" + name + "'");
    for (auto& [known, text] : message_.headers)
        if (equal_ignore_case(known, name)) {
            text = value;
            return;
        }
    constexpr std::size_t kMost = 100;
    if (message_.headers.size() == kMost)
        refuse("A message has at most 100 headers of its own.");
    message_.headers.emplace_back(name, value);
}

std::string NewMail::header(const std::string& name) const {
    for (const auto& [known, text] : message_.headers)
        if (equal_ignore_case(known, name))
            return text;
    return {};
}

void NewMail::attach_file(const std::string& path, const Variant& name, const Variant&) {
    Attachment attachment;
    attachment.name = name.is_missing() ? path.substr(path.find_last_of("/\\") + 1) : to_text(name).str();
    const auto file = platform::Host::current().file_system().open(path);
    constexpr std::size_t kChunk = 65536;
    for (std::string chunk; !(chunk = file->read(kChunk)).empty();) {
        attachment.bytes += chunk;
        if (attached_bytes_ + attachment.bytes.size() > kMaxAttachedBytes)
            refuse("The attached files have more than 25 MB.");
    }
    attached_bytes_ += attachment.bytes.size();
    message_.attachments.push_back(std::move(attachment));
}

} // namespace tabrixdb::mail
