#include "server/router.h"
#include "tests/asp/site_folder.h"

#include <string>

#include <gtest/gtest.h>

namespace tabrixdb::server {
namespace {

std::string shown(const Route& route) {
    switch (route.kind) {
    case Route::Kind::Page:
        return "page " + route.site_path;
    case Route::Kind::File:
        return (route.uploaded ? "uploaded file " : "file ") + route.site_path;
    case Route::Kind::Redirect:
        return "to " + route.location;
    case Route::Kind::Refused:
        break;
    }
    return std::to_string(route.status);
}

TEST(Router, FindsWhatAnAddressNamesAndNothingElse) {
    SiteFolder folder;
    for (const char* name : {"default.asp",
                             "Demo/index.html",
                             "Demo/Orders.asp",
                             "Demo/old.asa",
                             "Demo/head.inc",
                             "demo.css",
                             "tabrixdb.toml",
                             "data/shop.db",
                             "data/shop.db-wal",
                             "data/shop.sqlite3",
                             "data/shop.mdb",
                             "data/shop.sql",
                             ".git/config.txt",
                             ".env.txt",
                             "Demo/page.asp~",
                             "Demo/page.asp.bak",
                             "README",
                             "TabrixDb/temp/evil.asp",
                             "TabrixDb/temp/list.csv",
                             "Uploads/evil.asp",
                             "Uploads/deep/x.asp;.jpg",
                             "Uploads/deep/page.htm",
                             "uploads2/own.asp",
                             "empty/x.txt",
                             "a b/ä+.txt"})
        folder.write(name, "x");
    folder.link("/etc", "out");
    folder.write("Linked/x.txt", "x");
    folder.link("../uploads2", "Linked/here");
    folder.link("../data/shop.db", "Demo/picture.gif");
    const asp::SitePaths paths(folder.path());

    const struct {
        std::string target;
        const char* expected;
    } cases[] = {
        {"/", "page /default.asp"},
        {"/?a=/../b", "page /default.asp"},
        {"/demo/", "file /Demo/index.html"},
        {"/demo?q=1", "to /demo/?q=1"},
        {"//evil.example/%2e%2e", "404"},
        {"//demo", "to /demo/"},
        {"/DEMO/orders.ASP?x", "page /Demo/Orders.asp"},
        {"http://host/demo/orders.asp", "page /Demo/Orders.asp"},
        {"/demo/orders%2Easp", "page /Demo/Orders.asp"},
        {"/a%20b/%C3%A4+.txt", "file /a b/ä+.txt"},
        {"/demo.css", "file /demo.css"},
        {"/empty/", "404"},
        {"/none.asp", "404"},
        {"/demo/orders.asp/more", "404"},
        // Never served.
        {"/demo/old.asa", "404"},
        {"/demo/head.inc", "404"},
        {"/tabrixdb.toml", "404"},
        {"/data/shop.db", "404"},
        {"/data/shop.db-wal", "404"},
        {"/data/shop.sqlite3", "404"},
        {"/data/shop.mdb", "404"},
        {"/data/shop.sql", "404"},
        {"/.git/config.txt", "404"},
        {"/.env.txt", "404"},
        {"/demo/page.asp~", "404"},
        {"/demo/page.asp.bak", "404"},
        {"/README", "404"},
        {"/demo/picture.gif", "404"}, // a link to the database
        {"/TabrixDb/temp/evil.asp", "404"},
        {"/tabrixdb/TEMP/evil.asp", "404"},
        {"/tabrixdb/temp/list.csv", "uploaded file /TabrixDb/temp/list.csv"},
        {"/uploads/EVIL.asp", "404"},
        {"/uploads/", "404"},
        {"/uploads/deep/x.asp;.jpg", "uploaded file /Uploads/deep/x.asp;.jpg"},
        {"/uploads/deep/page.htm", "uploaded file /Uploads/deep/page.htm"},
        {"/uploads2/own.asp", "page /uploads2/own.asp"},
        {"/linked/here/own.asp", "404"}, // where it lies is none of them, but its address is
        // Names that mean something else elsewhere.
        {"/demo/orders.asp.", "404"},
        {"/demo/orders.asp%20", "404"},
        {"/demo/orders.asp::$DATA", "404"},
        {"/demo%5Corders.asp", "404"},
        {"/demo\\orders.asp", "404"},
        {"/nul.txt", "404"},
        // Ways out.
        {"/../etc/passwd", "404"},
        {"/demo/../demo.css", "404"},
        {"/%2e%2e/%2e%2e/etc/passwd", "404"},
        {"/%252e%252e/etc/passwd", "404"},
        {"/..%2f..%2fetc/passwd", "404"},
        {"/..%5c..%5cetc", "404"},
        {"/out/passwd", "404"},
        // Not readable as an address.
        {"/demo.css%00.html", "400"},
        {"/demo%0d%0aX:1", "400"},
        {"/100%", "400"},
        {"/%zz", "400"},
        {"*", "400"},
        {"", "400"},
        {"demo.css", "400"},
    };

    const RouteSettings settings{{"default.asp", "index.html", "evil.asp"}, {"/uploads/", "/linked/here/"}};
    const auto none = [](std::string_view) { return std::string(); };
    const Route front = route(paths, "/?a=b?c", settings, none);
    EXPECT_EQ(front.path, "/default.asp");
    EXPECT_EQ(front.query, "a=b?c");
    for (const auto& c : cases)
        EXPECT_EQ(shown(route(paths, c.target, settings, none)), c.expected) << c.target;
    EXPECT_EQ(shown(route(paths, "/" + std::string(5000, 'a'), settings, none)), "404");
}

TEST(Router, PutsAVisitorsFilesBeforeThoseOfTheSite) {
    SiteFolder folder;
    folder.write("TabrixDb/temp/LIST.csv", "x");
    folder.write("TabrixDb/temp/.own/0.download", "x");
    const asp::SitePaths paths(folder.path());
    const auto own = [](std::string_view address) {
        return equal_ignore_case(address, "/tabrixdb/temp/list.csv") ? std::string("/own/list")
                                                                     : std::string();
    };

    const struct {
        const char* target;
        const char* expected;
    } cases[] = {
        {"/tabrixdb/temp/LIST.csv?x", "own /own/list"},
        {"//TabrixDb/./temp%2Flist.csv", "404"}, // a hidden segment
        {"/TabrixDb//temp%2Flist.csv", "own /own/list"},
        {"/tabrixdb/temp/other.csv", "404"},
        {"/tabrixdb/temp/.own/0.download", "404"},
        {"/list.csv", "404"},
    };

    for (const auto& c : cases) {
        const Route found = route(paths, c.target, {}, own);
        EXPECT_EQ(found.own ? "own " + found.found.physical : shown(found), c.expected) << c.target;
    }
}

} // namespace
} // namespace tabrixdb::server
