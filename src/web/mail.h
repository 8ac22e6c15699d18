#pragma once

#include "platform/host.h"

#include <string>
#include <string_view>

namespace tabrixdb {

// How a page asks for a mail.
struct MailRequest {
    std::string from, to, subject, body;
    std::string_view format = "TEXT";       // "HTML" in any case; anything else is plain text
    platform::Recordset* records = nullptr; // fills the tags of its columns from its current record
    std::string_view relative_path = "";    // below the site, from where relative links of an HTML body count
};

// Sends it through the host's mail object. An HTML body without a "<BASE HREF" gets one in front, the site's
// address.
// "#~name~#" and "#~[name]~#" in body and subject become the value of a column that is not Null, as it is.
// Error 14 when that makes a text of more than 16 MB; the mail object's errors.
void send_mail(platform::Host& host, MailRequest mail);

} // namespace tabrixdb
