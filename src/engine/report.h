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

// Renders the error page into the response and ends the page. The first report is the one that is shown:
// what fails after it, on the way out, is a consequence and is dropped.
void report(const ErrorReport& error);
// Adds a second report to the first: it is shown although the page has ended.
void report_also(const ErrorReport& addition);

// A trapped error's report. Its description or label can hold text from outside (a posted sort expression,
// what the database says of a value), so it is shown as text, never as markup.
ErrorReport trapped(const Error& error, std::string_view location);

// True once a report or the page itself has ended the page: a procedure made of steps then stops.
bool page_ended();

// The reporting convention of every procedure: run `body`; when it raises an Error, report it under `label`
// and return what is held, a default value.
template <class Body>
auto guard(std::string_view label, Body&& body) -> std::invoke_result_t<Body> {
    try {
        return body();
    } catch (const Error& error) {
        report(trapped(error, label));
    }
    return std::invoke_result_t<Body>();
}

// `& < > "` as character references.
std::string html_encode(std::string_view text);

} // namespace tabrixdb
