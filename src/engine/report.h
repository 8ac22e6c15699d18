#pragma once

#include "automation/error.h"

#include <string>
#include <string_view>
#include <type_traits>

namespace tabrixdb {

// The page that a failure shows.
struct ErrorReport {
    std::string number;      // decimal; empty for the engine's own messages
    std::string description; // HTML
    std::string source;      // HTML
    std::string location;    // the reporting procedure's label
};

// Renders the error page into the response and ends the page; mails it to AdminEmail. The first report is the
// one that is shown: what fails after it, on the way out, is a consequence and is dropped.
void report(const ErrorReport& error);
// Adds a second report to the first: it is shown although the page has ended.
void report_also(const ErrorReport& addition);

// A trapped error's report. Its description or label can hold text from outside (a posted sort expression,
// what the database says of a value), so it is shown as text, never as markup.
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
        failure.description += way_out;
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
