#include "asp/files.h"
#include "automation/error.h"
#include "site_folder.h"

#include <chrono>
#include <set>

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace tabrixdb::asp {
namespace {

namespace fs = std::filesystem;

class BinaryFiles : public testing::Test {
protected:
    std::set<std::string> names() const {
        std::set<std::string> found;
        for (const fs::directory_entry& entry : fs::directory_iterator(folder_.path()))
            found.insert(entry.path().filename().string());
        return found;
    }

    std::string at(const char* name) const { return (folder_.path() / name).string(); }

    void make_old(const char* name) const {
        folder_.write(name, "x");
        fs::last_write_time(at(name), fs::file_time_type::clock::now() - std::chrono::hours(2));
    }

    SiteFolder folder_;
    SitePaths paths_{folder_.path()};
    SiteFiles files_{paths_, 1252};
};

TEST_F(BinaryFiles, AreSeenOnlyWhole) {
    folder_.write("a.bin", "before");
    {
        const auto file = files_.create(at("A.BIN"));
        file->write("half");
        EXPECT_EQ(files_.read_bytes(at("a.bin")), "before");
    }
    EXPECT_EQ(files_.read_bytes(at("a.bin")), "before");
    EXPECT_EQ(names(), std::set<std::string>{"a.bin"}) << "what was not finished is gone";
    const auto file = files_.create(at("A.BIN"));
    file->write(std::string("\0\xFF", 2));
    file->write_text("é");
    file->finish();
    EXPECT_EQ(files_.open(at("a.bin"))->read(10), std::string("\0\xFF\xE9", 3));
    EXPECT_EQ(names(), std::set<std::string>{"a.bin"});
}

TEST_F(BinaryFiles, AreTheServersAloneInTheTemporaryFolder) {
    const auto mode = [&](const char* name) {
        return static_cast<unsigned>(fs::status(at(name)).permissions());
    };
    for (const char* name : {"TabrixDb", "TabrixDb/Temp", "TabrixDb/Temp/own", "uploads"})
        files_.make_folder(at(name));
    const mode_t before = umask(022);
    for (const char* name : {"tabrixdb/temp/a.upload", "TabrixDb/Temp/own/b", "uploads/c"})
        files_.create(at(name))->finish();
    files_.write_text(at("TabrixDb/Temp/d.txt"), "x", true);
    files_.write_text(at("uploads/e.txt"), "x", false);
    umask(before);
    for (const char* name : {"TabrixDb/Temp/a.upload", "TabrixDb/Temp/own/b", "TabrixDb/Temp/d.txt"})
        EXPECT_EQ(mode(name), 0600U) << name;
    for (const char* name : {"uploads/c", "uploads/e.txt"})
        EXPECT_EQ(mode(name), 0644U) << name;
    EXPECT_EQ(mode("TabrixDb/Temp/own"), 0700U);
    EXPECT_THROW(files_.make_folder(at("none/x")), Error);
    EXPECT_NO_THROW(files_.make_folder(at("UPLOADS")));
}

TEST_F(BinaryFiles, OldOnesAreDeleted) {
    for (const char* name : {"old.csv", "old.csv.7-1.part", "old.txt"})
        make_old(name);
    folder_.write("new.csv", "x");
    files_.delete_old(folder_.path().string(), ".csv", std::chrono::hours(1));
    EXPECT_EQ(names(), (std::set<std::string>{"new.csv", "old.txt"}));
    EXPECT_NO_THROW(files_.delete_old(at("nowhere"), ".csv", std::chrono::hours(1)));
}

} // namespace
} // namespace tabrixdb::asp
