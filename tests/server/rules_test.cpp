#include "server/address_ranges.h"
#include "server/content_types.h"
#include "server/host_names.h"
#include "server/origin.h"
#include "server/proxies.h"
#include "server/settings.h"
#include "server/static_file.h"
#include "server/template_files.h"
#include "tests/asp/site_folder.h"

#include <string>

#include <gtest/gtest.h>

namespace tabrixdb::server {
namespace {

using asp::Headers;

TEST(Origin, LetsOwnPagesPost) {
    const struct {
        Headers headers;
        bool expected;
    } cases[] = {
        {{{"Host", "shop:8080"}}, true}, // no browser
        {{{"Host", "shop:8080"}, {"Sec-Fetch-Site", "same-origin"}, {"Origin", "null"}}, true},
        {{{"Host", "shop:8080"}, {"Sec-Fetch-Site", "none"}}, true},
        {{{"Host", "shop:8080"}, {"Sec-Fetch-Site", "cross-site"}}, false},
        {{{"Host", "shop:8080"}, {"Sec-Fetch-Site", "same-site"}, {"Origin", "http://shop:8080"}}, false},
        {{{"Host", "shop:8080"}, {"Sec-Fetch-Site", "cross-site"}, {"Origin", "https://friend.example"}},
         true},
        {{{"Host", "shop:8080"}, {"Origin", "http://shop:8080"}}, true},
        {{{"Host", "SHOP:8080"}, {"Origin", "http://shop:8080"}}, true},
        {{{"Host", "shop:8080"}, {"Origin", "http://shop:8081"}}, false},
        {{{"Host", "shop:8080"}, {"Origin", "http://shop"}}, false},
        {{{"Host", "shop:8080"}, {"Origin", "http://evil.example"}}, false},
        {{{"Host", "shop:8080"}, {"Origin", "null"}}, false},
        {{{"Host", "shop"}, {"Origin", "https://shop:443"}}, true},
        {{{"Host", "shop:80"}, {"Origin", "http://shop"}}, true},
        {{{"Host", "shop"}, {"Origin", "http://evil.example"}, {"Referer", "http://shop/"}}, false},
        {{{"Host", "shop"}, {"Referer", "http://shop/page.asp?x=http://evil.example"}}, true},
        {{{"Host", "shop"}, {"Referer", "http://evil.example/?http://shop/"}}, false},
        {{{"Host", "shop"}, {"Referer", "http://shop.evil.example/"}}, false},
        {{{"Host", "shop"}, {"Referer", "http://shop@evil.example/"}}, false},
        {{{"Host", "shop"}, {"Referer", ""}}, false},
        {{{"Origin", "http://shop"}}, false},
    };

    for (const auto& c : cases) {
        std::string shown;
        for (const asp::Header& header : c.headers)
            shown += header.name + ": " + header.value + "  ";
        EXPECT_EQ(is_from_own_pages(c.headers, {"https://friend.example"}), c.expected) << shown;
    }
}

TEST(HostNames, AreNamesOrAddressesWithAPort) {
    const struct {
        const char* host;
        bool is_host;
        bool is_served;
    } cases[] = {
        {"shop.example", true, true},
        {"SHOP.example:8080", true, true},
        {"[::1]:80", true, true},
        {"[::1]", true, true},
        {"shop.example:", true, true},
        {"[::2]", true, false},
        {"shop.example.evil.example", true, false},
        {"evil-shop.example", true, false},
        {"10.0.0.1", true, false},
        {"shop.example:8x", false, false},
        {"shop.example:123456", false, false},
        {"shop.example:80:80", false, false},
        {"::1", false, false},
        {"[::1", false, false},
        {"[::1]x", false, false},
        {"[]", false, false},
        {":80", false, false},
        {"u@shop.example", false, false},
        {"shop.example/x", false, false},
        {"a\"b", false, false},
        {"a\x80", false, false},
    };

    const std::vector<std::string> names = {"Shop.Example", "[::1]"};
    for (const auto& c : cases) {
        const Headers headers = {{"Host", c.host}};
        EXPECT_EQ(is_host(c.host), c.is_host) << c.host;
        EXPECT_EQ(has_bad_host(headers), !c.is_host) << c.host;
        if (c.is_host) {
            EXPECT_EQ(is_served(headers, names), c.is_served) << c.host;
            EXPECT_TRUE(is_served(headers, {})) << c.host;
        }
    }
    EXPECT_FALSE(is_served({}, names));
    EXPECT_TRUE(has_bad_host({{"Host", "a"}, {"host", "a"}}));
}

TEST(AddressRanges, HoldWhatTheySay) {
    const struct {
        const char* range;
        const char* inside;  // nullptr: it is no range
        const char* outside; // nullptr: none is
    } cases[] = {
        {"10.1.2.3", "10.1.2.3", "10.1.2.4"},
        {"10.1.2.3", "::ffff:10.1.2.3", "::10.1.2.3"},
        {"10.1.2.3/8", "10.255.0.1", "11.0.0.1"},
        {"172.16.0.0/12", "172.31.255.255", "172.32.0.0"},
        {"0.0.0.0/0", "192.0.2.1", "2001:db8::1"},
        {"::/0", "2001:db8::1", "192.0.2.1"},
        {"::1", "0:0:0:0:0:0:0:1", "::2"},
        {"2001:db8::/33", "2001:db8:7fff::1", "2001:db8:8000::1"},
        {"::ffff:10.0.0.0/104", "10.9.9.9", "11.9.9.9"},
        {"10.0.0.0/33", nullptr, nullptr},
        {"::/129", nullptr, nullptr},
        {"10.0.0.0/", nullptr, nullptr},
        {"10.0.0.0/-1", nullptr, nullptr},
        {"10.0.0.0/8x", nullptr, nullptr},
        {"10.0.0", nullptr, nullptr},
        {"[::1]", nullptr, nullptr},
        {"localhost", nullptr, nullptr},
        {"", nullptr, nullptr},
    };

    for (const auto& c : cases) {
        AddressRanges ranges;
        EXPECT_EQ(ranges.add(c.range), c.inside != nullptr) << c.range;
        EXPECT_EQ(ranges.empty(), c.inside == nullptr) << c.range;
        if (c.inside) {
            EXPECT_TRUE(ranges.contains(*parse_address(c.inside))) << c.range;
            EXPECT_FALSE(ranges.contains(*parse_address(c.outside))) << c.range;
        }
    }
}

TEST(Proxies, AreReadFromTheRight) {
    const std::string deep = std::string(100'000, ',');

    const struct {
        Headers headers;
        const char* expected; // client, host, scheme
    } cases[] = {
        {{}, " - "},
        {{{"X-Forwarded-For", "192.0.2.1"}}, "192.0.2.1 - "},
        {{{"x-forwarded-for", "8.8.8.8, 192.0.2.1 , 10.0.0.2"}}, "192.0.2.1 - "},
        {{{"X-Forwarded-For", "8.8.8.8"}, {"X-Forwarded-For", "192.0.2.1,10.0.0.2"}}, "192.0.2.1 - "},
        {{{"X-Forwarded-For", "10.0.0.3, 10.0.0.2"}}, "10.0.0.3 - "}, // a visitor inside
        {{{"X-Forwarded-For", "<script>, 192.0.2.1"}}, "192.0.2.1 - "},
        {{{"X-Forwarded-For", "192.0.2.1:4711"}}, "192.0.2.1 - "},
        {{{"X-Forwarded-For", "2001:DB8::1"}}, "2001:db8::1 - "},
        {{{"X-Forwarded-For", "[2001:db8::1]:80"}}, "2001:db8::1 - "},
        {{{"X-Forwarded-For", "::ffff:192.0.2.1"}}, "192.0.2.1 - "},
        {{{"X-Forwarded-For", "192.0.2.1, unknown"}}, " - "},
        {{{"X-Forwarded-For", "192.0.2.1, unknown, 10.0.0.2"}}, " - "},
        {{{"X-Forwarded-For", "192.0.2.1,"}}, " - "},
        {{{"X-Forwarded-For", deep}}, " - "},
        {{{"X-Forwarded-Proto", "HTTPS"}}, " - https"},
        {{{"X-Forwarded-Proto", "http"}}, " - http"},
        {{{"X-Forwarded-Proto", "https, http"}}, " - "},
        {{{"X-Forwarded-Proto", "https"}, {"X-Forwarded-Proto", "https"}}, " - "},
        {{{"X-Forwarded-Proto", "on"}}, " - "},
        {{{"X-Forwarded-Host", "Shop.example:81"}}, " Shop.example:81 "},
        {{{"X-Forwarded-Host", "shop, evil"}}, " - "},
        {{{"X-Forwarded-Host", "shop\"><b>"}}, " - "},
        {{{"Forwarded", "for=192.0.2.1;proto=https;host=shop.example"}}, "192.0.2.1 shop.example https"},
        {{{"Forwarded", "For=\"[2001:db8::1]:80\" ; PROTO=http;by=_x;"}}, "2001:db8::1 - http"},
        {{{"Forwarded",
           "for=8.8.8.8;host=evil, for=192.0.2.1;host=shop, for=10.0.0.2;host=inner;proto=http"}},
         "192.0.2.1 shop "},
        {{{"Forwarded", "host=evil"}, {"Forwarded", "proto=https;host=\"shop:81\""}}, " shop:81 https"},
        {{{"Forwarded", "for=_hidden;proto=https"}}, " - https"},
        {{{"Forwarded", "for=10.0.0.2"}}, "10.0.0.2 - "},
        // What a client begins does not reach into what the proxy has added.
        {{{"Forwarded", "for=\", for=192.0.2.1;proto=https"}}, "192.0.2.1 - https"},
        {{{"Forwarded", "\"\\\", for=\"192.0.2.1\""}}, "192.0.2.1 - "},
        {{{"Forwarded", "for=192.0.2.1;for=8.8.8.8;proto=https"}}, " - "},
        {{{"Forwarded", "for=\"192.0.2.1;proto=https"}}, " - "},
        {{{"Forwarded", "for=\"a\\\"b\";proto=https"}}, " - "},
        {{{"Forwarded", "for"}}, " - "},
        {{{"Forwarded", deep}}, " - "},
        {{{"Forwarded", "proto=https;host=a/b"}}, " - https"},
        // Nor does a kind of header that the proxy does not write.
        {{{"Forwarded", "for=8.8.8.8;proto=https;host=evil"}, {"X-Forwarded-For", "192.0.2.1"}},
         "192.0.2.1 - "},
    };

    AddressRanges trusted;
    ASSERT_TRUE(trusted.add("10.0.0.0/24"));
    for (const auto& c : cases) {
        const Forwarded told = read_forwarded(c.headers, trusted);
        EXPECT_EQ(told.client + ' ' + (told.host.empty() ? "-" : told.host) + ' ' +
                      (told.secure ? *told.secure ? "https" : "http" : ""),
                  c.expected)
            << (c.headers.empty() ? "" : c.headers.front().value.substr(0, 100));
    }
}

TEST(StaticFile, AnswersConditionsAndRanges) {
    const asp::FileStamp stamp{.modified = 784111777'500000000, .size = 1000}; // 06 Nov 1994 08:49:37
    const FileAnswer whole = answer_file(stamp, "image/gif", {});
    const std::string tag = *asp::find_header(whole.headers, "ETag");
    const std::string date = "Sun, 06 Nov 1994 08:49:37 GMT";
    EXPECT_EQ(*asp::find_header(whole.headers, "Last-Modified"), date);
    EXPECT_EQ(*asp::find_header(whole.headers, "X-Content-Type-Options"), "nosniff");

    const struct {
        Headers headers;
        const char* expected; // status, part of the file, Content-Range
    } cases[] = {
        {{}, "200 0+1000 "},
        {{{"If-None-Match", tag}}, "304 0+0 "},
        {{{"If-None-Match", "\"x\", W/" + tag}}, "304 0+0 "},
        {{{"If-None-Match", "*"}}, "304 0+0 "},
        {{{"If-None-Match", "\"x\""}, {"If-Modified-Since", date}}, "200 0+1000 "},
        {{{"If-Modified-Since", date}}, "304 0+0 "},
        {{{"If-Modified-Since", "Sun, 06 Nov 1994 08:49:36 GMT"}}, "200 0+1000 "},
        {{{"If-Modified-Since", "yesterday"}}, "200 0+1000 "},
        {{{"Range", "bytes=0-0"}}, "206 0+1 bytes 0-0/1000"},
        {{{"Range", "bytes=10-"}}, "206 10+990 bytes 10-999/1000"},
        {{{"Range", "bytes=990-2000"}}, "206 990+10 bytes 990-999/1000"},
        {{{"Range", "bytes=-10"}}, "206 990+10 bytes 990-999/1000"},
        {{{"Range", "bytes=-5000"}}, "206 0+1000 bytes 0-999/1000"},
        {{{"Range", "bytes=1000-"}}, "416 0+0 bytes */1000"},
        {{{"Range", "bytes=-0"}}, "416 1000+0 bytes */1000"},
        {{{"Range", "bytes=5-4"}}, "200 0+1000 "},
        {{{"Range", "bytes=0-1,5-6"}}, "200 0+1000 "},
        {{{"Range", "lines=0-1"}}, "200 0+1000 "},
        {{{"Range", "bytes=99999999999999999999-"}}, "200 0+1000 "},
        {{{"Range", "bytes=0-9"}, {"If-Range", tag}}, "206 0+10 bytes 0-9/1000"},
        {{{"Range", "bytes=0-9"}, {"If-Range", date}}, "206 0+10 bytes 0-9/1000"},
        {{{"Range", "bytes=0-9"}, {"If-Range", "\"old\""}}, "200 0+1000 "},
    };

    for (const auto& c : cases) {
        const FileAnswer answer = answer_file(stamp, "image/gif", c.headers);
        const std::string* range = asp::find_header(answer.headers, "Content-Range");
        EXPECT_EQ(std::to_string(answer.status) + ' ' + std::to_string(answer.offset) + '+' +
                      std::to_string(answer.length) + ' ' + (range ? *range : ""),
                  c.expected)
            << (c.headers.empty() ? "" : c.headers.front().value);
    }
    EXPECT_EQ(answer_file({.modified = 1, .size = 0}, "text/css", {{"Range", "bytes=0-"}}).status, 416);
}

TEST(MarkScanner, KnowsTemplatesByTheirMarks) {
    using std::string_view_literals::operator""sv;

    const struct {
        std::string_view text;
        bool expected;
    } cases[] = {
        {"<td>#~name~#</td>"sv, true},
        {"#~city[TEXT;select a\nfrom b]~#"sv, true},
        {"~#~name~#"sv, true},
        {"##~name~~#"sv, true},
        {"?id=$~id~$"sv, true},
        {"<tr><!--tabrixdb:content_start-->"sv, true},
        {"<<!--<!--TabrixDb:x"sv, true},
        {"#\0~\0a\0~\0#\0"sv, true}, // UTF-16
        {""sv, false},
        {"#~#"sv, false},
        {"~#name#~"sv, false},
        {"#~name~$ $~name~"sv, false},
        {"# ~name ~#"sv, false},
        {"<!-- tabrixdb:content_start -->"sv, false},
        {"<!--tabrix<!--tabrixdb"sv, false},
    };

    for (const auto& c : cases) {
        MarkScanner whole, by_bytes;
        EXPECT_EQ(whole.feed(c.text), c.expected) << c.text;
        bool found = false;
        for (std::size_t i = 0; i < c.text.size() && !found; ++i)
            found = by_bytes.feed(c.text.substr(i, 1));
        EXPECT_EQ(found, c.expected) << c.text << ", byte by byte";
    }
}

TEST(Settings, ReadsWhatTheSiteSays) {
    const Settings settings = parse_settings(R"(
[server]
host = "0.0.0.0"
port = 0
workers = 3
hosts = ["shop.example:80", "[::1]"]
trusted_proxies = ["10.0.0.0/8", "::1"]
[limits]
script_seconds = 5
blob_bytes = 3000000000
download_bytes = 0
[security]
same_origin_posts = false
allowed_origins = ["https://a"]
upload_folders = ["/files", "/a/b/"]
cache = "no-store"
frame_ancestors = ""
serve_templates = true
commands = "any"
share_exports = true
[site]
default_pages = ["x.asp"]
code_page = 1252
[session]
minutes = 3
[mail]
server = "smtps://m.example"
require_tls = false
errors_per_hour = 0
[errors]
details = "visitor"
[log]
changes = true
user_key = "who"
[[database]]
file = "a.db"
script = "a.sql"
[[database]]
file = "b.db"
script = "b.sql"
)",
                                             "t");
    EXPECT_EQ(settings.host, "0.0.0.0");
    EXPECT_EQ(settings.port, 0);
    EXPECT_EQ(settings.workers, 3U);
    EXPECT_EQ(settings.hosts, (std::vector<std::string>{"shop.example", "[::1]"}));
    EXPECT_TRUE(settings.trusted_proxies.contains(*parse_address("10.9.9.9")));
    EXPECT_EQ(settings.pages.script_seconds, 5);
    EXPECT_EQ(settings.pages.code_page, 1252U);
    EXPECT_EQ(settings.pages.session_minutes, 3);
    EXPECT_EQ(settings.pages.mail.server.address, "smtps://m.example");
    EXPECT_FALSE(settings.pages.mail.server.require_tls);
    EXPECT_EQ(settings.pages.mail.errors_per_hour, 0U);
    EXPECT_TRUE(settings.pages.tell_visitors);
    EXPECT_TRUE(settings.pages.log_changes);
    EXPECT_EQ(settings.pages.log_user_key, "who");
    EXPECT_FALSE(settings.same_origin_posts);
    EXPECT_TRUE(settings.serve_templates);
    EXPECT_TRUE(settings.pages.any_command);
    EXPECT_TRUE(settings.pages.share_exports);
    EXPECT_EQ(settings.pages.exports.blob_bytes, 3'000'000'000U);
    EXPECT_EQ(settings.pages.exports.download_bytes, 0U);
    EXPECT_EQ(settings.allowed_origins, std::vector<std::string>{"https://a"});
    EXPECT_EQ(settings.routes.upload_folders, (std::vector<std::string>{"/files/", "/a/b/"}));
    EXPECT_EQ(settings.pages.session_cache, "no-store");
    EXPECT_EQ(settings.pages.frame_ancestors, "");
    EXPECT_EQ(settings.routes.default_pages, std::vector<std::string>{"x.asp"});
    ASSERT_EQ(settings.databases.size(), 2U);
    EXPECT_EQ(settings.databases[1].script, "b.sql");
}

TEST(Settings, RefusesWhatItDoesNotKnowByNameAndLine) {
    const struct {
        const char* text;
        const char* message;
    } cases[] = {
        {"[limits]\n\nbody_byte = 1", "t, line 3: limits.body_byte is no setting."},
        {"[limit]\nx = 1", "t, line 1: limit is no setting."},
        {"port = 1", "t, line 1: port is no setting."},
        {"[security]\ncommands = \"all\"", "t: security.commands is \"offered\" or \"any\"."},
        {"server = 1", "t, line 1: server is a table."},
        {"[server]\nport = 70000", "t, line 2: server.port is a number from 0 to 65535."},
        {"[server]\nport = \"80\"", "t, line 2: server.port is a number from 0 to 65535."},
        {"[server]\nhost = 1", "t, line 2: server.host is a text."},
        {"[server]\nhosts = [\"http://shop\"]", "t: server.hosts are names such as \"shop.example\"."},
        {"[server]\ntrusted_proxies = [\"proxy\"]",
         "t: server.trusted_proxies are addresses such as \"127.0.0.1\" and ranges such as \"10.0.0.0/8\"."},
        {"[security]\nsame_origin_posts = 1", "t, line 2: security.same_origin_posts is true or false."},
        {"[security]\nupload_folders = [\"files/\"]",
         "t: security.upload_folders are addresses such as \"/uploads/\"."},
        {"[security]\ncache = \"no-shop\"",
         "t: security.cache is \"private, no-cache\", \"no-store\" or \"private\"."},
        {"[security]\nframe_ancestors = \"a; script-src *\"",
         "t: security.frame_ancestors are sources with blanks between them, such as \"'self' "
         "https://other.example\"."},
        {"[site]\ndefault_pages = \"a\"", "t, line 2: site.default_pages is a list of texts."},
        {"[site]\ncode_page = 7", "t: site.code_page 7 is not known."},
        {"[mail]\nserver = \"m.example\"", "t: mail.server begins with smtp:// or smtps://."},
        {"[errors]\ndetails = \"all\"", "t: errors.details is \"log\" or \"visitor\"."},
        {"[database]\nfile = \"a\"", "t, line 1: a database stands in a table of its own, [[database]]."},
        {"[[database]]\nfile = \"a\"", "t, line 1: database has a file and a script."},
    };

    for (const auto& c : cases) {
        try {
            parse_settings(c.text, "t");
            ADD_FAILURE() << c.text;
        } catch (const SettingsError& error) {
            EXPECT_STREQ(error.what(), c.message);
        }
    }
    EXPECT_THROW(parse_settings("[server", "t"), SettingsError);
}

// The file that every new site copies shows the defaults that hold without it.
TEST(Settings, AreThoseOfTheDemoSite) {
    const std::filesystem::path site =
        std::filesystem::path(TABRIXDB_TEST_CASES).parent_path().parent_path() / "site";
    const Settings given = read_settings(site), none;
    EXPECT_EQ(given.port, none.port);
    EXPECT_EQ(given.routes.default_pages, none.routes.default_pages);
    EXPECT_EQ(given.databases.size(), 1U);
    EXPECT_TRUE(given.pages.tell_visitors); // but for this: it shows what it does
    EXPECT_FALSE(none.pages.tell_visitors);
}

TEST(ContentTypes, KnowNoSourcesAndNoData) {
    EXPECT_EQ(content_type("/a/B.GIF"), "image/gif");
    for (const char* name : {"a.asp", "a.inc", "a.db", "a.gif.db-wal", "gif", "a.", "a.gif~"})
        EXPECT_EQ(content_type(name), "") << name;
    for (const char* name : {"a.png", "a.jpg", "a.txt", "a.csv", "a.pdf", "a.mp4"})
        EXPECT_TRUE(is_passive(content_type(name))) << name;
    for (const char* name : {"a.htm", "a.svg", "a.js", "a.xml", "a.css", "a.wasm", "a.zip", "a"})
        EXPECT_FALSE(is_passive(content_type(name))) << name;
}

} // namespace
} // namespace tabrixdb::server
