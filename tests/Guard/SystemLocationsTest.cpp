#include "Guard/SystemLocations.h"
#include "Support/PrivateMount.h"
#include "Support/TempTree.h"

#include <gtest/gtest.h>

using namespace brellin;
using brellin::test::PrivateMount;
using brellin::test::TempTree;

namespace {

struct Row {
    const char *location;
    bool allowed;
};

TEST(SystemLocationsTest, DecidesByTheDeepestPlace)
{
    // A home folder below a system folder, as on some systems.
    const SystemLocations locations("/var/home/anna");
    for (const Row &row : std::initializer_list<Row>{
             {"/", false},
             {"/System", false},
             {"/System/Fonts", false},
             {"/Systematik", true},
             {"/Library/Fonts", false},
             {"/Applications", false},
             {"/private/tmp", false},
             {"/cores", false},
             {"/usr/local/share", false},
             {"/etc/passwd", false},
             {"/dev/shm", false},
             {"/run/user/1000", false},
             {"/run/media", true},
             {"/run/media/anna/Stick", true},
             {"/run/mediathek", false},
             {"/var", false},
             {"/var/home", false},
             {"/var/home/anna", true},
             {"/var/home/anna/Downloads", true},
             {"/var/home/anna/Library", false},
             {"/var/home/anna/Library/Preferences", false},
             {"/var/home/anna/Library/Mobile Documents", false},
             {"/var/home/anna/Library/Mobile Documents/com~apple~CloudDocs", true},
             {"/var/home/anna/Library/Mobile Documents/com~apple~CloudDocs/Rechnungen", true},
             {"/var/home/anna/.config", false},
             {"/var/home/anna/.ssh/id", false},
             {"/var/home/anna/Projekte/.git", true},
             {"/var/home/annabell", false},
             {"/srv/daten", true},
             {"relativ", false},
             {"", false},
         }) {
        EXPECT_EQ(locations.isAllowedText(std::string_view(row.location)), row.allowed) << row.location;
    }
}

TEST(SystemLocationsTest, AHomeThatIsASystemFolderStaysRefused)
{
    for (const char *const home : {"/", "/usr", "/etc"}) {
        const SystemLocations locations(home);
        EXPECT_FALSE(locations.isAllowedText(Location("/usr"))) << home;
        EXPECT_FALSE(locations.isAllowedText(Location("/usr/share"))) << home;
        EXPECT_FALSE(locations.isAllowedText(Location("/etc/x"))) << home;
        EXPECT_TRUE(locations.isAllowedText(Location("/srv"))) << home;
    }
}

class LinkedLocationsTest : public ::testing::Test {
protected:
    LinkedLocationsTest() { tree.lines({"home/Downloads/", "home/Library/", "system/inside/", "daten/"}); }
    bool allowed(std::string_view path) const { return locations.isAllowed(tree.path(path)); }
    bool entryAllowed(std::string_view path) const { return locations.isAllowedEntry(tree.path(path)); }

