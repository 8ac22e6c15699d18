#pragma once

#include "asp/page.h"

#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>

#include <gtest/gtest.h>
#include <sqlite3.h>

// A site with a database of its own, and the browsers that visit it.
namespace tabrixdb::testing_pages {

inline const std::filesystem::path kFolder = TABRIXDB_TEST_CASES;

inline std::string read_file(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

// A copy of the site, gone at the end.
class SiteCopy {
public:
    SiteCopy() {
        std::string name = (std::filesystem::temp_directory_path() / "tabrixdb-pages-XXXXXX").string();
        root_ = mkdtemp(name.data());
        std::filesystem::copy(kFolder / "site", root_, std::filesystem::copy_options::recursive);
        query(read_file(kFolder / "shop.sql"));
    }

    ~SiteCopy() { std::filesystem::remove_all(root_); }

    const std::filesystem::path& root() const { return root_; }

    // Runs statements on the database; their rows as "a|b" joined by " ", null as "-".
    std::string query(const std::string& sql) const {
        sqlite3* database = nullptr;
        EXPECT_EQ(sqlite3_open((root_ / "shop.db").c_str(), &database), SQLITE_OK);
        std::string rows;
        const auto append = [](void* out, int count, char** values, char**) {
            std::string& text = *static_cast<std::string*>(out);
            for (int i = 0; i < count; ++i)
                text += (i != 0 ? "|" : text.empty() ? "" : " ") + std::string(values[i] ? values[i] : "-");
            return 0;
        };
        char* message = nullptr;
        sqlite3_exec(database, sql.c_str(), append, &rows, &message);
        EXPECT_EQ(message, nullptr) << message;
        sqlite3_free(message);
        sqlite3_close(database);
        return rows;
    }

private:
    std::filesystem::path root_;
};

// One browser: keeps the session's cookie and the last page.
class Browser {
public:
    explicit Browser(asp::Site& site) : site_(site) {}

    // `form`: url-encoded, posted unless it is empty. "name=@" posts the hidden field of that name as the
    // last page had it.
    const std::string& ask(const std::string& path, const std::string& form) {
        auto request = std::make_shared<asp::HttpRequest>();
        request->path = path.substr(0, path.find('?'));
        if (request->path.size() < path.size())
            request->query = path.substr(request->path.size() + 1);
        request->headers = {{"Host", "site.test"}};
        if (!session_.empty())
            request->headers.push_back({"Cookie", std::string(asp::kSessionCookie) + "=" + session_});
        if (!form.empty()) {
            request->method = "POST";
            request->headers.push_back({"Content-Type", "application/x-www-form-urlencoded"});
            request->body = with_hidden_fields(form);
        }
        Interrupt interrupt;
        asp::HttpResponse response = asp::Page(site_, request, request->path, lease(), interrupt).run();
        keep_cookie(response);
        status_ = response.status;
        return page_ = std::move(response.body);
    }

    // Of the last page.
    int status() const { return status_; }

private:
    asp::SessionLease lease() {
        const auto session = session_.empty() ? nullptr : site_.sessions.find(session_);
        if (!session)
            return {};
        session->turnstile.enter([] {});
        return asp::SessionLease(site_.sessions, session, session_);
    }

    void keep_cookie(const asp::HttpResponse& response) {
        const std::string start = std::string(asp::kSessionCookie) + "=";
        for (const asp::Header& header : response.headers)
            if (header.value.starts_with(start))
                session_ = header.value.substr(start.size(), header.value.find(';') - start.size());
    }

    std::string with_hidden_fields(std::string form) const {
        for (std::size_t at; (at = form.find("=@")) != std::string::npos;) {
            const std::size_t before = form.find_last_of('&', at);
            const std::string name = form.substr(before + 1, at - before - 1);
            form.replace(at + 1, 1, hidden_field(name));
        }
        return form;
    }

    std::string hidden_field(const std::string& name) const {
        const std::string start = "name=\"" + name + "\" value=\"";
        const std::size_t from = page_.find(start);
        EXPECT_NE(from, std::string::npos) << "no field " << name << " in " << page_;
        const std::size_t value = from + start.size();
        return from == std::string::npos ? "" : page_.substr(value, page_.find('"', value) - value);
    }

    asp::Site& site_;
    std::string session_;
    std::string page_;
    int status_ = 0;
};

} // namespace tabrixdb::testing_pages
