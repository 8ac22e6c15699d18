#include "engine/report.h"

#include "automation/log_text.h"
#include "automation/text.h"
#include "engine/page.h"
#include "web/mail.h"
#include "web/page_address.h"

#include <algorithm>
#include <utility>

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

// HTML as the plain text that a log holds: tags are left out.
std::string plain_text(std::string_view html) {
    static constexpr std::pair<std::string_view, char> kEncoded[] = {
        {"&amp;", '&'}, {"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'}};
    std::string text;
    for (std::size_t at = 0; at < html.size();) {
        const std::string_view rest = html.substr(at);
        const auto encoded =
            std::ranges::find_if(kEncoded, [&](const auto& one) { return rest.starts_with(one.first); });
        if (rest[0] == '<') {
            at = std::min(html.find('>', at), html.size() - 1) + 1;
        } else if (encoded != std::end(kEncoded)) {
            text += encoded->second;
            at += encoded->first.size();
        } else {
            text += rest[0];
            ++at;
        }
    }
    return text;
}

// For the log: what is empty is left out.
std::string in_one_line(const ErrorReport& error) {
    std::string line = error.number.empty() ? "" : "error " + error.number + " ";
    for (const std::string* part : {&error.description, &error.source, &error.location})
        if (!part->empty())
            line += (part == &error.description ? "" : " | ") + plain_text(*part);
    return line;
}

// The report as the response gets it.
ErrorReport for_visitors(ErrorReport error) {
    platform::Host& host = platform::Host::current();
    for (std::string* part : {&error.description, &error.source, &error.location})
        *part = host.without_disk_paths(*part);
    error.description += error.way_out;
    return error;
}

// An error page has four places to fill. The reference stands in that of the number, where a page that shows
// no description has it, too; engine's own messages leave source and number empty, so pages bear it.
ErrorReport without_details(std::string_view reference) {
    return {std::string(reference), visitors_message(reference), "", ""};
}

std::string show(const ErrorReport& error, std::string_view first);

void mail_to_admin(const ErrorReport& error, const std::string& reference) {
    const std::string& admin = thread_texts().admin_email;
    // A failure of the mail itself is never mailed.
    if (admin.empty() || error.location == kMailLabel)
        return;
    const std::string line = reference + ' ' + in_one_line(error);
    if (!platform::Host::current().may_mail_error(line))
        return;
    std::string body = render(error);
    if (!reference.empty())
        body += "<p>Reference: " + reference + "</p>\r\n";
    try {
        send_mail(platform::Host::current(),
                  {.from = admin, .to = admin, .subject = "TabrixDb Error", .body = body, .format = "HTML"});
    } catch (const Error& failure) {
        show(mail_failure(failure), reference);
    }
}

// `first`: the reference of the report that this one follows, or "".
std::string show(const ErrorReport& error, std::string_view first) {
    std::string reference;
    // The page may not be usable when this fails, so what fails here is one plain line.
    try {
        platform::Host& host = platform::Host::current();
        if (!error.for_visitor)
            response().set_failed();
        reference = host.log_failure(in_one_line(error), first);
        if (error.for_visitor || host.tells_visitors())
            response().write(render(for_visitors(error)));
        else if (first.empty())
            response().write(render(without_details(reference)));
        response().end();
        mail_to_admin(error, reference);
    } catch (const Error& failure) {
        report_plainly(failure, "DisplayError");
    }
    return reference;
}

} // namespace

std::string report(const ErrorReport& error) {
    return page_ended() ? "" : show(error, "");
}

void report_also(const ErrorReport& addition, std::string_view reference) {
    show(addition, reference);
}

void report_plainly(const Error& error, std::string_view raised_from) {
    platform::Host& host = platform::Host::current();
    const std::string line = std::to_string(error.number()) + " " + without_passwords(error.description()) +
                             " Raised From " + std::string(raised_from);
    const std::string reference = host.log_failure(line, "");
    response().write(
        html_encode(host.tells_visitors() ? host.without_disk_paths(line) : visitors_message(reference)));
}

std::string visitors_message(std::string_view reference) {
    std::string message = "This page could not be finished, because something went wrong on the site. Please "
                          "try again later.";
    if (!reference.empty())
        message.append(" If it happens again, tell the site's administrator this reference: ")
            .append(reference)
            .append(".");
    return message;
}

ErrorReport trapped(const Error& error, std::string_view location) {
    const auto shown = [](std::string_view text) { return html_encode(without_passwords(text)); };
    return {std::to_string(error.number()), shown(error.description()), shown(error.source()),
            shown(location), dynamic_cast<const InputError*>(&error) != nullptr};
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
