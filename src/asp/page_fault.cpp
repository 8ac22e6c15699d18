#include "asp/page_fault.h"

#include "asp/encoding.h"
#include "asp/http.h"
#include "automation/log_text.h"
#include "automation/member.h"

#include <algorithm>
#include <cstdio>

namespace tabrixdb::asp {

namespace {

// Run-time error numbers of the script stand in the low half of &H800A0000.
constexpr std::uint32_t kScriptFacility = 0x800A0000;

// Of a description in the log: it can repeat what a visitor has sent.
constexpr std::size_t kMaxSummaryBytes = 4000;

// "ADODB.Recordset" as it is; the script engine's own name of itself ends with the word that follows anyway.
std::string_view without_error(std::string_view source) {
    constexpr std::string_view kWord = " error";
    return source.ends_with(kWord) ? source.substr(0, source.size() - kWord.size()) : source;
}

std::string four_digits(int code) {
    char text[16];
    std::snprintf(text, sizeof text, "%04d", code);
    return text;
}

// Tabs and wide characters would move the caret; a blank for each unit before it is close enough to read.
std::string caret_line(std::int32_t column) {
    constexpr std::int32_t kMaxDashes = 400;
    return std::string(static_cast<std::size_t>(std::clamp(column - 1, 0, kMaxDashes)), '-') + '^';
}

} // namespace

PageFault fault_of(const vbscript::ScriptError& error) {
    std::string_view source = error.source();
    PageFault fault;
    fault.asp_code = split_asp_code(source);
    const auto number = static_cast<std::uint32_t>(error.number());
    fault.number = static_cast<std::int32_t>(number <= 0xFFFF ? kScriptFacility + number : number);
    fault.category = without_error(error.compile_error ? vbscript::kCompileErrorSource
                                   : source.empty()    ? vbscript::kRuntimeErrorSource
                                                       : source);
    fault.description = without_passwords(error.description());
    if (fault.asp_code)
        fault.asp_description = asp_fault(fault.asp_code).text;
    fault.file = error.file;
    fault.line = error.position.line;
    fault.column = error.position.column;
    if (error.compile_error)
        fault.source_line = without_passwords(error.source_line);
    return fault;
}

PageFault fault_of(const PageError& error) {
    PageFault fault = fault_of(error.code, error.file);
    fault.description = without_passwords(error.description());
    fault.line = error.line;
    return fault;
}

PageFault fault_of(int asp_code, const std::string& file) {
    const AspFault& texts = asp_fault(asp_code);
    PageFault fault;
    fault.asp_code = asp_code;
    fault.number = kObjectError;
    fault.category = "Active Server Pages";
    fault.description = std::string(texts.title) + ". " + std::string(texts.text);
    fault.asp_description = texts.text;
    fault.file = file;
    return fault;
}

std::string PageFault::number_text() const {
    char text[16];
    std::snprintf(text, sizeof text, "%08x", static_cast<std::uint32_t>(number));
    return text;
}

namespace {

std::string head_of(const PageFault& fault) {
    if (fault.category == "Active Server Pages")
        return fault.category + " error 'ASP " + four_digits(fault.asp_code) + "'";
    const std::string asp = fault.asp_code ? "ASP " + four_digits(fault.asp_code) + " : " : std::string();
    return fault.category + " error '" + asp + fault.number_text() + "'";
}

std::string place_of(const PageFault& fault) {
    std::string place = fault.file;
    if (fault.line > 0)
        place += ", line " + std::to_string(fault.line);
    if (fault.column > 0)
        place += ", column " + std::to_string(fault.column);
    return place;
}

} // namespace

std::string PageFault::summary() const {
    return head_of(*this) + ' ' + shortened(description, kMaxSummaryBytes) +
           (file.empty() ? "" : " in " + place_of(*this));
}

std::string PageFault::html() const {
    std::string out =
        "\r\n<p>" + html_encode(head_of(*this)) + "</p>\r\n<p>" + html_encode(description) + "</p>\r\n";
    if (!file.empty())
        out += "<p>" + html_encode(place_of(*this)) + "</p>\r\n";
    if (!source_line.empty())
        out += "<pre>" + html_encode(source_line) + "\r\n" + caret_line(column) + "</pre>\r\n";
    return out;
}

std::string message_page(int status, std::string_view html) {
    const std::string title = std::to_string(status) + ' ' + std::string(reason_phrase(status));
    return "<!DOCTYPE html>\r\n<html lang=\"en\">\r\n<head><meta charset=\"utf-8\"><title>" + title +
           "</title></head>\r\n<body>\r\n<h1>" + title + "</h1>\r\n" + std::string(html) +
           "</body>\r\n</html>\r\n";
}

const ClassInfo& AspErrorObject::class_info() const {
    static const ClassInfo info(
        "IASPError", "",
        {property<&AspErrorObject::asp_code>("ASPCode"), property<&AspErrorObject::number>("Number"),
         property<&AspErrorObject::source>("Source"), property<&AspErrorObject::category>("Category"),
         property<&AspErrorObject::file>("File"), property<&AspErrorObject::line>("Line"),
         property<&AspErrorObject::column>("Column"), property<&AspErrorObject::description>("Description"),
         property<&AspErrorObject::asp_description>("ASPDescription")});
    return info;
}

std::string AspErrorObject::asp_code() const {
    return fault_.asp_code ? "ASP " + four_digits(fault_.asp_code) : std::string();
}

} // namespace tabrixdb::asp
