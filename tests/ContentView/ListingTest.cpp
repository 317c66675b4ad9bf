#include "ContentView/Listing.h"

#include "ContentView/BrowserWorld.h"
#include "ContentView/FolderSearch.h"
#include "Features/FileTags.h"
#include "Support/ClosedFolders.h"

#include <gtest/gtest.h>

#include <map>

#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

using namespace brellin;
using namespace brellin::test;

namespace {

std::map<std::string, FileItem> byName(const FileItems &items)
{
    std::map<std::string, FileItem> named;
    for (const FileItem &item : items)
        named[item.nameBytes] = item;
    return named;
}

std::map<std::string, FileItem> listed(const TempTree &tree, HiddenEntries hidden = HiddenEntries::Shown)
{
    const Listing listing = readListing(tree.root(), hidden, SystemVolumes());
    EXPECT_FALSE(listing.error);
    return byName(listing.items);
}

} // namespace

TEST(ListingTest, tellsFoldersFilesAndLinksApart)
{
    const TempTree tree;
    tree.lines({"Ordner/", "Spiel.app/", "brief.pdf=12345", "ohne=x", "zum Ordner->Ordner", "zur Datei->brief.pdf",
                "ins Leere->nichts", "im Kreis->im Kreis"});
    auto items = listed(tree);
    ASSERT_EQ(items.size(), 8u);
    struct Expected {
        const char *name;
        bool isFolder;
        LinkState link;
    };
    for (const Expected &one : {Expected{"Ordner", true, LinkState::None},
                                {"Spiel.app", true, LinkState::None},
                                {"brief.pdf", false, LinkState::None},
                                {"zum Ordner", true, LinkState::Leads},
                                {"zur Datei", false, LinkState::Leads},
                                {"ins Leere", false, LinkState::Broken},
                                {"im Kreis", false, LinkState::Broken}}) {
        EXPECT_EQ(items[one.name].isFolder, one.isFolder) << one.name;
        EXPECT_EQ(items[one.name].link, one.link) << one.name;
        EXPECT_EQ(items[one.name], *FileItem::at(tree.path(one.name))) << one.name;
    }
    EXPECT_EQ(items["brief.pdf"].size, 5);
    EXPECT_EQ(items["brief.pdf"].sizeText(), u"5 Byte"_qs);
    EXPECT_EQ(items["Ordner"].sizeSort(), -1);
    EXPECT_EQ(items["Ordner"].sizeText(), QString());
    EXPECT_EQ(items["zur Datei"].size, 9) << "the link's own";
    EXPECT_EQ(items["Ordner"].kind, u"Ordner"_qs);
    EXPECT_EQ(items["Spiel.app"].kind, u"Ordner"_qs);
    EXPECT_EQ(items["ohne"].kind, u"Datei"_qs);
    EXPECT_NE(items["brief.pdf"].kind, u"Datei"_qs);
}

TEST(ListingTest, leavesOutWhatIsHiddenUnlessItIsAskedFor)
{
    const TempTree tree;
    tree.lines({".punkt", ".hidden=versteckt\nauch nicht da\n", "versteckt", "sichtbar"});
    EXPECT_EQ(listed(tree, HiddenEntries::LeftOut).size(), 1u);
    auto all = listed(tree);
    EXPECT_EQ(all.size(), 4u);
    EXPECT_TRUE(all["versteckt"].isHidden && all[".punkt"].isHidden);
    EXPECT_FALSE(all["sichtbar"].isHidden);
}

TEST(ListingTest, keepsNamesThatAreNoText)
{
    const TempTree tree;
    const std::vector<std::string> names = {"neue\nZeile", "kaputt\xff.txt",
                                            "U\xcc\x88"
                                            "bung",
                                            std::string(255, 'l')};
    for (const std::string &name : names)
        tree.file(name, "x");
    auto items = listed(tree);
    for (const std::string &name : names) {
        ASSERT_TRUE(items.contains(name));
        EXPECT_TRUE(entryExists(items[name].location()));
    }
}

TEST(ListingTest, readsTagsOfFilesButNeverThroughLinks)
{
    const TempTree tree;
    tree.lines({"a.txt=x", "verknuepft->a.txt", "lang.txt=x"});
    const std::string many = "Red,Ablage," + std::string(1000, 'z');
    if (::setxattr(tree.path("a.txt").c_str(), FileTags::attribute, "Red,Urlaub", 10, 0) != 0)
        GTEST_SKIP() << "no extended attributes here";
    ::setxattr(tree.path("lang.txt").c_str(), FileTags::attribute, many.data(), many.size(), 0);
    auto items = listed(tree);
    EXPECT_EQ(items["a.txt"].tags, QStringList({u"Rot"_qs, u"Urlaub"_qs}));
    EXPECT_EQ(items["lang.txt"].tags.size(), 3);
    EXPECT_TRUE(items["verknuepft"].tags.isEmpty());
}