    TempTree tree;
    SystemLocations locations{tree.path("home"), {tree.path("system")}};
};

TEST_F(LinkedLocationsTest, FollowsLinksToWhereTheyLead)
{
    tree.lines({"home/zu->../system", "home/Downloads/tief->../../system/inside", "home/gut->../daten",
                "home/nirgends->../system/fehlt", "home/kreis->kreis"});
    EXPECT_TRUE(allowed("home/Downloads"));
    EXPECT_TRUE(allowed("home/gut"));
    EXPECT_TRUE(allowed("home/gut/noch/nicht/da.txt"));
    EXPECT_FALSE(allowed("home/zu"));
    EXPECT_FALSE(allowed("home/zu/noch/nicht/da.txt"));
    EXPECT_FALSE(allowed("home/Downloads/tief"));
    EXPECT_FALSE(allowed("home/nirgends"));
    EXPECT_FALSE(allowed("home/nirgends/neu"));
    EXPECT_FALSE(allowed("home/kreis"));
}

TEST_F(LinkedLocationsTest, ReadsTwoDotsBothWays)
{
    tree.lines({"home/tief->../system/inside", "home/raus->../daten"});
    // Lexically "home/Downloads", but for the kernel a location beside "inside".
    EXPECT_FALSE(allowed("home/tief/../Downloads"));
    EXPECT_FALSE(allowed("home/Downloads/../../system"));
    EXPECT_FALSE(entryAllowed("home/tief/../Downloads"));
    EXPECT_TRUE(allowed("home/raus/../Downloads/"));
    EXPECT_FALSE(locations.isAllowed(std::string("/srv\0/../etc", 12)));
}

TEST_F(LinkedLocationsTest, AnEntryIsTheLinkItself)
{
    tree.lines({"home/zu->../system", "home/nirgends->fehlt", "home/a.txt"});
    EXPECT_TRUE(entryAllowed("home/zu"));
    EXPECT_TRUE(entryAllowed("home/nirgends"));
    EXPECT_TRUE(entryAllowed("home/a.txt"));
    EXPECT_TRUE(entryAllowed("home/neu.txt"));
    EXPECT_FALSE(entryAllowed("home/zu/inside"));
    EXPECT_FALSE(entryAllowed("system/inside"));
    // Moving a folder also moves the refused one inside it.
    EXPECT_FALSE(entryAllowed("home"));
    EXPECT_FALSE(entryAllowed(""));
}

TEST_F(LinkedLocationsTest, KnowsSystemFoldersThatAreMountedElsewhere)
{
    tree.lines({"home/bild/", "home/alles/", "home/gut/", "home/.config/x", "home/tief/", "daten/a.txt"});
    const SystemLocations knowing(tree.path("home"), {tree.path("system")});
    const PrivateMount whole = PrivateMount::bind(tree.path("system"), tree.path("home/bild"));
    const PrivateMount part = PrivateMount::bind(tree.path("home/.config"), tree.path("home/tief"));
    const PrivateMount root = PrivateMount::bind("/", tree.path("home/alles"));
    const PrivateMount good = PrivateMount::bind(tree.path("daten"), tree.path("home/gut"));
    if (!whole || !part || !root || !good)
        GTEST_SKIP() << "no mounts here";
    for (const char *const folder :
         {"home/bild", "home/bild/inside", "home/bild/noch/nicht/da", "home/alles", "home/tief"})
        EXPECT_FALSE(knowing.isAllowed(tree.path(folder))) << folder;
    EXPECT_FALSE(knowing.isAllowedEntry(tree.path("home/bild")));
    EXPECT_FALSE(knowing.isAllowedEntry(tree.path("home/bild/neu.txt")));
    const auto inExamined = [&](std::string_view folder, const char *name) {
        return knowing.isAllowedFileIn(knowing.examined(tree.path(folder).native()), tree.path(folder) / name);
    };
    EXPECT_FALSE(inExamined("home/bild", "neu.txt"));
    EXPECT_FALSE(inExamined("home/bild/inside", "neu.txt"));
    EXPECT_FALSE(inExamined("home/tief", "x"));
    EXPECT_TRUE(inExamined("home/gut", "a.txt"));
    EXPECT_FALSE(inExamined("home", "Library"));
    EXPECT_TRUE(knowing.isAllowed(tree.path("home/gut")));
    EXPECT_TRUE(knowing.isAllowedEntry(tree.path("home/gut/a.txt")));
    EXPECT_TRUE(knowing.isAllowedEntry(tree.path("home/Downloads/a.txt")));
}

TEST_F(LinkedLocationsTest, JudgesAFileInAnExaminedFolderLikeAnyEntry)
{
    tree.lines({"home/.config/", "home/Ablage/.tief/", "home/Library/Mobile Documents/com~apple~CloudDocs/",
                "daten/system/", "home/gut->../daten", "home/zu->../system"});
    const SystemLocations knowing(tree.path("home"), {tree.path("system"), tree.path("daten/system/inside")});
    for (const char *const folder :
         {"", "home", "home/Downloads", "home/Ablage/.tief", "home/.config", "home/Library",
          "home/Library/Mobile Documents", "home/Library/Mobile Documents/com~apple~CloudDocs", "home/gut", "home/zu",
          "daten", "daten/system", "system", "system/inside", "/", "/usr", "/tmp"}) {
        const Location named = tree.path(folder);
        const SystemLocations::Examined examined = knowing.examined(resolvedLocation(named)->native());
        for (const char *const name :
             {"a.txt", ".profile", "Library", "inside", "system", "com~apple~CloudDocs", "..", ".", "a/../../system"}) {
            const Location entry = named / name;
            if (std::filesystem::is_directory(entry))
                continue; // never asked about
            // Only a path with one name below the folder is a question about an entry in it.
            const bool isEntry = isStandardised(entry.native()) && entry.filename() == name;
            EXPECT_EQ(knowing.isAllowedFileIn(examined, entry), isEntry && knowing.isAllowedEntry(entry)) << entry;
        }
    }
}

TEST_F(LinkedLocationsTest, OpensAnExceptionThatIsCreatedLater)
{
    const SystemLocations knowing(tree.path("home"), SystemFolders{{tree.path("system")}, {tree.path("system/media")}});
    tree.lines({"system/media/anna/Stick/a.txt"});
    EXPECT_TRUE(knowing.isAllowed(tree.path("system/media/anna/Stick")));
    EXPECT_TRUE(knowing.isAllowedEntry(tree.path("system/media/anna/Stick/a.txt")));
    EXPECT_FALSE(knowing.isAllowed(tree.path("system/anderes")));
}

TEST_F(LinkedLocationsTest, ForgetsWhatASystemFolderWas)
{
    // Inode numbers of removed folders are reused.
    const SystemLocations knowing(tree.path("home"), {tree.path("system")});
    std::filesystem::rename(tree.path("system"), tree.path("home/umbenannt"));
    EXPECT_TRUE(knowing.isAllowed(tree.path("home/umbenannt")));
    tree.lines({"system/"});
    EXPECT_FALSE(knowing.isAllowed(tree.path("system")));
}

TEST(SystemLocationsTest, KnowsHomeAndSystemFoldersByAllTheirNames)
{
    const TempTree tree;
    tree.lines({"echt/anna/Library/", "echt/anna/Downloads/", "heim->echt", "opt->anderswo", "anderswo/programm/"});
    const SystemLocations locations(tree.path("heim/anna"), {tree.path("echt"), tree.path("opt")});
    EXPECT_TRUE(locations.isAllowed(tree.path("heim/anna/Downloads")));
    EXPECT_TRUE(locations.isAllowed(tree.path("echt/anna/Downloads")));
    EXPECT_FALSE(locations.isAllowed(tree.path("echt/anna/Library")));
    EXPECT_FALSE(locations.isAllowed(tree.path("heim/anna/Library/x")));
    EXPECT_FALSE(locations.isAllowed(tree.path("heim/berta"))) << "resolved it lies in a refused folder";
    EXPECT_FALSE(locations.isAllowed(tree.path("anderswo/programm"))) << "a system folder's real place";
}

TEST(SystemLocationsTest, IgnoresCaseWhereTheDiskDoes)
{
    const TempTree tree;
    // A symlink under the swapped name simulates a case-insensitive volume.
    tree.lines({"home/", "System/", "sYSTEM->System", "Genau/"});
    const SystemLocations locations(tree.path("home"), {tree.path("System"), tree.path("Genau")});
    EXPECT_FALSE(locations.isAllowedText(tree.path("sysTEM/x")));
    EXPECT_TRUE(locations.isAllowedText(tree.path("systematik")));
    EXPECT_TRUE(locations.isAllowedText(tree.path("genau")));
}

} // namespace
