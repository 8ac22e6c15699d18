#include "server/http_server.h"
#include "tests/asp/site_folder.h"
#include "tests/server/client.h"

#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace tabrixdb::server {
namespace {

std::string get(const std::string& path, const std::string& headers = "") {
    return "GET " + path + " HTTP/1.1\r\nHost: shop\r\n" + headers + "\r\n";
}

std::string post(const std::string& path, const std::string& body, const std::string& headers = "") {
    return "POST " + path + " HTTP/1.1\r\nHost: shop\r\nContent-Type: application/x-www-form-urlencoded\r\n" +
           "Content-Length: " + std::to_string(body.size()) + "\r\n" + headers + "\r\n" + body;
}

// The session's cookie that an answer has set, to be sent with further requests.
std::string cookie_of(const Client::Answer& answer) {
    const std::string set = answer.header("Set-Cookie");
    return "Cookie: " + set.substr(0, set.find(';')) + "\r\n";
}

class HttpServerTest : public testing::Test {
protected:
    HttpServerTest() {
        settings.port = 0;
        settings.workers = 2;
        folder.write("pic.gif", "GIF89a-picture");
        folder.write("empty.css", "");
        folder.write("secret.inc", "x");
        folder.write("sub/default.asp", "<%= Request.ServerVariables(\"URL\") %>");
        folder.write("echo.asp", "<%= Request(\"a\") & \"|\" & Request.TotalBytes %>");
        folder.write("count.asp", "<% Session(\"n\") = Session(\"n\") + 1 %><%= Session(\"n\") %>");
        folder.write("loop.asp", "before<% Do : Loop %>after");
        folder.write("big.asp", "<%= String(3000000, \"x\") %>");
    }

    // What a site installs, and a page that shows three pictures of its database in the order asked for.
    void install() {
        const auto site_files = std::filesystem::path(TABRIXDB_TEST_CASES).parent_path().parent_path();
        std::filesystem::copy(site_files / "site/TabrixDb", folder.path() / "TabrixDb",
                              std::filesystem::copy_options::recursive);
        folder.write("pictures.asp", R"page(<%
Set db = Server.CreateObject("TabrixDb.Pro")
db.CreateConnection "c", "Provider=SQLite;Data Source=:memory:"
db.Connection("c").Execute "create table if not exists pictures (id integer primary key, photo blob)"
db.Connection("c").Execute "insert or ignore into pictures values " & _
    "(1, cast('GIF89a-1' as blob)), (2, cast('GIF89a-2' as blob)), (3, null)"
db.CreateSource "s", "select id, photo from pictures order by id " & Request.QueryString("order"), "c"
db.Source("s").Fields("photo").Content = "<img src=""#~photo;blob_response=/TabrixDb/blob.asp_blob~#"">"
db.Download = True
db.CreateGrid "g", "s"
Response.Write db.Grid("g")
db.CleanUp
%>)page");
    }

    // Starts with the settings as they are now.
    std::uint16_t start() {
        site = std::make_unique<asp::Site>(folder.path(), settings.pages, [this](std::string_view line) {
            const std::lock_guard lock(log_mutex);
            log.append(line).append("\n");
        });
        server = std::make_unique<HttpServer>(*site, settings);
        return server->port();
    }

    std::string logged() {
        const std::lock_guard lock(log_mutex);
        return log;
    }

