#include "server/page_jobs.h"
#include "tests/asp/site_folder.h"

#include <future>
#include <map>
#include <string>

#include <gtest/gtest.h>

namespace tabrixdb::server {
namespace {

// Who waits with the old ID may be somebody who knows it: he gets no session, and takes the new one from
// nobody by a cookie of his own.
TEST(PageJobs, LetNoRequestOfAnOldIdIntoARenewedSession) {
    const SiteFolder folder;
    folder.write("login.asp", "<% Do Until Application(\"go\") : Loop\n"
                              "Session(\"user\") = \"ann\" : Session.Renew %>");
    folder.write("who.asp", "<% Session(\"n\") = Session(\"n\") + 1 : Session.Renew %>"
                            "<%= Session(\"user\") & Session(\"n\") & Session.Contents.Count %>");
    folder.write("go.asp", "<% Application(\"go\") = True %>");
    asp::Site site(folder.path(), {}, [](std::string_view) {});
    PageJobs jobs(site, 2);
    const auto session = site.sessions.create();
    std::map<std::string, std::promise<asp::HttpResponse>> answers;
    const auto run = [&](const std::string& path, const std::string& id) {
        asp::HttpRequest request;
        request.headers = {{"Cookie", std::string(asp::kSessionCookie) + '=' + id}};
        jobs.run(
            std::make_shared<asp::HttpRequest>(std::move(request)), path,
            [&answer = answers[path]](asp::HttpResponse response) { answer.set_value(std::move(response)); });
    };
    const std::string old = session->id;
    run("/login.asp", old);
    run("/who.asp", old); // waits for the one before
    run("/go.asp", "");
    const asp::HttpResponse login = answers["/login.asp"].get_future().get();
    const asp::HttpResponse waited = answers["/who.asp"].get_future().get();
    jobs.stop(std::chrono::seconds(10));
    EXPECT_TRUE(asp::find_header(login.headers, "Set-Cookie")->starts_with("TABRIXSESSION=" + session->id));
    EXPECT_EQ(waited.body, "11");
    EXPECT_EQ(asp::find_header(waited.headers, "Set-Cookie"), nullptr);
    EXPECT_EQ(session->values.keys().size(), 1U);
    EXPECT_EQ(site.sessions.size(), 1U);
}

} // namespace
} // namespace tabrixdb::server
