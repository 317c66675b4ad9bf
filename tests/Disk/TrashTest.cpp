#include "Disk/SystemTrash.h"

#include "Disk/TrashInfo.h"
#include "Support/FailingCalls.h"
#include "Support/FuseMount.h"
#include "Support/TempTree.h"

#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <set>

#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace brellin {

namespace {

using test::snapshotOf;
using test::TempTree;

FileIdentity identityOf(const Location &location)
{
    return readAttributes(location)->identity;
}

std::string messageOf(const auto &result)
{
    return result ? std::string() : result.error().message.toStdString();
}

class SystemTrashTest : public ::testing::Test {
protected:
    TempTree tree;
    SystemVolumes volumes;
    SystemTrash trash{tree.path("daten/Trash"), volumes};

    std::string record(const std::string &name) const
    {
        return tree.content("daten/Trash/info/" + name + ".trashinfo");
    }
};

TEST(TrashInfoTest, keepsEveryByteOfAnOrigin)
{
    const QDateTime date(QDate(2026, 9, 3), QTime(4, 5, 6));
    EXPECT_EQ(trashInfoText("/home/eva/ü #%.txt", date),
              "[Trash Info]\nPath=/home/eva/%C3%BC%20%23%25.txt\nDeletionDate=2026-09-03T04:05:06\n");
    for (const std::string path :
         {"/a/ü #%.txt", "/a/zwei\nZeilen\r", "/a/\xff\xfe\x01", "/a/100%25", "b/[Trash Info]", "/="})
        EXPECT_EQ(originInTrashInfo(trashInfoText(path, date)), path);
}

TEST(TrashInfoTest, readsWhatOthersWrite)
{
    struct Row {
        std::string text;
        std::optional<std::string> origin;
    };
    const Row rows[] = {
        {"[Trash Info]\nPath=/a%20b\n", "/a b"},
        {"[Trash Info]\nDeletionDate=2026-01-01T00:00:00\nPath=/a\nPath=/b", "/a"},
        {"[Trash Info]\nPath=/100% roh%zz%4", "/100% roh%zz%4"},
        {"Path=/a\n", std::nullopt},
        {"[Trash Info]\n[Anderes]\nPath=/a\n", std::nullopt},
        {"[Trash Info]\nPath=/a%00b\n", std::nullopt},
        {"[Trash Info]\nPath=\n", std::nullopt},
        {"", std::nullopt},
    };
    for (const Row &row : rows)
        EXPECT_EQ(originInTrashInfo(row.text), row.origin) << row.text;
}

TEST_F(SystemTrashTest, givesEveryEntryBackAsItWas)
{
    tree.lines(
        {"a/ü #%.txt=x", "a/zwei\nZeilen=y", "a/\xff\xfe=z", "a/ordner/tief/datei=w", "a/weg->nirgends", "a/-rf=v"});
    const std::string before = snapshotOf(tree.path("a"));
    std::vector<std::pair<Location, Location>> put;
    for (const auto &entry : std::filesystem::directory_iterator(tree.path("a"))) {
        const FileIdentity identity = identityOf(entry.path());
        EXPECT_TRUE(trash.possible(entry.path()));
        const auto place = trash.put(entry.path());
        ASSERT_TRUE(place) << entry.path() << messageOf(place);
        EXPECT_EQ(identityOf(*place), identity) << "the entry itself, a link not followed";
        EXPECT_EQ(trash.find(entry.path(), identity), *place);
        EXPECT_TRUE(trash.holds(*place));
        put.emplace_back(*place, entry.path());
    }
    EXPECT_EQ(snapshotOf(tree.path("a")), "");
    for (const auto &[place, origin] : put)
        EXPECT_TRUE(trash.restore(place, origin, origin));
    EXPECT_EQ(snapshotOf(tree.path("a")), before);
    EXPECT_EQ(snapshotOf(tree.path("daten/Trash/files")) + snapshotOf(tree.path("daten/Trash/info")), "");
    EXPECT_EQ(readAttributes(tree.path("daten/Trash/info"))->mode, 0700U);
}

TEST_F(SystemTrashTest, neverReplacesWhatIsThere)
{
    const std::string longest(255, 'n');
    tree.lines({"daten/Trash/files/verwaist.txt=ohne Angaben", "daten/Trash/info/a.txt.trashinfo=kaputt"});
    tree.lines({"a.txt=1", "b/a.txt=2", "verwaist.txt=3"});
    tree.file(longest, "4");
    EXPECT_EQ(trash.put(tree.path("a.txt"))->filename(), "a (2).txt");
    EXPECT_EQ(trash.put(tree.path("b/a.txt"))->filename(), "a (3).txt");
    EXPECT_EQ(trash.put(tree.path("verwaist.txt"))->filename(), "verwaist (2).txt");
    const auto cut = trash.put(tree.path(longest));
    ASSERT_TRUE(cut) << messageOf(cut);
    EXPECT_EQ(cut->filename().native().size(), 245U) << "the record's name is ten bytes longer";
    EXPECT_EQ(tree.content("daten/Trash/files/verwaist.txt"), "ohne Angaben");
    EXPECT_EQ(tree.content("daten/Trash/info/a.txt.trashinfo"), "kaputt");
    EXPECT_TRUE(trash.restore(*cut, tree.path(longest), tree.path(longest)));
    EXPECT_EQ(tree.content(longest), "4");
}

TEST_F(SystemTrashTest, manyOfOneNameEachFindAPlace)
{
    std::set<Location> places;
    for (int i = 0; i < 40; ++i)
        places.insert(*trash.put(tree.file("index.html", std::to_string(i))));
    EXPECT_EQ(places.size(), 40U);
}

TEST_F(SystemTrashTest, restoresOnlyWhatTheRecordNames)
{
    tree.lines({"a=1", "belegt=2"});
    const Location origin = tree.path("a");
    const Location place = *trash.put(origin);
    tree.file("daten/Trash/files/ohne", "3");
    const std::string before = tree.snapshot();
    struct Row {
        std::string what;
        Location trashed;
        Location original;
        Location destination;
    };
    const Row rows[] = {
        {"another origin", place, tree.path("b"), tree.path("b")},
        {"taken", place, origin, tree.path("belegt")},
        {"no folder to go to", place, origin, tree.path("fehlt/a")},
        {"no record", tree.path("daten/Trash/files/ohne"), tree.path("ohne"), tree.path("ohne")},
        {"not there", tree.path("daten/Trash/files/fehlt"), origin, origin},
        {"not in a Trash", tree.path("belegt"), tree.path("belegt"), tree.path("c")},
        {"the record itself", tree.path("daten/Trash/info/a.trashinfo"), origin, origin},
    };
    for (const Row &row : rows) {
        EXPECT_FALSE(trash.restore(row.trashed, row.original, row.destination)) << row.what;
        EXPECT_EQ(tree.snapshot(), before) << row.what;
    }
    EXPECT_TRUE(trash.restore(place, origin, tree.path("anderswo")));
    EXPECT_EQ(tree.content("anderswo"), "1");
}

TEST_F(SystemTrashTest, findsByOriginAndIdentity)
{
    const Location origin = tree.file("a", "alt");
    const FileIdentity first = identityOf(origin);
    const Location firstPlace = *trash.put(origin);
    tree.file("a", "neu");
    const FileIdentity second = identityOf(origin);
    const Location secondPlace = *trash.put(origin);
    // As left by a kill between writing the record and moving the entry.
    tree.file("daten/Trash/info/geist.trashinfo", trashInfoText(origin.native(), QDateTime::currentDateTime()));
    EXPECT_EQ(trash.find(origin, first), firstPlace);
    EXPECT_EQ(trash.find(origin, second), secondPlace);
    EXPECT_EQ(trash.find(tree.path("b"), first), std::nullopt);
    EXPECT_EQ(trash.find(origin, identityOf(tree.root())), std::nullopt);
    EXPECT_EQ(trash.put(tree.file("geist"))->filename(), "geist (2)");
}

TEST_F(SystemTrashTest, refusesTheTrashAndWhatHoldsIt)
{
    const Location place = *trash.put(tree.file("a", "1"));
    tree.folder("ordner");
    tree.link("papierkorb", tree.path("daten/Trash").native());
    const std::string before = tree.snapshot();
    for (const Location &entry :
         {place, tree.path("daten/Trash/info/a.trashinfo"), tree.path("daten/Trash/files"), tree.path("daten/Trash"),
          tree.path("daten"), tree.root(), tree.path("papierkorb/files/a"), tree.path("fehlt"), Location("/"),
          Location("/proc")}) {
        EXPECT_FALSE(trash.put(entry)) << entry;
        EXPECT_FALSE(trash.possible(entry)) << entry;
        EXPECT_EQ(tree.snapshot(), before) << entry;
    }
    EXPECT_TRUE(trash.holds(place));
    EXPECT_TRUE(trash.holds(tree.path("papierkorb/files/a")));
    for (const std::string other :
         {"daten/Trash/files", "daten/Trash/info/a.trashinfo", "daten/Trash/files/a/b", "ordner"})
        EXPECT_FALSE(trash.holds(tree.path(other))) << other;
    EXPECT_TRUE(trash.put(tree.path("papierkorb"))) << "a link to the Trash is just a link";
}

TEST_F(SystemTrashTest, possibleCreatesNothing)
{
    tree.file("a");
    const std::string before = tree.snapshot();
    EXPECT_TRUE(trash.possible(tree.path("a")));
    EXPECT_EQ(tree.snapshot(), before);
}

TEST_F(SystemTrashTest, leavesTheEntryWhereTheRecordCannotBeWritten)
{
    tree.lines({"a=1", "daten/Trash/files/", "daten/Trash/info=kein Ordner"});
    const std::string before = tree.snapshot();
    EXPECT_FALSE(trash.put(tree.path("a")));
    EXPECT_FALSE(trash.possible(tree.path("a")));
    EXPECT_EQ(tree.snapshot(), before);
}

/// A volume other than the home's. Its top is simulated, so that no other folder of the machine is changed.
class OtherVolume : public SystemVolumes {
public:
    explicit OtherVolume(Location root) : m_root(std::move(root)) {}
    Result<Location> top(const Location &) const override { return m_root; }

private:
    Location m_root;
};

class VolumeTrashTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        if (test::otherVolume().empty())
            GTEST_SKIP() << "no second volume on this machine";
    }

    const std::string user = std::to_string(::geteuid());
    TempTree home;
    TempTree tree{test::otherVolume().empty() ? Location("/tmp") : test::otherVolume()};
    OtherVolume volumes{tree.root()};
    SystemTrash trash{home.path("Trash"), volumes};
};

