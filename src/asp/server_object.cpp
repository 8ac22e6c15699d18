#include "asp/server_object.h"

#include "asp/asp_error.h"
#include "asp/encoding.h"
#include "asp/page.h"
#include "automation/member.h"

namespace tabrixdb::asp {

namespace {
constexpr std::string_view kObject = "Server object";
}

const ClassInfo& Server::class_info() const {
    static const ClassInfo info(
        "IServer", "",
        {method<&Server::create_object>("CreateObject", {"ProgID"}),
         method<&Server::map>("MapPath", {"Path"}), method<&Server::encode_html>("HTMLEncode", {"Text"}),
         method<&Server::encode_url>("URLEncode", {"Text"}),
         property<&Server::script_timeout, &Server::set_script_timeout>("ScriptTimeout"),
         method<&Server::execute>("Execute", {"Path"}), method<&Server::transfer>("Transfer", {"Path"}),
         method<&Server::last_error>("GetLastError")});
    return info;
}

Page& Server::page() const {
    if (!page_)
        throw asp_error(115, kObject);
    return *page_;
}

std::string Server::map_path(std::string_view virtual_path) {
    if (virtual_path.empty())
        throw asp_error(172, kObject);
    return page().map_path(virtual_path);
}

std::string Server::url_encode(std::string_view text) {
    return asp::url_encode(text);
}

std::string Server::encode_html(const std::string& text) const {
    return html_encode(text);
}

Ref<Object> Server::create_object(const std::string& program_id) {
    try {
        return page().create_object(program_id);
    } catch (const Error& error) {
        if (error.number() != kErrorCannotCreate)
            throw;
        const Error told = asp_error(177, kObject, program_id);
        throw Error(kUnknownClass, told.description(), told.source());
    }
}

std::int32_t Server::script_timeout() const {
    return page().script_timeout();
}

void Server::set_script_timeout(std::int32_t seconds) {
    if (seconds < 1)
        throw Error(kErrorCall);
    page().set_script_timeout(seconds);
}

void Server::execute(const std::string& path) {
    page().execute(path);
}

void Server::transfer(const std::string& path) {
    page().transfer(path);
}

Ref<Object> Server::last_error() const {
    return make_ref<AspErrorObject>(page().last_fault());
}

} // namespace tabrixdb::asp
