#include "engine/report.h"

#include "automation/text.h"
#include "engine/page.h"
#include "web/mail.h"
#include "web/page_address.h"

namespace tabrixdb {

namespace {

std::string built_in_row(std::string_view caption, std::string_view tag) {
    return "<tr><td bgcolor=gray width='77'><b><font face='Verdana' color='#FFFFFF' size='1'>" +
           std::string(caption) +
           "</font>  </b>  </td><td bgcolor=gray width='525'><font face='Verdana' color='#FFFFFF' size='1'>" +
           std::string(tag) + "</font></td></tr>\r\n";
}

std::string built_in_template() {
    return "<table border=0 cellspacing=2 cellpadding=2 align=center width=620>\r\n"
           "<tr><td bgcolor=#0000FF colspan='2' align='center' width='610'>\r\n"
           // Deliberately no blank between the hyphen and the word.
           "<p align='center'><b> <font color='#FFFFFF' face='Verdana' size='2'>TabrixDB -"
           "Error</font></b></p>\r\n"
           "</td></tr>\r\n" +
           built_in_row("Error #", "#~tabrixdb_errnumber~#") +
           built_in_row("Description", "#~tabrixdb_errdescription~#") +
           built_in_row("Source", "#~tabrixdb_errsource~#") +
           built_in_row("Caused In", "#~tabrixdb_errlocation~#") + "</table>\r\n";
}

std::string render(const ErrorReport& error) {
    std::string& shape = thread_texts().error_template;
    if (shape.empty())
        shape = built_in_template();
    std::string page = replace_ignore_case(shape, "#~tabrixdb_errnumber~#", error.number);
    page = replace_ignore_case(page, "#~tabrixdb_errdescription~#", error.description);
    page = replace_ignore_case(page, "#~tabrixdb_errsource~#", error.source);
    page = replace_ignore_case(page, "#~tabrixdb_errlocation~#", error.location);
    if (contains_ignore_case(page, "#~tabrixdb_url~#"))
        page = replace_ignore_case(page, "#~tabrixdb_url~#", html_encode(page_address(request(), true)));
    return page;
}

void show(const ErrorReport& error);

void mail_to_admin(const ErrorReport& error, const std::string& page) {
    const std::string& admin = thread_texts().admin_email;
    // A failure of the mail itself is never mailed.
    if (admin.empty() || error.location == kMailLabel)
        return;
    const std::string line =
        error.number + " " + error.description + " | " + error.source + " | " + error.location;
    if (!platform::Host::current().may_mail_error(line))
        return;
    try {
        send_mail(platform::Host::current(),
                  {.from = admin, .to = admin, .subject = "TabrixDb Error", .body = page, .format = "HTML"});
    } catch (const Error& failure) {
        show(mail_failure(failure));
    }
}

void show(const ErrorReport& error) {
    // The page may not be usable when this fails, so what fails here is one plain line.
    try {
        const std::string page = render(error);
        response().write(page);
        response().end();
        mail_to_admin(error, page);
    } catch (const Error& failure) {
        response().write(std::to_string(failure.number()) + " " + html_encode(failure.description()) +
                         " Raised From DisplayError");
    }
}

} // namespace

void report(const ErrorReport& error) {
    if (!page_ended())
        show(error);
}

void report_also(const ErrorReport& addition) {
    show(addition);
}

ErrorReport trapped(const Error& error, std::string_view location) {
    return {std::to_string(error.number()), html_encode(error.description()), html_encode(error.source()),
            html_encode(location)};
}

ErrorReport mail_failure(const Error& error) {
    ErrorReport failure = trapped(error, kMailLabel);
    failure.description += ". CDONTS Objects may not be installed!";
    return failure;
}

bool page_ended() {
    return response().ended();
}

std::string post_button(std::string_view name, std::string_view command, std::string_view parameters,
                        std::string_view caption) {
    const auto hidden = [&](std::string_view suffix, std::string_view value) {
        return "<input type=\"hidden\" name=\"" + html_encode(name) + std::string(suffix) + "\" value=\"" +
               html_encode(value) + "\">";
    };
    return "<form method=\"post\">" + hidden("_command", command) + hidden("_params", parameters) +
           "<button>" + html_encode(caption) + "</button></form>";
}

std::string html_encode(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (const char c : text) {
        switch (c) {
        case '&':
            out += "&amp;";
            break;
        case '<':
            out += "&lt;";
            break;
        case '>':
            out += "&gt;";
            break;
        case '"':
            out += "&quot;";
            break;
        default:
            out += c;
        }
    }
    return out;
}

} // namespace tabrixdb
