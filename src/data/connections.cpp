#include "data/connections.h"

#include "automation/log_text.h"
#include "engine/report.h"

namespace tabrixdb {

namespace {

constexpr std::int32_t kUnspecified = -1;

// The connection string for a desktop database file, or "" after reporting that it is not there.
std::string access_connect(std::string_view path) {
    if (!platform::Host::current().file_system().file_exists(path)) {
        report({"", "File " + html_encode(path) + " Not Found", "TabrixDb", "AccessConnect"});
        return {};
    }
    return "Driver={Microsoft Access Driver (*.mdb)};Dbq=" + std::string(path) +
           ";DefaultDir=;Uid=Admin;Pwd=;";
}

// What can be listed of the connection's errors: one that can't be read ends the list.
std::string list_errors(const platform::Connection& connection) {
    std::string list;
    try {
        for (const platform::DataError& error : connection.errors()) {
            list += "\r\n<br>ADO Error  #" + std::to_string(error.number);
            list += "\r\n<br>Description " + html_encode(without_passwords(error.description));
            list += "\r\n<br>Source      " + html_encode(without_passwords(error.source));
        }
    } catch (const Error&) {
        // deliberately ignored: the failure itself has been reported
    }
    return list;
}

} // namespace

void create_connection(Pro& pro, std::string_view id, std::string& connection_string,
                       std::string_view database_path) {
    const Ref<platform::Connection> connection = platform::Host::current().create_connection();
    try {
        if (connection_string.empty() && !database_path.empty())
            connection_string = access_connect(database_path);
        if (!connection_string.empty())
            connection->open(connection_string, "", "", kUnspecified);
        pro.connections->add(connection, id);
    } catch (const Error& error) {
        const std::string reference = report(trapped(error, "CreateConnection"));
        if (pro.ado_errors)
            report_also({"", list_errors(*connection), "ADO Errors", "CreateConnection"}, reference);
    }
}

} // namespace tabrixdb