TEST(ListingTest, readsABigFolderCompletely)
{
    const TempTree tree;
    constexpr std::size_t count = 3000; // several pieces and several threads
    for (std::size_t i = 0; i < count; ++i)
        tree.file("Datei " + std::to_string(i), std::string(i % 7, 'x'));
    const auto items = listed(tree);
    ASSERT_EQ(items.size(), count);
    for (std::size_t i = 0; i < count; ++i)
        ASSERT_EQ(items.at("Datei " + std::to_string(i)).size, static_cast<std::int64_t>(i % 7));
}

TEST(ListingTest, saysWhyAFolderCannotBeRead)
{
    const TempTree tree;
    tree.lines({"datei=x"});
    const SystemVolumes volumes;
    EXPECT_TRUE(
        readListing(tree.path("fehlt"), HiddenEntries::Shown, volumes).error->is(std::errc::no_such_file_or_directory));
    EXPECT_TRUE(readListing(tree.path("datei"), HiddenEntries::Shown, volumes).error->is(std::errc::not_a_directory));
    JobControl cancelled;
    cancelled.cancel();
    EXPECT_TRUE(readListing(tree.root(), HiddenEntries::Shown, volumes, &cancelled).error->isCancelled());
}

TEST(ListingTest, saysThatAFolderIsForbidden)
{
    if (::geteuid() == 0)
        GTEST_SKIP() << "nothing is forbidden to root";
    const TempTree tree;
    tree.lines({"zu/innen=x"});
    ::chmod(tree.path("zu").c_str(), 0);
    const Listing listing = readListing(tree.path("zu"), HiddenEntries::Shown, SystemVolumes());
    ::chmod(tree.path("zu").c_str(), 0700);
    ASSERT_TRUE(listing.error);
    EXPECT_TRUE(listing.error->is(std::errc::permission_denied));
}

TEST(FolderSearchTest, findsNamesInSubfoldersWithoutRegardToCase)
{
    const TempTree tree;
    tree.lines({"Rechnung.pdf", "a/RECHNUNGEN/x", "a/b/meine rechnung", ".verborgen/Rechnung", "Paket.app/Rechnung",
                "a/U\xcc\x88"
                "bung",
                "a/b/\xc3\xbc"
                "bersicht",
                "Stra\xc3\x9f"
                "e"});
    const auto found = [&](const QString &query, HiddenEntries hidden) {
        std::string names;
        const FolderSearchResult result = searchFolder({tree.root(), query, hidden});
        EXPECT_FALSE(result.error || result.capped);
        for (const FileItem &item : result.items)
            names += item.path().substr(tree.root().native().size()) + "\n";
        return names;
    };
    EXPECT_EQ(found(u"rechnung"_qs, HiddenEntries::LeftOut),
              "/Rechnung.pdf\n/Paket.app/Rechnung\n/a/RECHNUNGEN\n/a/b/meine rechnung\n");
    EXPECT_EQ(found(u"RECHNUNG"_qs, HiddenEntries::Shown),
              "/Rechnung.pdf\n/.verborgen/Rechnung\n/Paket.app/Rechnung\n/a/RECHNUNGEN\n/a/b/meine rechnung\n");
    EXPECT_EQ(found(u"Üb"_qs, HiddenEntries::LeftOut), "/a/U\xcc\x88"
                                                       "bung\n/a/b/\xc3\xbc"
                                                       "bersicht\n");
    EXPECT_EQ(found(u"STRASSE"_qs, HiddenEntries::LeftOut), "/Stra\xc3\x9f"
                                                            "e\n");
    EXPECT_TRUE(searchFolder({tree.path("fehlt"), u"x"_qs, HiddenEntries::Shown}).error.has_value());
}

TEST(FolderSearchTest, endsAtTheCapAndSaysSo)
{
    const TempTree tree;
    for (std::size_t i = 0; i <= mostSearchResults; ++i)
        tree.file("a/treffer " + std::to_string(i));
    const FolderSearchResult all = searchFolder({tree.root(), u"treffer"_qs, HiddenEntries::Shown});
    EXPECT_EQ(all.items.size(), mostSearchResults);
    EXPECT_TRUE(all.capped);
    std::filesystem::remove(tree.path("a/treffer 7"));
    EXPECT_FALSE(searchFolder({tree.root(), u"treffer"_qs, HiddenEntries::Shown}).capped);
}

TEST(FolderSearchTest, namesFoldersThatCannotBeRead)
{
    const TempTree tree;
    tree.lines({"zu/Brief", "offen/Brief", "offen/zu/Brief"});
    const ClosedFolders closed(tree, {"zu", "offen/zu"});
    if (!closed)
        GTEST_SKIP() << "privileges cannot be dropped";
    const FolderSearchResult found = searchFolder({tree.root(), u"brief"_qs});
    EXPECT_EQ(found.items.size(), 1U);
    EXPECT_EQ(found.gaps.folders, (std::vector{tree.path("offen/zu"), tree.path("zu")}));
}
