#include "web/mail.h"

#include "automation/error.h"
#include "automation/text.h"
#include "web/page_address.h"

#include <algorithm>

namespace tabrixdb {

namespace {

// A value may be long, and its tag may stand there often.
constexpr std::size_t kMaxBytes = std::size_t{16} * 1024 * 1024;

// The tag of a column that begins a text: "#~name~#" or "#~[name]~#" in any case; "" when it begins with
// another text.
std::string_view tag_at(std::string_view text, const std::string& column) {
    for (const std::string& tag : {"#~" + column + "~#", "#~[" + column + "]~#"})
        if (equal_ignore_case(text.substr(0, tag.size()), tag))
            return text.substr(0, tag.size());
    return {};
}

// Appends the value of the column whose tag begins a text, and gives the tag's length; 0 when none does. The
// tag of a Null stays, so that the gap is seen.
std::size_t append_value(std::string& out, std::string_view text, platform::Recordset& records) {
    for (std::size_t i = 0; i < records.columns().size(); ++i)
        if (const std::string_view tag = tag_at(text, records.columns()[i].name); !tag.empty()) {
            if (records.value(i).is_null())
                out += tag;
            else
                records.append_value(i, out);
            return tag.size();
        }
    return 0;
}

// Goes through the text once: what a value brings along is no tag.
void fill(std::string& text, platform::Recordset& records) {
    constexpr std::string_view kStart = "#~";
    std::string out;
    std::size_t at = 0;
    for (std::size_t start; (start = text.find(kStart, at)) != std::string::npos;) {
        out.append(text, at, start - at);
        const std::size_t tag = append_value(out, std::string_view(text).substr(start), records);
        if (tag == 0)
            out += kStart;
        if (out.size() > kMaxBytes)
            throw Error(14);
        at = start + std::max(tag, kStart.size());
    }
    text = out.append(text, at);
}

std::string base_tag(platform::Request& request, std::string_view relative_path) {
    std::string address = site_address(request);
    if (!relative_path.empty())
        address += "/" + std::string(relative_path);
    // The path is the page's own and may hold anything.
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
