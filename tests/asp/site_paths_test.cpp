#include "asp/site_paths.h"
#include "automation/error.h"
#include "tests/asp/site_folder.h"

#include <string>

#include <gtest/gtest.h>

namespace tabrixdb::asp {
namespace {

TEST(PlainPath, ResolvesAndRefuses) {
    const std::string refused = "-";

    const struct {
        std::string path;
        const char* expected; // "-": refused
    } cases[] = {
        {"", "/shop/"},
        {"/", "/"},
        {"a.asp", "/shop/a.asp"},
        {"./a//b/", "/shop/a/b/"},
        {"../a.asp", "/a.asp"},
        {"/x/../y", "/y"},
        {"data\\shop.db", "/shop/data/shop.db"},
        {"\\data", "/data"},
        {"../../a.asp", "-"},
        {"/..", "-"},
        {"..\\..\\etc", "-"},
        {"a/../../../b", "-"},
        {std::string("a\0.gif", 6), "-"},
        {"a\nb", "-"},
        {"a.asp.", "-"},
        {"a.asp ", "-"},
        {"a.asp::$DATA", "-"},
        {"c:/a", "-"},
        {"...", "-"},
        {"CON", "-"},
        {"aux.txt", "-"},
        {"lpt1.htm", "-"},
        {"com10.htm", "/shop/com10.htm"},
        {"console.htm", "/shop/console.htm"},
        {"a*", "-"},
        {"a?b", "-"},
        {std::string(3000, 'a'), "-"},
        {"é ü/ä.asp", "/shop/é ü/ä.asp"},
    };

    for (const auto& c : cases)
        EXPECT_EQ(plain_path(c.path, "/shop/", true).value_or(refused), c.expected) << c.path;
    EXPECT_EQ(plain_path("/a\\b", "/", false), std::nullopt);
}

class SitePathsTest : public testing::Test {
protected:
    SitePathsTest() : paths((folder.write("TabrixDb/Images/One.gif", "1"), folder.path())) {
        folder.write("shop/Ärger.asp", "2");
        folder.write("both/a.txt", "small");
        folder.write("both/A.txt", "capital");
        folder.link("/etc", "out");
        folder.link("TabrixDb/Images", "in");
    }

    std::string found(const std::string& path) {
        const auto result = paths.find(path);
        return result ? result->physical.substr(paths.root().size()) : "nothing";
    }

    SiteFolder folder;
    SitePaths paths;
};

TEST_F(SitePathsTest, FindsWithoutRegardToCase) {
    EXPECT_EQ(found("/tabrixdb/images/ONE.GIF"), "/TabrixDb/Images/One.gif");
    EXPECT_EQ(found("/SHOP/äRGER.asp"), "/shop/Ärger.asp");
    EXPECT_EQ(found("/tabrixdb/"), "/TabrixDb");
    EXPECT_EQ(found("/both/a.txt"), "/both/a.txt");
    EXPECT_EQ(found("/both/A.txt"), "/both/A.txt");
    EXPECT_EQ(found("/BOTH/A.TXT"), "/both/A.txt");
    EXPECT_EQ(found("/tabrixdb/images/one.gif/"), "nothing");
    EXPECT_EQ(found("/tabrixdb/two.gif"), "nothing");
}

TEST_F(SitePathsTest, SeesWhatIsNewAndWhatIsGone) {
    EXPECT_EQ(found("/SHOP/NEW.TXT"), "nothing");
    folder.write("shop/new.txt", "");
    EXPECT_EQ(found("/SHOP/NEW.TXT"), "/shop/new.txt");
    std::filesystem::remove(folder.path() / "shop/new.txt");
    EXPECT_EQ(found("/SHOP/NEW.TXT"), "nothing");
}

TEST_F(SitePathsTest, FollowsLinksOnlyWithinTheSite) {
    EXPECT_EQ(found("/in/one.gif"), "/TabrixDb/Images/One.gif");
    EXPECT_EQ(found("/out/passwd"), "nothing");
    EXPECT_EQ(found("/out"), "nothing");
    EXPECT_THROW(paths.map("/out/passwd", "/"), Error);
    EXPECT_THROW(paths.map("/out/not/there", "/"), Error);
}

TEST_F(SitePathsTest, MapsWhatIsThereAndWhatIsNot) {
    const std::string& root = paths.root();
    EXPECT_EQ(paths.map("/", "/shop/"), root);
    EXPECT_EQ(paths.map("/tabrixdb/images/one.gif", "/"), root + "/TabrixDb/Images/One.gif");
    EXPECT_EQ(paths.map("\\TABRIXDB\\new\\File.txt", "/"), root + "/TabrixDb/new/File.txt");
    EXPECT_EQ(paths.map("Data.mdb", "/SHOP/"), root + "/shop/Data.mdb");
    EXPECT_EQ(paths.map("../Data.mdb", "/shop/"), root + "/Data.mdb");
    for (const char* path : {"../../x", "c:\\x", "a|b", "a*"})
        EXPECT_THROW(paths.map(path, "/shop/"), Error) << path;
}

TEST_F(SitePathsTest, ResolvesPhysicalPathsOfScripts) {
    const std::string& root = paths.root();
    EXPECT_EQ(paths.resolve_physical(root + "\\tabrixdb\\IMAGES\\one.gif"),
              root + "/TabrixDb/Images/One.gif");
    EXPECT_EQ(paths.resolve_physical(root + "/tabrixdb/none.gif"), root + "/TabrixDb/none.gif");
}

} // namespace
} // namespace tabrixdb::asp