TEST_F(VolumeTrashTest, keepsOriginsRelativeToTheTop)
{
    const Location origin = tree.file("a b/ü.txt", "x");
    const FileIdentity identity = identityOf(origin);
    ASSERT_TRUE(trash.possible(origin));
    EXPECT_FALSE(tree.has(".Trash-" + user));
    const auto place = trash.put(origin);
    ASSERT_TRUE(place) << messageOf(place);
    EXPECT_EQ(*place, tree.path(".Trash-" + user + "/files/ü.txt"));
    EXPECT_NE(tree.content(".Trash-" + user + "/info/ü.txt.trashinfo").find("\nPath=a%20b/%C3%BC.txt\n"),
              std::string::npos);
    EXPECT_EQ(readAttributes(tree.path(".Trash-" + user))->mode, 0700U);
    EXPECT_TRUE(trash.holds(*place));
    EXPECT_EQ(trash.find(origin, identity), *place);
    EXPECT_FALSE(trash.put(*place)) << "already in the Trash";
    EXPECT_FALSE(trash.restore(*place, tree.path("ü.txt"), tree.path("ü.txt")));
    EXPECT_FALSE(home.has("Trash"));

    // Through a link, and after the original folder is gone.
    home.link("stick", tree.root().native());
    std::filesystem::remove(tree.path("a b"));
    EXPECT_EQ(trash.find(home.path("stick/a b/ü.txt"), identity), *place);
    tree.folder("a b");
    EXPECT_TRUE(trash.restore(*place, home.path("stick/a b/ü.txt"), home.path("stick/a b/ü.txt")));
    EXPECT_EQ(tree.content("a b/ü.txt"), "x");
}

