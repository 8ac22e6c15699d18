#include "web/mail.h"

#include "automation/text.h"
#include "web/page_address.h"

namespace tabrixdb {

namespace {

// Values may hold tags that are filled in their turn.
constexpr std::size_t kMaxBytes = std::size_t{16} * 1024 * 1024;

void fill(std::string& text, platform::Recordset& records) {
    for (std::size_t i = 0; i < records.columns().size(); ++i) {
        const std::string& name = records.columns()[i].name;
        for (const std::string& tag : {"#~" + name + "~#", "#~[" + name + "]~#"}) {
            // The tag of a Null stays, so that the gap is seen.
            if (!contains_ignore_case(text, tag) || records.value(i).is_null())
                continue;
            std::string value;
            records.append_value(i, value);
            text = replace_ignore_case(text, tag, value, kMaxBytes);
        }
    }
}

std::string base_tag(platform::Request& request, std::string_view relative_path) {
    std::string address = site_address(request);
    if (!relative_path.empty())
        address += "/" + std::string(relative_path);
    // The host's name is what the client says it is.
    address = replace_all(replace_all(replace_all(address, "\"", "%22"), "<", "%3C"), ">", "%3E");
    return "<BASE HREF=\"" + address + "\" >\r\n";
}

} // namespace

void send_mail(platform::Host& host, MailRequest mail) {
    const bool html = equal_ignore_case(mail.format, "HTML");
    if (html && !contains_ignore_case(mail.body, "<BASE HREF"))
        mail.body.insert(0, base_tag(*host.page().request, mail.relative_path));
    if (mail.records) {
        fill(mail.body, *mail.records);
        fill(mail.subject, *mail.records);
    }
    host.send_mail(
        {std::move(mail.from), std::move(mail.to), std::move(mail.subject), std::move(mail.body), html});
}

} // namespace tabrixdb
