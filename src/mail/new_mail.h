#pragma once

#include "automation/object.h"
#include "mail/post_office.h"

#include <cstdint>
#include <string>

namespace tabrixdb::mail {

// CDONTS.NewMail, the mail object that pages know: properties of one message, and Send.
class NewMail final : public Object {
public:
    static constexpr std::string_view kProgramId = "CDONTS.NewMail";

    // `office` outlives this.
    explicit NewMail(const PostOffice& office) : office_(office) {}

    const ClassInfo& class_info() const override;

    std::string from, to, cc, bcc, subject, body;
    std::int32_t body_format = 1; // 0: HTML, 1: plain text
    std::int32_t mail_format = 1; // 0: MIME, 1: text; kept for pages that set it, every message is MIME
    std::int32_t importance = 1;  // 0 low, 1 normal, 2 high
    std::string content_base, content_location;

    // Error 5 for what is no address, and as PostOffice::post().
    void post();

private:
    // Arguments that are given take the place of the properties.
    void send(const Variant& from, const Variant& to, const Variant& subject, const Variant& body,
              const Variant& importance);
    // A further header; Error 5 for one that the message writes itself.
    void set_header(const std::string& name, const std::string& value);
    std::string header(const std::string& name) const;
    // A file by its physical path, under its own or another name. Error 53 when it is not there, 5 when all
    // of them are too large.
    void attach_file(const std::string& path, const Variant& name, const Variant& encoding);

    std::string version() const { return "1.2"; }

    Message message_; // headers and attachments
    std::size_t attached_bytes_ = 0;
    const PostOffice& office_;
};

} // namespace tabrixdb::mail
