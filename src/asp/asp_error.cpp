#include "asp/asp_error.h"

#include <algorithm>

namespace tabrixdb::asp {

namespace {

constexpr AspFault kFaults[] = {
    {104, "Operation not allowed", "The request has more fields than a page may be given."},
    {113, "Script timed out",
     "The script ran longer than it may. Server.ScriptTimeout gives a page more time, script_seconds in "
     "tabrixdb.toml gives it to all pages."},
    {115, "Unexpected error", "Something went wrong while the page was worked on."},
    {116, "Missing close of script delimiter", "A script block is not closed by '%>'."},
    {117, "Missing close of script tag", "A script tag is not closed."},
    {126, "Include file not found", "The file that the page includes is not there."},
    {127, "Missing close of HTML comment", "A comment, or an include in it, is not closed by '-->'."},
    {128, "Missing File or Virtual attribute",
     "An include names its file with file=\"...\" or virtual=\"...\"."},
    {129, "Unknown scripting language", "Pages are written in VBScript."},
    {130, "Invalid File attribute",
     "A file attribute is relative to the page and does not start with a slash."},
    {132, "Compilation error", "The page could not be made ready to run."},
    {141, "Page command repeated", "A page has one <%@ %> directive, at its beginning."},
    {156, "Header error", "The headers have left already; set them before anything is written or flushed."},
    {157, "Buffering on", "Buffering cannot be changed once something was written."},
    {158, "Missing URL", "A redirection needs an address."},
    {159, "Buffering off", "This needs a buffered page, and buffering is off."},
    {172, "Invalid path", "MapPath takes a virtual path, not a physical one."},
    {173, "Invalid path character", "The path has a character that no path may have."},
    {175, "Disallowed path", "The path leads out of the site."},
    {177, "Server.CreateObject failed", "No class has this name."},
    {194, "Error in OnStartPage", "The object could not be started."},
    {197, "Disallowed object use", "An object cannot be kept there."},
    {206, "Cannot call BinaryRead", "The form was read before, by Request.Form or Request(...)."},
    {207, "Cannot use Request.Form", "The body was read before, by Request.BinaryRead."},
    {208, "Cannot use generic Request collection", "The body was read before, by Request.BinaryRead."},
    {221, "Invalid @ command directive", "The page's <%@ %> directive says something that is not known."},
    {230, "Server.Execute failed", "The page could not be executed within this one."},
    {251, "Response buffer limit exceeded", "The page wrote more than one response may hold."},
};

constexpr std::string_view kCodeMark = ", ASP ";

} // namespace

const AspFault& asp_fault(int code) noexcept {
    const auto found = std::ranges::find(kFaults, code, &AspFault::code);
    return found != std::end(kFaults) ? *found : asp_fault(115);
}

Error asp_error(int code, std::string_view object, std::string_view detail) {
    const AspFault& fault = asp_fault(code);
    std::string text(fault.title);
    if (!detail.empty())
        text.append(": ").append(detail);
    text.append(". ").append(fault.text);
    std::string number = std::to_string(code);
    number.insert(0, 4 - std::min<std::size_t>(4, number.size()), '0');
    return Error(kObjectError, std::move(text), std::string(object).append(kCodeMark).append(number));
}

int split_asp_code(std::string_view& source) noexcept {
    const std::size_t mark = source.rfind(kCodeMark);
    if (mark == std::string_view::npos || source.size() != mark + kCodeMark.size() + 4)
        return 0;
    int code = 0;
    for (const char digit : source.substr(mark + kCodeMark.size())) {
        if (digit < '0' || digit > '9')
            return 0;
        code = code * 10 + (digit - '0');
    }
    source = source.substr(0, mark);
    return code;
}

PageError::PageError(int page_code, std::string_view detail, std::string page, std::int32_t line_number)
    : Error(asp_error(page_code, "Active Server Pages", detail)),
      code(page_code),
      file(std::move(page)),
      line(line_number) {}

} // namespace tabrixdb::asp
