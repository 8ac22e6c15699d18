#include "asp/disk_paths.h"

#include <string>

#include <gtest/gtest.h>

namespace tabrixdb::asp {
namespace {

TEST(DiskPaths, AreNotForVisitors) {
    const struct {
        const char* text;
        const char* expected;
    } cases[] = {
        {"File /srv/my shop/a b/x.htm Not Found", "File /a b/x.htm Not Found"},
        {"\"/srv/my shop\"", "\"/\""},
        {"in /srv/my shopping/x.asp", "in my shopping/x.asp"},
        {"file \"/var/lib/the data/x.db\" was", "file \"x.db\" was"},
        {"&quot;/var/the data/x.db&quot;", "&quot;x.db&quot;"},
        {"Data Source=/home/ann/x.db;Mode=1", "Data Source=x.db;Mode=1"},
        {"File C:\\Inetpub\\x.mdb Not Found", "File x.mdb Not Found"},
        {"\\\\server\\share\\x.mdb", "x.mdb"},
        {"/demo/orders.asp, line 3", "/demo/orders.asp, line 3"},
        {"http://host/home/x.htm and a/home/x, 1/2", "http://host/home/x.htm and a/home/x, 1/2"},
        {"/home", "/home"},
    };

    for (const auto& c : cases)
        EXPECT_EQ(without_disk_paths(c.text, "/srv/my shop"), c.expected) << c.text;
    EXPECT_EQ(without_disk_paths("File /home/a&amp;b/x.htm", "/home/a&b"), "File /x.htm");
}

} // namespace
} // namespace tabrixdb::asp
