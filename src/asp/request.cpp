#include "asp/request.h"

#include "asp/asp_error.h"
#include "automation/conversions.h"
#include "automation/member.h"

#include <algorithm>

namespace tabrixdb::asp {

namespace {

constexpr std::string_view kObject = "Request object";

Request::Pairs pairs_of(const MultiMap& items) {
    Request::Pairs pairs;
    pairs.reserve(items.entries().size());
    for (const MultiMap::Entry& entry : items.entries())
        pairs.emplace_back(entry.name, entry.joined());
    return pairs;
}

// "HTTP_USER_AGENT" of "User-Agent".
std::string variable_name(std::string_view header) {
    std::string name = "HTTP_" + upper(header);
    std::ranges::replace(name, '-', '_');
    return name;
}

MultiMap server_variables(const HttpRequest& http, const RequestPlace& place) {
    MultiMap all;
    const auto header = [&](std::string_view name) {
        const std::string* value = find_header(http.headers, name);
        return value ? *value : std::string();
    };
    const std::string host = header("Host");
    std::string all_http, all_raw;
    for (const Header& h : http.headers) {
        all_http += variable_name(h.name) + ':' + h.value + '\n';
        all_raw += h.name + ": " + h.value + "\r\n";
    }
    all.add("ALL_HTTP", std::move(all_http));
    all.add("ALL_RAW", std::move(all_raw));
    all.add("APPL_MD_PATH", "");
    all.add("APPL_PHYSICAL_PATH", place.site_root + '/');
    all.add("AUTH_PASSWORD", "");
    all.add("AUTH_TYPE", "");
    all.add("AUTH_USER", "");
    all.add("CONTENT_LENGTH", std::to_string(http.body.size()));
    all.add("CONTENT_TYPE", header("Content-Type"));
    all.add("GATEWAY_INTERFACE", "CGI/1.1");
    all.add("HTTPS", http.secure ? "on" : "off");
    all.add("INSTANCE_ID", "1");
    all.add("LOCAL_ADDR", http.server_address);
    all.add("LOGON_USER", "");
    all.add("PATH_INFO", http.path);
    all.add("PATH_TRANSLATED", place.physical_path);
    all.add("QUERY_STRING", http.query);
    all.add("REMOTE_ADDR", http.remote_address);
    all.add("REMOTE_HOST", http.remote_address);
    all.add("REMOTE_USER", "");
    all.add("REQUEST_METHOD", http.method);
    all.add("SCRIPT_NAME", http.path);
    all.add("SERVER_NAME", std::string(split_host(host).name));
    all.add("SERVER_PORT", std::to_string(http.server_port));
    all.add("SERVER_PORT_SECURE", http.secure ? "1" : "0");
    all.add("SERVER_PROTOCOL", http.protocol);
    all.add("SERVER_SOFTWARE", "TabrixDb");
    all.add("URL", http.path);
    for (const Header& h : http.headers)
        all.add(variable_name(h.name), h.value);
    return all;
}

} // namespace

const ClassInfo& Request::class_info() const {
    static const ClassInfo info("IRequest", "",
                                {property<&Request::item>("Item", {"Name"}).as_default(),
                                 property<&Request::query>("QueryString"), property<&Request::form>("Form"),
                                 property<&Request::cookies>("Cookies"),
                                 property<&Request::variables>("ServerVariables"),
                                 property<&Request::client_certificate>("ClientCertificate"),
                                 property<&Request::total_bytes>("TotalBytes"),
                                 method<&Request::binary_read>("BinaryRead", {"Count"})});
    return info;
}

// --- Collections -----------------------------------------------------------------------------------

Ref<RequestDictionary> Request::query() {
    if (!query_)
        query_ =
            make_ref<RequestDictionary>(MultiMap(decode_form(http_->query, place_.code_page)), http_->query);
    return query_;
}

bool Request::is_form() const {
    const std::string* type = find_header(http_->headers, "Content-Type");
    return !type || contains_ignore_case(*type, "application/x-www-form-urlencoded");
}

Ref<RequestDictionary> Request::form() {
    if (binary_)
        throw asp_error(207, kObject);
    if (!form_) {
        // Uploads (multipart) are read by BinaryRead; only the other kind of form has fields here.
        form_ = is_form() ? make_ref<RequestDictionary>(MultiMap(decode_form(http_->body, place_.code_page)),
                                                        http_->body)
                          : make_ref<RequestDictionary>(MultiMap(), std::string());
    }
    return form_;
}

Ref<RequestCookies> Request::cookies() {
    if (!cookies_) {
        std::vector<std::string> sent;
        for (const Header& header : http_->headers)
            if (equal_ignore_case(header.name, "Cookie"))
                sent.push_back(header.value);
        cookies_ = make_ref<RequestCookies>(sent, place_.code_page);
    }
    return cookies_;
}

Ref<RequestDictionary> Request::variables() {
    if (!variables_)
        variables_ = make_ref<RequestDictionary>(server_variables(*http_, place_), std::string());
    return variables_;
}

// The server speaks no TLS itself, so no client ever has a certificate.
Ref<RequestDictionary> Request::client_certificate() {
    if (!certificate_)
        certificate_ = make_ref<RequestDictionary>(MultiMap(), std::string());
    return certificate_;
}

Variant Request::item(const Variant& name) {
    const Text wanted = to_text(name);
    if (const MultiMap::Entry* entry = query()->items().find(wanted.view()))
        return make_ref<StringList>(entry->values);
    if (binary_)
        throw asp_error(208, kObject);
    // An upload may be read by BinaryRead after this; asking its empty form does not take the body.
    if (is_form())
        if (const MultiMap::Entry* entry = form()->items().find(wanted.view()))
            return make_ref<StringList>(entry->values);
    if (Ref<RequestCookie> cookie = cookies()->named(wanted.view()))
        return cookie;
    if (const MultiMap::Entry* entry = variables()->items().find(wanted.view()))
        return make_ref<StringList>(entry->values);
    return Variant();
}

// --- The engine's view -----------------------------------------------------------------------------

std::string Request::value(std::string_view name) {
    if (auto value = query_value(name))
        return *value;
    if (auto value = form_value(name))
        return *value;
    if (const std::string* cookie = cookies()->value(name))
        return *cookie;
    return server_variable(name);
}

std::optional<std::string> Request::form_value(std::string_view name) {
    if (binary_ || !is_form())
        return std::nullopt;
    const MultiMap::Entry* entry = form()->items().find(name);
    return entry ? std::optional(entry->joined()) : std::nullopt;
}

std::optional<std::string> Request::query_value(std::string_view name) {
    const MultiMap::Entry* entry = query()->items().find(name);
    return entry ? std::optional(entry->joined()) : std::nullopt;
}

std::string Request::server_variable(std::string_view name) {
    const MultiMap::Entry* entry = variables()->items().find(name);
    return entry ? entry->joined() : std::string();
}

Request::Pairs Request::query_parameters() {
    return pairs_of(query()->items());
}

Request::Pairs Request::form_fields() {
    return binary_ ? Pairs() : pairs_of(form()->items());
}

// --- The body as bytes -----------------------------------------------------------------------------

Variant Request::binary_read(std::int32_t& count) {
    if (form_ && is_form())
        throw asp_error(206, kObject);
    if (count < 0)
        throw Error(kErrorCall);
    binary_ = true;
    const std::string_view rest = std::string_view(http_->body).substr(bytes_read_);
    const std::string_view taken = rest.substr(0, static_cast<std::size_t>(count));
    bytes_read_ += taken.size();
    count = static_cast<std::int32_t>(taken.size());
    return Variant::byte_array(taken);
}

} // namespace tabrixdb::asp