    SiteFolder folder;
    Settings settings;
    std::mutex log_mutex;
    std::string log;
    std::unique_ptr<asp::Site> site;
    std::unique_ptr<HttpServer> server;
};

TEST_F(HttpServerTest, AnswersByMethodAndTarget) {
    Client client(start()); // one connection for all

    const struct {
        std::string request;
        int status;
        const char* body;
    } cases[] = {
        {get("/pic.gif"), 200, "GIF89a-picture"},
        {get("/empty.css"), 200, ""},
        {get("/PIC.gif", "Range: bytes=0-4\r\n"), 206, "GIF89"},
        {get("/echo.asp?a=1&a=%C3%A4"), 200, "1, ä|0"},
        {post("/echo.asp", "a=x+y"), 200, "x y|5"},
        {post("/echo.asp?a=q", "a=f"), 200, "q|3"},
        {get("/sub/"), 200, "/sub/default.asp"},
        {get("http://shop/echo.asp?a=z"), 200, "z|0"},
    };

    for (const auto& c : cases) {
        const Client::Answer answer = client.ask(c.request);
        EXPECT_EQ(answer.status, c.status) << c.request;
        EXPECT_EQ(answer.body, c.body) << c.request;
        EXPECT_EQ(answer.header("X-Content-Type-Options"), "nosniff");
    }

    const struct {
        std::string request;
        int status;
        const char* header;
        const char* value;
    } heads[] = {
        {get("/pic.gif"), 200, "Content-Type", "image/gif"},
        {"HEAD /pic.gif HTTP/1.1\r\nHost: shop\r\n\r\n", 200, "Content-Length", "14"},
        {"HEAD /echo.asp?a=12 HTTP/1.1\r\nHost: shop\r\n\r\n", 200, "Content-Length", "4"},
        {get("/echo.asp"), 200, "Content-Type", "text/html; charset=utf-8"},
        {get("/sub?x=1"), 301, "Location", "/sub/?x=1"},
        {get("/secret.inc"), 404, "Content-Type", "text/html; charset=utf-8"},
        {get("/../x"), 404, "", ""},
        {get("/%00"), 400, "", ""},
        {"OPTIONS /echo.asp HTTP/1.1\r\nHost: shop\r\n\r\n", 204, "Allow", "GET, HEAD, POST, OPTIONS"},
        {"OPTIONS * HTTP/1.1\r\nHost: shop\r\n\r\n", 204, "", ""},
        {"DELETE /echo.asp HTTP/1.1\r\nHost: shop\r\n\r\n", 405, "Allow", "GET, HEAD, POST, OPTIONS"},
        {"TRACE /pic.gif HTTP/1.1\r\nHost: shop\r\n\r\n", 405, "Allow", "GET, HEAD, OPTIONS"},
    };

    for (const auto& c : heads) {
        const Client::Answer answer = client.ask(c.request);
        EXPECT_EQ(answer.status, c.status) << c.request;
        if (*c.header) {
            EXPECT_EQ(answer.header(c.header), c.value) << c.request;
        }
    }
    const std::string tag = client.ask(get("/pic.gif")).header("ETag");
    EXPECT_EQ(client.ask(get("/pic.gif", "If-None-Match: " + tag + "\r\n")).status, 304);
    EXPECT_EQ(Client(server->port()).ask("GET / HTTP/1.1\r\n\r\n").status, 400); // no Host
}

TEST_F(HttpServerTest, SendsNoTemplates) {
    const std::string late_mark = std::string(200'000, 'x') + "#~price~#";
    folder.write("plain.htm", "<p>plain</p>");
    folder.write("row.htm", "<td>#~city[LOOKUP;select name from cities]~#</td>");
    folder.write("late.HTML", late_mark);
    folder.write("list/index.htm", "<!--TabrixDb:content_start-->");
    folder.write("notes.txt", "#~name~#");
    settings.routes.default_pages = {"index.htm"};
    Client client(start());
    EXPECT_EQ(client.ask(get("/plain.htm")).body, "<p>plain</p>");
    EXPECT_EQ(client.ask(get("/notes.txt")).body, "#~name~#");

    const char* const templates[] = {"/row.htm", "/ROW.HTM", "/late.html", "/list/", "/list/index.htm"};
    for (const char* path : templates)
        for (const char* headers :
             {"", "If-None-Match: *\r\n", "If-Modified-Since: Fri, 01 Jan 2100 00:00:00 GMT\r\n",
              "Range: bytes=0-9\r\n", "Range: bytes=999999999-\r\n"}) {
            const Client::Answer answer = client.ask(get(path, headers));
            EXPECT_EQ(answer.status, 404) << path << ' ' << headers;
            EXPECT_EQ(answer.header("ETag"), "") << path;
            EXPECT_EQ(answer.body.find("select"), std::string::npos) << path;
        }
    EXPECT_EQ(client.ask("HEAD /row.htm HTTP/1.1\r\nHost: shop\r\n\r\n").status, 404);

    // Each version is judged anew.
    folder.write("plain.htm", "<p>#~now_a_template~#</p>");
    folder.write("row.htm", "plain now");
    EXPECT_EQ(client.ask(get("/plain.htm")).status, 404);
    EXPECT_EQ(client.ask(get("/row.htm")).body, "plain now");

    settings.serve_templates = true;
    server.reset();
    EXPECT_EQ(Client(start()).ask(get("/late.html")).body, late_mark);
}

TEST_F(HttpServerTest, SendsPicturesToTheVisitorWhoWasShownThem) {
    install();
    folder.write("old.asp", "<% Response.Clear: Response.BinaryWrite Application(Request(\"varname\")) %>");
    const std::string first = "/TabrixDb/blob.asp?varname=photo_1",
                      none = "/TabrixDb/blob.asp?varname=photo_3";
    const std::string old = "/old.asp?varname=PHOTO_1";
    Client ada(start()), ben(server->port()), eve(server->port());
    const Client::Answer page = ada.ask(get("/pictures.asp"));
    EXPECT_NE(page.body.find("<img src=\"" + first + "\">"), std::string::npos) << page.body;
    const std::string of_ada = cookie_of(page), of_ben = cookie_of(ben.ask(get("/pictures.asp?order=desc")));
    EXPECT_EQ(ada.ask(get(first, of_ada)).body, "GIF89a-1");
    EXPECT_EQ(ben.ask(get(none, of_ben)).body, "GIF89a-1");
    EXPECT_EQ(ben.ask(get(first, of_ben)).status, 204);
    EXPECT_EQ(ada.ask(get(first, of_ada)).body, "GIF89a-1"); // although Ben's first is another
    EXPECT_EQ(ada.ask(get(old, of_ada)).body, "GIF89a-1");
    for (const std::string& path :
         {first, none, std::string("/TabrixDb/blob.asp?varname=TabrixDb_blob:photo_1")}) {
        EXPECT_EQ(eve.ask(get(path)).status, 404);
        EXPECT_EQ(eve.ask(get(path, "Cookie: TABRIXSESSION=" + std::string(32, '0') + "\r\n")).status, 404);
    }
    EXPECT_EQ(eve.ask(get(old)).status, 500); // it sends what is not there
    folder.write("leave.asp", "<% Session.Abandon %>");
    ada.ask(get("/leave.asp", of_ada));
    EXPECT_EQ(ada.ask(get(first, of_ada)).status, 404);

    settings.pages.share_exports = true;
    server.reset();
    Client one(start());
    one.ask(get("/pictures.asp"));
    EXPECT_EQ(Client(server->port()).ask(get(first)).body, "GIF89a-1");
    EXPECT_EQ(Client(server->port()).ask(get(old)).body, "GIF89a-1");
}

TEST_F(HttpServerTest, SendsDownloadsToTheVisitorTheyWereMadeFor) {
    install();
    folder.write("TabrixDb/temp/HAND.csv", "by hand");
    const std::string address = "/tabrixdb/temp/PICTURES.csv";
    Client ada(start()), ben(server->port()), eve(server->port());
    const std::string of_ada = cookie_of(ada.ask(get("/pictures.asp")));
    const std::string of_ben = cookie_of(ben.ask(get("/pictures.asp?order=desc")));
    const Client::Answer csv = ada.ask(get(address, of_ada));
    EXPECT_EQ(csv.status, 200);
    EXPECT_EQ(csv.body.find("\"1\","), 14U) << csv.body;
    EXPECT_EQ(csv.header("Content-Type"), "text/csv; charset=utf-8");
    EXPECT_EQ(csv.header("Cache-Control"), "private, no-cache");
    EXPECT_EQ(ben.ask(get(address, of_ben)).body.find("\"3\","), 14U);
    EXPECT_EQ(ada.ask(get(address, of_ada)).body, csv.body);
    EXPECT_EQ(ada.ask(get(address, of_ada + "Range: bytes=0-3\r\n")).body, "\"id\"");
    const std::string condition = "If-None-Match: " + csv.header("ETag") + "\r\n";
    EXPECT_EQ(ada.ask(get(address, of_ada + condition)).status, 304);
    EXPECT_EQ(ben.ask(get(address, of_ben + condition)).status, 200);
    EXPECT_EQ(eve.ask(get(address)).status, 404);
    EXPECT_EQ(eve.ask(get(address, condition)).status, 404);
    EXPECT_EQ(eve.ask(get(address, "If-None-Match: *\r\n")).status, 404);
    EXPECT_EQ(eve.ask(get("/tabrixdb/temp/hand.csv")).body, "by hand");

    // The bytes lie where no address leads, for nobody else to read, and end with the session.
    const auto own_files = [&] {
        std::vector<std::filesystem::directory_entry> files;
        for (const auto& entry : std::filesystem::directory_iterator(folder.path() / "TabrixDb/temp/.own"))
            files.push_back(entry);
        return files;
    };
    EXPECT_EQ(own_files().size(), 2U);
    for (const auto& file : own_files()) {
        EXPECT_EQ(static_cast<unsigned>(file.status().permissions()), 0600U);
        EXPECT_EQ(ada.ask(get("/TabrixDb/temp/.own/" + file.path().filename().string(), of_ada)).status, 404);
    }
    folder.write("leave.asp", "<% Session.Abandon %>");
    ada.ask(get("/leave.asp", of_ada));
    EXPECT_EQ(ada.ask(get(address, of_ada)).status, 404);
    EXPECT_EQ(own_files().size(), 1U);
    server.reset();
    site.reset();
    EXPECT_EQ(own_files().size(), 0U);

    settings.pages.share_exports = true;
    Client(start()).ask(get("/pictures.asp"));
    EXPECT_EQ(Client(server->port()).ask(get(address)).body, csv.body);
}

TEST_F(HttpServerTest, KeepsSessionsApartAndRefusesForeignIds) {
    Client first(start()), second(server->port());
    const Client::Answer answer = first.ask(get("/count.asp"));
    EXPECT_EQ(answer.body, "1");
    const std::string set = answer.header("Set-Cookie");
    EXPECT_TRUE(set.ends_with("; path=/; HttpOnly; SameSite=Lax")) << set;
    const std::string cookie = "Cookie: x=1; " + set.substr(0, set.find(';')) + "\r\n";
    EXPECT_EQ(first.ask(get("/count.asp", cookie)).body, "2");
    EXPECT_EQ(second.ask(get("/count.asp")).body, "1");
    const Client::Answer again = first.ask(get("/count.asp", cookie));
    EXPECT_EQ(again.body, "3");
    EXPECT_EQ(again.header("Set-Cookie"), "");
    // An ID of the client's own making does not become a session's.
    const std::string chosen(32, 'a');
    const Client::Answer fixed = second.ask(get("/count.asp", "Cookie: TABRIXSESSION=" + chosen + "\r\n"));
    EXPECT_EQ(fixed.body, "1");
    EXPECT_EQ(fixed.header("Set-Cookie").find(chosen), std::string::npos);
    // Reading alone makes no session.
    EXPECT_EQ(second.ask(get("/echo.asp")).header("Set-Cookie"), "");
}

TEST_F(HttpServerTest, RenewsASessionsId) {
    const struct {
        const char* script;
        bool new_id;
        bool old_lives;
    } cases[] = {
        {"Session.Renew", true, false},
        {"Session.Renew : Session.Renew : Session.Renew", true, false},
        {"Session.Renew : x = 1 / 0", true, false},
        {"Session.Renew : Response.Flush : Response.Redirect \"x\"", true, false},
        {"Response.Flush : Session.Renew", true, false},
        {"x = Session.SessionID", false, true},
        {"Session.Renew : Session.Abandon", false, false},
        {"Session.Abandon : Session.Renew", false, false},
    };

    Client client(start());
    const auto cookie_of = [](const Client::Answer& answer) {
        const std::string set = answer.header("Set-Cookie");
        return set.empty() ? set : "Cookie: " + set.substr(0, set.find(';')) + "\r\n";
    };
    int number = 0;
    for (const auto& c : cases) {
        const std::string page = "case" + std::to_string(++number) + ".asp";
        folder.write(page, "<% " + std::string(c.script) + " %>");
        const std::string old = cookie_of(client.ask(get("/count.asp")));
        const std::string renewed = cookie_of(client.ask(get("/" + page, old)));
        EXPECT_EQ(!renewed.empty(), c.new_id) << c.script;
        EXPECT_EQ(client.ask(get("/count.asp", old)).body, c.old_lives ? "2" : "1") << c.script;
        if (c.new_id) {
            EXPECT_EQ(client.ask(get("/count.asp", renewed)).body, "2") << c.script;
        }
    }
    // A visitor without a session has nothing to renew; a page without sessions can't.
    const Client::Answer first = client.ask(get("/case1.asp"));
    EXPECT_EQ(std::to_string(first.status) + cookie_of(first), "200");
    folder.write("none.asp", "<%@ EnableSessionState=False %><% On Error Resume Next : Session.Renew : "
                             "Response.Write Err.Description %>");
    const Client::Answer none = client.ask(get("/none.asp"));
    EXPECT_NE(none.body.find("the page has no session"), std::string::npos) << none.body;
}

TEST_F(HttpServerTest, KeepsPagesWithASessionToThemselves) {
    const struct {
        const char* script;
        const char* cache;
        const char* policy;
    } cases[] = {
        {"", "private, no-cache", "frame-ancestors 'self'"},
        {"x = 1 / 0", "private, no-cache", "frame-ancestors 'self'"},
        {"Response.Redirect \"y\"", "private, no-cache", "frame-ancestors 'self'"},
        {"Response.CacheControl = \"private\"", "private", "frame-ancestors 'self'"},
        {"Response.Expires = 60", "private", "frame-ancestors 'self'"},
        {"Response.ExpiresAbsolute = Now", "private", "frame-ancestors 'self'"},
        {"Response.AddHeader \"cache-control\", \"max-age=9\"", "private", "frame-ancestors 'self'"},
        {"Response.AddHeader \"X-Frame-Options\", \"DENY\"", "private, no-cache", ""},
        {"Response.AddHeader \"Content-Security-Policy\", \"img-src *\"", "private, no-cache", "img-src *"},
    };

    folder.write("none.asp", "<%@ EnableSessionState=False %>x");
    for (const bool own : {false, true}) {
        if (own) {
            settings.pages.session_cache = "no-store";
            settings.pages.frame_ancestors = "";
        }
        server.reset();
        Client client(start());
        int number = 0;
        for (const auto& c : cases) {
            const std::string page = "case" + std::to_string(++number) + ".asp";
            folder.write(page, "<% " + std::string(c.script) + " %>");
            const Client::Answer answer = client.ask(get("/" + page));
            const bool default_cache = std::string_view(c.cache) == "private, no-cache";
            const bool default_policy = std::string_view(c.policy) == "frame-ancestors 'self'";
            EXPECT_EQ(answer.header("Cache-Control"), own && default_cache ? "no-store" : c.cache)
                << c.script;
            EXPECT_EQ(answer.header("Content-Security-Policy"), own && default_policy ? "" : c.policy)
                << c.script;
        }
        const Client::Answer none = client.ask(get("/none.asp"));
        EXPECT_EQ(none.header("Cache-Control") + none.header("Content-Security-Policy"), "private");
    }
}

TEST_F(HttpServerTest, RunsRequestsOfOneSessionOneByOne) {
    folder.write(
        "slow_count.asp",
        "<% n = Session(\"n\") : For i = 1 To 2000 : Next : Session(\"n\") = n + 1 %><%= Session(\"n\") %>");
    settings.workers = 4;
    Client client(start());
    const std::string set = client.ask(get("/slow_count.asp")).header("Set-Cookie");
    const std::string cookie = "Cookie: " + set.substr(0, set.find(';')) + "\r\n";
    constexpr int kClients = 8, kRequests = 10;
    std::vector<std::thread> threads;
    for (int i = 0; i < kClients; ++i)
        threads.emplace_back([&] {
            Client other(server->port());
            for (int n = 0; n < kRequests; ++n)
                EXPECT_EQ(other.ask(get("/slow_count.asp", cookie)).status, 200);
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(client.ask(get("/slow_count.asp", cookie)).body, std::to_string(kClients * kRequests + 2));
}

TEST_F(HttpServerTest, RefusesPostsFromOtherOrigins) {
    start();
    const auto status = [&](const std::string& headers) {
        return Client(server->port()).ask(post("/echo.asp", "a=1", headers)).status;
    };
    EXPECT_EQ(status("Origin: http://evil.example\r\n"), 403);
    EXPECT_EQ(status("Sec-Fetch-Site: cross-site\r\n"), 403);
    EXPECT_EQ(status("Origin: http://shop\r\n"), 200);
    EXPECT_EQ(Client(server->port()).ask(get("/echo.asp", "Origin: http://evil.example\r\n")).status, 200);
    settings.same_origin_posts = false;
    server.reset();
    start();
    EXPECT_EQ(status("Origin: http://evil.example\r\n"), 200);
}

TEST_F(HttpServerTest, ChangesRecordsByFormsOfItsOwnOnly) {
    install();
    folder.write(
        "list.htm",
        "<table><!--tabrixdb:content_start--><tr><td>#~id~#</td></tr><!--tabrixdb:content_end--></table>");
    for (const std::string page : {"edit", "list"})
        folder.write(
            page + ".asp",
            "<% Set db = Server.CreateObject(\"TabrixDb.Pro\")\n"
            "db.CreateConnection \"c\", \"Provider=SQLite;Mode=Create;Data Source=\" & "
            "Server.MapPath(\"/p.db\")\n"
            "db.Connection(\"c\").Execute \"create table if not exists t (id integer primary key)\"\n"
            "db.CreateSource \"s\", \"select id from t\", \"c\"\n"
            "db.CreateGrid \"g\", \"s\"" +
                std::string(page == "list" ? ", Server.MapPath(\"/list.htm\")" : "") +
                "\nResponse.Write db.Source(\"s\").RecordSet.RecordCount %>");
    folder.write("fill.asp", "<% Set c = Server.CreateObject(\"ADODB.Connection\")\n"
                             "c.Open \"Provider=SQLite;Data Source=\" & Server.MapPath(\"/p.db\")\n"
                             "c.Execute \"insert or ignore into t values (1), (2), (3)\" %>");
    const std::string deletes = "g_command=edit_grid&g_params=g;delete;0";

    const struct {
        std::string target, form; // a form is posted
        std::string headers, cookies;
        std::string left;
    } cases[] = {
        {"/edit.asp?" + deletes, "", "", "", "3"},
        {"/edit.asp?" + deletes, "", "Sec-Fetch-Site: cross-site\r\n", "", "3"},
        {"/edit.asp", "", "", "; g_command=edit_grid; g_params=g%3Bdelete%3B0", "3"},
        {"/edit.asp", "x=1", "", "; g_command=edit_grid; g_params=g%3Bdelete%3B0", "3"},
        {"/edit.asp", "g_command=edit_grid", "", "; g_params=g%3Bdelete%3B0", "3"},
        {"/edit.asp?" + deletes, "x=1", "", "", "3"},
        {"/edit.asp?g_params=g;delete;0", "g_command=edit_grid", "", "", "3"},
        {"/edit.asp", deletes, "Sec-Fetch-Site: cross-site\r\n", "", "3"},
        {"/edit.asp", deletes, "Origin: http://b\r\n", "", "3"},
        {"/list.asp", deletes, "", "", "3"},
        {"/edit.asp", deletes, "Origin: http://shop\r\n", "", "2"},
        {"/edit.asp", deletes, "", "", "2"},
    };

    // The records that are left of three.
    const auto left_after = [&](const auto& asked) {
        Client client(server->port());
        const std::string session = cookie_of(client.ask(get("/list.asp")));
        client.ask(get("/fill.asp"));
        const std::string cookies = session.substr(0, session.size() - 2) + asked.cookies + "\r\n";
        client.ask(asked.form.empty() ? get(asked.target, cookies + asked.headers)
                                      : post(asked.target, asked.form, cookies + asked.headers));
        return Client(server->port()).ask(get("/list.asp")).body;
    };
    start();
    for (const auto& asked : cases)
        EXPECT_EQ(left_after(asked), asked.left)
            << asked.target << " " << asked.form << " " << asked.headers << asked.cookies;
    EXPECT_NE(logged().find("/list.asp: grid g does not offer to delete records. If it should, set Permit = "
                            "\"delete\" before CreateGrid."),
              std::string::npos)
        << logged();

    settings.pages.any_command = true;
    server.reset();
    start();
    EXPECT_EQ(left_after(cases[9]), "2");
}

TEST_F(HttpServerTest, KeepsItsLimits) {
    settings.body_bytes = 1000;
    settings.header_bytes = 4096;
    start();
    const auto status = [&](const std::string& request) {
        return Client(server->port()).ask(request).status;
    };
    EXPECT_EQ(status(post("/echo.asp", std::string(1000, 'x'))), 200);
    EXPECT_EQ(status(post("/echo.asp", std::string(1001, 'x'))), 413);
    std::string chunked = "POST /echo.asp HTTP/1.1\r\nHost: shop\r\nTransfer-Encoding: chunked\r\n\r\n";
    for (int i = 0; i < 20; ++i)
        chunked += "64\r\n" + std::string(100, 'x') + "\r\n";
    EXPECT_EQ(status(chunked + "0\r\n\r\n"), 413);
    EXPECT_EQ(status(get("/pic.gif", "X: " + std::string(3000, 'x') + "\r\n")), 200);
    EXPECT_EQ(status(get("/pic.gif", "X: " + std::string(6000, 'x') + "\r\n")), 431);
    // The library must not take the query apart: it stops where its memory does.
    std::string fields;
    for (int i = 0; i < 800; ++i)
        fields += "a=b&";
    EXPECT_EQ(status(get("/echo.asp?" + fields, "X: " + std::string(200, 'x') + "\r\n")), 200);
}

TEST_F(HttpServerTest, RefusesBodiesOfDoubtfulLength) {
    start();
    for (const char* lengths :
         {"Content-Length: 5\r\nTransfer-Encoding: chunked\r\n", "Content-Length: 5\r\nContent-Length: 3\r\n",
          "Content-Length: x\r\n", "Transfer-Encoding: gzip, chunked\r\n",
          "Transfer-Encoding: chunked\r\nTransfer-Encoding: identity\r\n"}) {
        Client client(server->port());
        client.send(std::string("POST /echo.asp HTTP/1.1\r\nHost: shop\r\n") + lengths +
                    "\r\n0\r\n\r\nGET /pic.gif HTTP/1.1\r\nHost: shop\r\n\r\n");
        EXPECT_EQ(client.read().status, 400) << lengths;
        EXPECT_EQ(client.read().status, 0) << lengths; // what follows is no request
    }
}

TEST_F(HttpServerTest, RefusesHostsThatAreNoNames) {
    Client client(start());
    EXPECT_EQ(client.ask("GET /pic.gif HTTP/1.1\r\nHost: [::1]:8080\r\n\r\n").status, 200);
    for (const char* hosts :
         {"Host: evil\"><b>\r\n", "Host: a b\r\n", "Host: a/b\r\n", "Host: a\r\nHost: b\r\n"}) {
        Client other(server->port());
        EXPECT_EQ(other.ask("GET /pic.gif HTTP/1.1\r\n" + std::string(hosts) + "\r\n").status, 400) << hosts;
    }
}

TEST_F(HttpServerTest, AnswersToItsNamesOnly) {
    settings.hosts = {"shop", "[::1]"};
    start();

    const struct {
        std::string request;
        int status;
    } cases[] = {
        {get("/pic.gif"), 200},
        {"GET /pic.gif HTTP/1.1\r\nHost: SHOP:81\r\n\r\n", 200},
        {"GET /echo.asp HTTP/1.1\r\nHost: [::1]:81\r\n\r\n", 200},
        {"GET /echo.asp HTTP/1.1\r\nHost: evil\r\n\r\n", 421},
        {"GET /pic.gif HTTP/1.1\r\nHost: evil\r\n\r\n", 421},
        {"OPTIONS * HTTP/1.1\r\nHost: evil\r\n\r\n", 421},
        {"GET /echo.asp HTTP/1.1\r\nHost: evil\r\nX-Forwarded-Host: shop\r\n\r\n", 421},
        {"POST /echo.asp HTTP/1.1\r\nHost: evil\r\nContent-Length: 3\r\n\r\na=1", 421},
        {"GET http://shop/pic.gif HTTP/1.1\r\nHost: evil\r\n\r\n", 200}, // the address counts
        {"GET http://evil/pic.gif HTTP/1.1\r\nHost: shop\r\n\r\n", 421},
        {"GET http://u@shop/pic.gif HTTP/1.1\r\nHost: shop\r\n\r\n", 400},
        {"GET /pic.gif HTTP/1.1\r\nHost: \r\n\r\n", 421},
        {"GET /pic.gif HTTP/1.1\r\n\r\n", 400},
        {"GET /pic.gif HTTP/1.0\r\n\r\n", 421},
    };

    for (const auto& c : cases)
        EXPECT_EQ(Client(server->port()).ask(c.request).status, c.status) << c.request;
}

TEST_F(HttpServerTest, BelievesTrustedProxiesAlone) {
    folder.write("who.asp",
                 "<% For Each n In Split(\"HTTPS SERVER_PORT_SECURE SERVER_PORT SERVER_NAME HTTP_HOST \" _\n"
                 "& \"REMOTE_ADDR REMOTE_HOST HTTP_X_FORWARDED_FOR\")\n"
                 "Response.Write Request.ServerVariables(n) & \" \"\nNext %>");
    const std::string by_https = "X-Forwarded-Proto: https\r\n";

    const struct {
        std::string headers;
        std::string expected; // PORT: the one that the server listens on
        std::string from_others = "off 0 PORT shop shop 127.0.0.1 127.0.0.1 ";
    } cases[] = {
        {"", "off 0 PORT shop shop 127.0.0.1 127.0.0.1 "},
        {by_https, "on 1 443 shop shop 127.0.0.1 127.0.0.1 "},
        {by_https + "X-Forwarded-Host: door.example:444\r\n",
         "on 1 444 door.example door.example:444 127.0.0.1 127.0.0.1 "},
        {"X-Forwarded-Host: [::1]\r\n", "off 0 80 [::1] [::1] 127.0.0.1 127.0.0.1 "},
        {"X-Forwarded-For: 6.6.6.6, 192.0.2.1\r\n",
         "off 0 PORT shop shop 192.0.2.1 192.0.2.1 6.6.6.6, 192.0.2.1",
         "off 0 PORT shop shop 127.0.0.1 127.0.0.1 6.6.6.6, 192.0.2.1"},
        {"Forwarded: for=192.0.2.1;proto=https;host=door\r\n", "on 1 443 door door 192.0.2.1 192.0.2.1 "},
        {"X-Forwarded-Proto: https, https\r\nX-Forwarded-Host: a\"b\r\n",
         "off 0 PORT shop shop 127.0.0.1 127.0.0.1 "},
    };

    for (const bool trusted : {true, false}) {
        settings.trusted_proxies = {};
        ASSERT_TRUE(settings.trusted_proxies.add(trusted ? "127.0.0.0/8" : "10.0.0.0/8"));
        server.reset();
        Client client(start());
        for (const auto& c : cases)
            EXPECT_EQ(
                client.ask(get("/who.asp", c.headers)).body,
                replace_all(trusted ? c.expected : c.from_others, "PORT", std::to_string(server->port())) +
                    " ")
                << c.headers;
        const std::string cookie = client.ask(get("/count.asp", by_https)).header("Set-Cookie");
        EXPECT_EQ(cookie.ends_with("; SameSite=Lax; Secure"), trusted) << cookie;
        const auto post_from = [&](const std::string& origin) {
            return Client(server->port())
                .ask(post("/echo.asp", "a=1", "X-Forwarded-Host: door\r\nOrigin: https://" + origin + "\r\n"))
                .status;
        };
        EXPECT_EQ(post_from("door"), trusted ? 200 : 403);
        EXPECT_EQ(post_from("shop"), trusted ? 403 : 200);
    }
    settings.trusted_proxies.add("127.0.0.1");
    settings.hosts = {"door"};
    server.reset();
    Client client(start());
    EXPECT_EQ(client.ask(get("/pic.gif", "X-Forwarded-Host: door\r\n")).status, 200);
    EXPECT_EQ(client.ask(get("/pic.gif", "X-Forwarded-Host: shop\r\n")).status, 421);
}

TEST_F(HttpServerTest, StopsAnEndlessPageAndGoesOn) {
    settings.pages.script_seconds = 1;
    Client client(start());
    const Client::Answer stopped = client.ask(get("/loop.asp"));
    EXPECT_EQ(stopped.status, 500);
    EXPECT_NE(stopped.body.find("before"), std::string::npos);
    EXPECT_NE(logged().find("error 'ASP 0113'"), std::string::npos) << logged();
    EXPECT_EQ(stopped.body.find("after"), std::string::npos);
    EXPECT_EQ(client.ask(get("/echo.asp?a=1")).body, "1|0");
}

// What a visitor is told leads to what the log says, and says nothing of it itself.
TEST_F(HttpServerTest, TellsVisitorsWhereTheLogSaysMore) {
    folder.write("script.asp", "<% x = CLng(\"Password='a;b';Pwd=c\") %>");
    folder.write("engine.asp", "<% Set db = Server.CreateObject(\"TabrixDb.Pro\")\n"
                               "db.CreateSource \"s\", \"x\", \"nowhere\" %>");
    folder.write("inc/fails.inc", "<% Sub Fails\n\nSet c = Server.CreateObject(\"ADODB.Connection\")\n"
                                  "c.Open \"Provider=SQLite;Data Source=\" & Server.MapPath(\"none.db\")\n"
                                  "End Sub %>");
    folder.write("included.asp", "<!-- #include file=\"inc/fails.inc\" --><% Fails %>");
    folder.write("chosen.asp",
                 "<% Response.Status = \"404 No such order\"\n"
                 "Set db = Server.CreateObject(\"TabrixDb.Pro\") : db.CreateGrid \"g\", \"s\" %>");
    folder.write("TabrixDb/tabrixdb_error.htm",
                 "<i>#~tabrixdb_errnumber~#|#~tabrixdb_errdescription~#|#~tabrixdb_errsource~#|"
                 "#~tabrixdb_errlocation~#</i>");
    Client client(start());

    const struct {
        const char* page;
        int status;
        const char* in_log; // behind the reference
    } cases[] = {
        {"/script.asp", 500,
         " TabrixDb VBScript runtime error '800a000d' Type mismatch: 'CLng' in /script.asp, line 1, column "
         "4"},
        {"/engine.asp", 500,
         " TabrixDb error 5 Invalid procedure call or argument: 'nowhere' | CreateSource in /engine.asp, "
         "line 2"},
        {"/included.asp", 500,
         "/none.db\" was not found. in /inc/fails.inc, line 4, column 1 (page /included.asp)"},
        {"/chosen.asp", 404, " | CreateGrid - g in /chosen.asp, line 2"},
    };

    for (const auto& c : cases) {
        const Client::Answer answer = client.ask(get(c.page));
        EXPECT_EQ(answer.status, c.status) << c.page;
        constexpr std::string_view kBefore = "this reference: ";
        const std::size_t at = answer.body.find(kBefore);
        ASSERT_NE(at, std::string::npos) << answer.body;
        const std::string reference = answer.body.substr(at + kBefore.size(), 8);
        const std::string lines = logged();
        const std::size_t line = lines.find(std::to_string(c.status) + ' ' + reference + ' ');
        ASSERT_NE(line, std::string::npos) << reference << " is not in: " << lines;
        EXPECT_NE(lines.substr(line, lines.find('\n', line) - line + 1).find(std::string(c.in_log) + '\n'),
                  std::string::npos)
            << lines;
        for (const char* hidden : {"Type mismatch", "nowhere", "none.db", "line ", ".asp", "|CreateSource"})
            EXPECT_EQ(answer.body.find(hidden), std::string::npos) << answer.body;
    }
    EXPECT_EQ(client.ask(get("/engine.asp")).body.find("<i>"), 0U);
}

TEST_F(HttpServerTest, LetsASlowClientKeepNoWorker) {
    settings.workers = 1;
    Client slow(start()), reader(server->port()), other(server->port());
    const std::string request = post("/echo.asp", "a=slow");
    slow.send(request.substr(0, request.size() - 3));
    reader.send(get("/big.asp")); // and does not read its answer yet
    EXPECT_EQ(other.ask(get("/echo.asp?a=1")).body, "1|0");
    slow.send(request.substr(request.size() - 3));
    EXPECT_EQ(slow.read().body, "slow|6");
    EXPECT_EQ(reader.read().body.size(), 3000000U);
}

TEST_F(HttpServerTest, ClosesARequestThatDoesNotArriveInTime) {
    settings.request_seconds = 1;
    Client silent(start()), halting(server->port());
    halting.send("POST /echo.asp HTTP/1.1\r\nHost: shop\r\nContent-Length: 10\r\n\r\nabc");
    EXPECT_TRUE(silent.ends_silently());
    EXPECT_TRUE(halting.ends_silently());
}

TEST_F(HttpServerTest, StopsWhilePagesRun) {
    Client running(start()), halting(server->port()), idle(server->port());
    idle.ask(get("/pic.gif"));
    halting.send("POST /echo.asp HTTP/1.1\r\nHost: shop\r\nContent-Le");
    running.send(get("/loop.asp"));
    server->stop(std::chrono::seconds(0));
    // Whether it had begun or not: it is answered with 503, or closed before it was read.
    const int status = running.read().status;
    EXPECT_TRUE(status == 503 || status == 0) << status;
    EXPECT_THROW(Client(server->port()).ask(get("/pic.gif")), std::runtime_error);
}

} // namespace
} // namespace tabrixdb::server
