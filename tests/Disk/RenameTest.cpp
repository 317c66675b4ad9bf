#include "Disk/Rename.h"

#include "Disk/FileAttributes.h"
#include "Support/FuseMount.h"
#include "Support/TempTree.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <functional>

#include <sys/stat.h>
#include <unistd.h>

namespace brellin {

namespace {

using test::FuseMount;
using test::TempTree;

int refuses(NameIn, NameIn)
{
    return EINVAL;
}

Result<void> renamed(const Location &from, const Location &to, SystemRename rename)
{
    const EntryPlace source = TRY(openPlace(from));
    const EntryPlace target = TRY(openPlace(to));
    return renameExclusively(source.at(), target.at(), rename);
}

/// Runs with the system's exclusive rename and on a file system without it.
class RenameTest : public ::testing::TestWithParam<SystemRename> {
protected:
    TempTree tree;
};

INSTANTIATE_TEST_SUITE_P(EveryWay, RenameTest, ::testing::Values(systemRename, refuses),
                         [](const auto &way) { return way.index == 0 ? "system" : "fallback"; });

TEST_P(RenameTest, movesEveryKindWhole)
{
    tree.lines({"datei=inhalt", "ordner/darin=x", "ziel/"});
    tree.link("link", "nirgends");
    ASSERT_EQ(::mkfifo(tree.path("pipe").c_str(), 0600), 0);
    for (const std::string name : {"datei", "ordner", "link", "pipe"}) {
        const FileIdentity before = readAttributes(tree.path(name))->identity;
        const auto outcome = renamed(tree.path(name), tree.path("ziel") / name, GetParam());
        ASSERT_TRUE(outcome) << name << outcome.error().message.toStdString();
        EXPECT_FALSE(tree.has(name));
        EXPECT_EQ(readAttributes(tree.path("ziel") / name)->identity, before) << name;
    }
    EXPECT_EQ(tree.content("ziel/ordner/darin"), "x");
}

TEST_P(RenameTest, neverReplacesAnything)
{
    tree.lines(
        {"datei=neu", "ordner/darin=x", "belegt/datei=alt", "belegt/leer/", "belegt/voll/y=y", "belegt/link->weg"});
    ASSERT_EQ(::link(tree.path("datei").c_str(), tree.path("belegt/hart").c_str()), 0);
    ASSERT_EQ(::link(tree.path("datei").c_str(), tree.path("DATEI").c_str()), 0);
    const std::string before = tree.snapshot();
    for (const std::string source : {"datei", "ordner"}) {
        for (const std::string target :
             {"belegt/datei", "belegt/leer", "belegt/voll", "belegt/link", "belegt/hart", "DATEI"}) {
            const auto outcome = renamed(tree.path(source), tree.path(target), GetParam());
            ASSERT_FALSE(outcome) << source << " onto " << target;
            EXPECT_TRUE(outcome.error().is(std::errc::file_exists)) << source << " onto " << target;
            EXPECT_EQ(tree.snapshot(), before) << source << " onto " << target;
        }
    }
}

TEST_P(RenameTest, failsWithItsCauseAndChangesNothing)
{
    tree.lines({"ordner/darin=x", "datei=x"});
    const std::string before = tree.snapshot();
    struct Row {
        std::string from;
        std::string to;
        std::errc cause;
    };
    const Row rows[] = {
        {"fehlt", "neu", std::errc::no_such_file_or_directory},
        {"datei", "fehlt/neu", std::errc::no_such_file_or_directory},
        {"ordner", "ordner/unter", std::errc::invalid_argument},
        {"datei", "ordner", std::errc::file_exists},
        {"datei", std::string(256, 'n'), std::errc::filename_too_long},
    };
    for (const Row &row : rows) {
        const auto outcome = renamed(tree.path(row.from), tree.path(row.to), GetParam());
        ASSERT_FALSE(outcome) << row.from;
        EXPECT_TRUE(outcome.error().is(row.cause)) << row.from << outcome.error().message.toStdString();
    }
    EXPECT_EQ(tree.snapshot(), before);
}

TEST_P(RenameTest, saysThatVolumesDiffer)
{
    if (test::otherVolume().empty())
        GTEST_SKIP() << "no second volume on this machine";
    const TempTree other(test::otherVolume());
    tree.lines({"datei=x", "ordner/"});
    for (const std::string name : {"datei", "ordner"}) {
        const auto outcome = renamed(tree.path(name), other.path(name), GetParam());
        ASSERT_FALSE(outcome);
        EXPECT_TRUE(outcome.error().is(std::errc::cross_device_link));
        EXPECT_TRUE(tree.has(name));
        EXPECT_FALSE(other.has(name)) << "no reserved name stays";
    }
}

/// Simulates a case-insensitive volume.
int ignoresCase(NameIn from, NameIn to)
{
    if (std::string_view(from.name) == "brief.txt" && std::string_view(to.name) == "Brief.txt")
        return EEXIST;
    return systemRename(from, to);
}

TEST(RenameCaseTest, changeOfCaseThatFindsTheTargetTakenLeavesBoth)
{
    const TempTree tree;
    tree.file("brief.txt", "x");
    ASSERT_EQ(::link(tree.path("brief.txt").c_str(), tree.path("Brief.txt").c_str()), 0);
    const std::string before = tree.snapshot();
    const auto outcome = renamed(tree.path("brief.txt"), tree.path("Brief.txt"), ignoresCase);
    ASSERT_FALSE(outcome);
    EXPECT_TRUE(outcome.error().is(std::errc::file_exists));
    EXPECT_EQ(tree.snapshot(), before);
}

/// The same volume; removing one name removes the other, which is the same entry.
int vanishesWithTheOther(NameIn from, NameIn to)
{
    const int error = ignoresCase(from, to);
    if (error == 0 && std::string_view(from.name) == "brief.txt")
        ::unlinkat(from.folder, "Brief.txt", 0);
    return error;
}

TEST(RenameCaseTest, changeOfCaseGoesByAThirdName)
{
    const TempTree tree;
    tree.lines({"brief.txt=x", "Brief (2).txt=fremd"});
    ASSERT_EQ(::link(tree.path("brief.txt").c_str(), tree.path("Brief.txt").c_str()), 0);
    const auto outcome = renamed(tree.path("brief.txt"), tree.path("Brief.txt"), vanishesWithTheOther);
    ASSERT_TRUE(outcome) << outcome.error().message.toStdString();
    EXPECT_FALSE(tree.has("brief.txt"));
    EXPECT_EQ(tree.content("Brief.txt"), "x");
    EXPECT_EQ(tree.content("Brief (2).txt"), "fremd");
}

TEST(RenameShareTest, givesUpTheOldNameWhereHardLinksHaveNumbersOfTheirOwn)
{
    const TempTree tree;
    tree.lines({"serviert/datei=inhalt", "serviert/link->datei", "serviert/ziel/belegt=alt", "freigabe/"});
    const FuseMount share = FuseMount::share(tree.path("serviert"), tree.path("freigabe"));
    if (!share)
        GTEST_SKIP() << "no share on this machine";
    for (const std::string name : {"datei", "link"}) {
        const Location from = tree.path("freigabe") / name;
        EXPECT_TRUE(renameExclusively(from, tree.path("freigabe/ziel/belegt")).error().is(std::errc::file_exists));
        const auto outcome = renameExclusively(from, tree.path("freigabe/ziel") / name);
        ASSERT_TRUE(outcome) << name << outcome.error().message.toStdString();
        EXPECT_FALSE(tree.has("serviert/" + name));
        EXPECT_TRUE(tree.has("serviert/ziel/" + name));
    }
    EXPECT_EQ(tree.content("serviert/ziel/datei"), "inhalt");
    EXPECT_EQ(tree.content("serviert/ziel/belegt"), "alt");
}

} // namespace

} // namespace brellin