TEST_F(VolumeTrashTest, usesOnlyGenuineFolders)
{
    struct Row {
        std::string what;
        std::string line;
        mode_t mode;
        std::string expected; ///< where the entry goes; empty if nowhere
    };
    const Row rows[] = {
        {"shared", ".Trash/", 01777, ".Trash/" + user + "/files/a"},
        {"shared without sticky bit", ".Trash/", 0777, ".Trash-" + user + "/files/a"},
        {"shared is a link", ".Trash->anderswo", 0, ".Trash-" + user + "/files/a"},
        {"shared is a file", ".Trash=x", 0644, ".Trash-" + user + "/files/a"},
        {"own is a link", ".Trash-" + user + "->anderswo", 0, ""},
        {"own is a file", ".Trash-" + user + "=x", 0644, ""},
        {"own holds a link", ".Trash-" + user + "/files->../anderswo", 0, ""},
    };
    for (const Row &row : rows) {
        const TempTree volume(test::otherVolume());
        const OtherVolume top(volume.root());
        SystemTrash other(home.path("Trash"), top);
        volume.lines({"anderswo/files/", "anderswo/info/", "a=x"});
        volume.lines({row.line});
        if (row.mode != 0)
            ::chmod(volume.path(row.line.substr(0, row.line.find_first_of("/="))).c_str(), row.mode);
        EXPECT_EQ(other.possible(volume.path("a")), !row.expected.empty()) << row.what;
        const auto place = other.put(volume.path("a"));
        ASSERT_EQ(place.has_value(), !row.expected.empty()) << row.what << messageOf(place);
        EXPECT_TRUE(volume.has(place ? row.expected : "a")) << row.what;
        EXPECT_EQ(other.holds(volume.path("anderswo/files/a")), false) << row.what;
    }
}

