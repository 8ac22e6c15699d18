#pragma once

#include "automation/error.h"

#include <string>
#include <string_view>
#include <type_traits>

namespace tabrixdb {

// What a failure says, to the site's administrator and, where the host tells them, to visitors.
struct ErrorReport {
    std::string number;      // decimal; empty for the engine's own messages
    std::string description; // HTML
    std::string source;      // HTML
    std::string location;    // HTML: the reporting procedure's label
    // It is about what the visitor asked for, who can do something about it: shown wherever visitors are told
    // nothing of other failures, and no failure of the page.
    bool for_visitor = false;
    std::string way_out = {}; // HTML behind the description, where that is shown
};

// Why something that the visitor sent was not taken: its report is for the visitor.
class InputError final : public Error {
public:
    explicit InputError(const Error& error) : Error(error) {}
};

// Writes the failure into the log, renders the error page into the response and ends the page; mails it to
// AdminEmail. Where visitors are not told what has failed, the error page they get says so in plain words,
// with the reference under which the failure stands in the log. The first report is the one that counts: what
// fails after it, on the way out, is a consequence and is dropped. Returns the reference, "" when dropped.
std::string report(const ErrorReport& error);
// Adds a second report to the one of that reference: it is shown although the page has ended, but only where
// visitors are told of failures.
void report_also(const ErrorReport& addition, std::string_view reference);
// For failures in which the error page may not be usable: one plain line in the page, and one in the log.
void report_plainly(const Error& error, std::string_view raised_from);

// What a visitor hears of a failure without being told what it is. `reference`: where it is found in the log;
// may be "".
std::string visitors_message(std::string_view reference);

// A trapped error's report. Its description or label can hold text from outside (a posted sort expression,
// what the database says of a value), so it is shown as text, never as markup; passwords of connection
// strings are masked.
ErrorReport trapped(const Error& error, std::string_view location);

// The label of mails, of which failures are shown but not mailed, and the report of such a failure.
inline constexpr std::string_view kMailLabel = "Send Email";
ErrorReport mail_failure(const Error& error);

// True once a report or the page itself has ended the page: a procedure made of steps then stops.
bool page_ended();

// The reporting convention of every procedure: run `body`; when it raises an Error, report it under `label`
// and return what is held, a default value. `way_out`: HTML after the description.
template <class Body>
auto guard(std::string_view label, Body&& body, std::string_view way_out = "") -> std::invoke_result_t<Body> {
    try {
        return body();
    } catch (const Error& error) {
        ErrorReport failure = trapped(error, label);
        failure.way_out = way_out;
        failure.for_visitor = failure.for_visitor || !way_out.empty();
        report(failure);
    }
    return std::invoke_result_t<Body>();
}

// A button that posts a command of a grid or source to the page: a way out of what the session keeps and
// fails again and again. `caption`: text.
std::string post_button(std::string_view name, std::string_view command, std::string_view parameters,
                        std::string_view caption);

// `& < > "` as character references.
std::string html_encode(std::string_view text);

} // namespace tabrixdb
