#pragma once

#include "automation/object.h"

#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// What the engine asks of the page's intrinsic objects. A host's objects implement these interfaces and
// are at the same time what the page's script sees as Response, Request, ...
namespace tabrixdb::platform {

class Response : public Object {
public:
    virtual void write(std::string_view html) = 0;
    // Text of which write() makes these bytes, as far as the response's code page has a character for each.
    virtual std::string text_of(std::string_view bytes) const = 0;
    // Ends the page: the script stops when the call that it is in returns. Nothing is thrown; what is
    // written until then still belongs to the page.
    virtual void end() = 0;
    virtual bool ended() const = 0;
    // The page has failed: its status says so, unless the page has chosen one itself or it has left already.
    virtual void set_failed() = 0;
};

class Request : public Object {
public:
    // Request(name): the first of query string, form, cookies and server variables that has it; several
    // values are joined by ", "; "" when none has it.
    virtual std::string value(std::string_view name) = 0;
    // The value of the posted form alone; several are joined by ", "; nullopt when it has no field of that
    // name.
    virtual std::optional<std::string> form_value(std::string_view name) = 0;
    // The same of the address.
    virtual std::optional<std::string> query_value(std::string_view name) = 0;
    virtual std::string server_variable(std::string_view name) = 0;
    // The raw text after "?", without it.
    virtual std::string query_string() = 0;
    using Pairs = std::vector<std::pair<std::string, std::string>>;
    // Decoded names and values, in the order of the request; repeated names are joined at the first.
    virtual Pairs query_parameters() = 0;
    virtual Pairs form_fields() = 0;

    // True the first time that it is asked for a name: what is done once a request is done by whom it tells
    // so.
    bool claim(std::string_view name) { return claimed_.emplace(name).second; }

private:
    std::set<std::string, std::less<>> claimed_;
};

// Keys ignore case; a key that is not there reads as Empty.
class Session : public Object {
public:
    virtual Variant value(std::string_view key) = 0;
    virtual void set_value(std::string_view key, const Variant& value) = 0;
};

class Application : public Object {
public:
    virtual Variant value(std::string_view key) = 0;
    virtual void set_value(std::string_view key, const Variant& value) = 0;

    // Sets a value for the visitor of this page: in a host that can tell visitors apart only their own pages
    // read it, in the place of everybody's value of this key.
    virtual void set_own_value(std::string_view key, const Variant& value) { set_value(key, value); }

    virtual void lock() = 0;
    virtual void unlock() = 0;
};

class Server : public Object {
public:
    // The physical path of a virtual one. Error as Server.MapPath raises it for a path outside the site.
    virtual std::string map_path(std::string_view virtual_path) = 0;
    virtual std::string url_encode(std::string_view text) = 0;
};

} // namespace tabrixdb::platform