/// Claims one volume although renames fail, like a bind mount or an overlay.
class SameEverywhere : public SystemVolumes {
public:
    bool same(const Location &, const Location &) const override { return true; }
};

TEST_F(VolumeTrashTest, aRefusedRenameLeavesNothingBehind)
{
    const SameEverywhere mistaken;
    SystemTrash other(home.path("Trash"), mistaken);
    tree.file("a", "x");
    const auto place = other.put(tree.path("a"));
    ASSERT_FALSE(place);
    EXPECT_TRUE(place.error().is(std::errc::cross_device_link));
    EXPECT_EQ(tree.content("a"), "x");
    EXPECT_EQ(snapshotOf(home.path("Trash/info")), "");
}

/// A volume with neither exclusive rename nor hard links. Calls of one kind are observed and fail on request.
class CardTrashTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        if (!card)
            GTEST_SKIP() << "cannot mount a card here";
        tree.lines({"karte/a.txt=eins"});
    }
    Result<Location> put(int call, const std::function<int(int)> &errorOf)
    {
        Result<Location> place = failure(QString());
        EXPECT_TRUE(test::runWithFailingCalls(call, errorOf, [&] { place = trash.put(tree.path("karte/a.txt")); }));
        return place;
    }
    std::string listed(const char *part) const { return snapshotOf(own / part); }

    TempTree tree;
    const test::FuseMount card{tree.folder("karte")};
    const Location own = tree.path("karte/.Trash-" + std::to_string(::geteuid()));
    SystemVolumes volumes;
    SystemTrash trash{tree.path("Trash"), volumes};
};

TEST_F(CardTrashTest, keepsANameFreeByItsRecordAndNoEmptyFile)
{
    // A kill at the rename would leave this state.
    std::vector<std::string> seen;
    const auto place = put(SYS_renameat, [&](int) {
        seen.push_back(listed("files"));
        return 0;
    });
    ASSERT_TRUE(place) << messageOf(place);
    EXPECT_EQ(seen, std::vector<std::string>{""});
    EXPECT_EQ(tree.content(place->lexically_relative(tree.root()).native()), "eins");
    EXPECT_FALSE(tree.has("karte/a.txt"));
}

TEST_F(CardTrashTest, takesAnotherNameThanWhatCameAfterTheRecord)
{
    const auto place = put(SYS_fdatasync, [&](int number) {
        if (number == 0)
            std::ofstream(own / "files/a.txt") << "fremd";
        return 0;
    });
    ASSERT_TRUE(place) << messageOf(place);
    EXPECT_EQ(place->filename(), "a (2).txt");
    EXPECT_EQ(std::filesystem::file_size(own / "files/a.txt"), 5U);
    EXPECT_FALSE(entryExists(own / "info/a.txt.trashinfo"));
}

TEST_F(CardTrashTest, aFailedRenameLeavesNothingBehind)
{
    const auto place = put(SYS_renameat, [](int) { return EIO; });
    ASSERT_FALSE(place);
    EXPECT_TRUE(place.error().is(std::errc::io_error));
    EXPECT_EQ(tree.content("karte/a.txt"), "eins");
    EXPECT_EQ(listed("files") + listed("info"), "");
}

} // namespace

} // namespace brellin
