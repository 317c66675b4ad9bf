#include "Places/KnownFolders.h"
#include "Support/TempTree.h"

#include <gtest/gtest.h>

#include <cstdlib>

using namespace brellin;
using brellin::test::TempTree;

namespace {

/// An account in a temporary folder.
class KnownFoldersTest : public ::testing::Test {
protected:
    KnownFoldersTest()
    {
        ::setenv("HOME", tree.path("home").c_str(), 1);
        ::setenv("XDG_CONFIG_HOME", tree.path("config").c_str(), 1);
        ::unsetenv("XDG_DATA_HOME");
        tree.folder("home");
    }
    Location home(std::string_view below) const { return tree.path("home") / below; }

    TempTree tree;
};

TEST_F(KnownFoldersTest, FindsFoldersWhereTheUserPutThem)
{
    tree.file("config/user-dirs.dirs", "# XDG_DESKTOP_DIR=\"$HOME/Kommentar\"\n"
                                       "XDG_DESKTOP_DIR=\"$HOME/Schreibtisch\"\n"
                                       "  XDG_DOCUMENTS_DIR = \"/daten/Meine \\\"Akten\\\"\"\r\n"
                                       "XDG_DOWNLOAD_DIR=\"$HOME/\"\n"
                                       "XDG_VIDEOS_DIR=\"Filme\"\n"
                                       "XDG_MUSIC_DIR=\"$HOME/Musik\n"
                                       "XDG_PICTURES_DIR=\"$HOME/alt\"\n"
                                       "XDG_PICTURES_DIR=\"$HOME/B\xFCld/\"");
    const KnownFolders folders = KnownFolders::ofThisUser();
    EXPECT_EQ(folders.home, tree.path("home"));
    EXPECT_EQ(folders.dir(StandardFolder::Desktop), home("Schreibtisch"));
    EXPECT_EQ(folders.dir(StandardFolder::Documents), "/daten/Meine \"Akten\"");
    EXPECT_EQ(folders.dir(StandardFolder::Downloads), home("Downloads")) << "never all of the home folder";
    EXPECT_EQ(folders.dir(StandardFolder::Movies), home("Videos")) << "a relative path is none";
    EXPECT_EQ(folders.dir(StandardFolder::Music), home("Music")) << "without its closing quote";
    EXPECT_EQ(folders.dir(StandardFolder::Pictures), home("B\xFCld"));
}

TEST_F(KnownFoldersTest, HasUsualFoldersWithoutSettings)
{
    ::setenv("XDG_CONFIG_HOME", "relativ", 1);
    tree.file("home/.config/user-dirs.dirs", "XDG_MUSIC_DIR=\"$HOME/Musik\"\n");
    const KnownFolders folders = KnownFolders::ofThisUser();
    EXPECT_EQ(folders.dir(StandardFolder::Music), home("Musik"));
    EXPECT_EQ(folders.dir(StandardFolder::Desktop), home("Desktop"));
    EXPECT_EQ(folders.trash, home(".local/share/Trash/files"));
    EXPECT_FALSE(folders.iCloud || folders.eigeneDateien);
    ::setenv("XDG_DATA_HOME", tree.path("data").c_str(), 1);
    EXPECT_EQ(KnownFolders::ofThisUser().trash, tree.path("data/Trash/files"));
}

TEST_F(KnownFoldersTest, NamesFoldersAsPeopleKnowThem)
{
    tree.folder("home/Library/Mobile Documents/com~apple~CloudDocs/Eigene Dateien");
    const KnownFolders folders = KnownFolders::ofThisUser();
    ASSERT_TRUE(folders.iCloud && folders.eigeneDateien);
    EXPECT_EQ(folders.title(*folders.iCloud / ""), u"iCloud Drive"_qs);
    EXPECT_EQ(folders.title(*folders.eigeneDateien), u"Eigene Dateien"_qs);
    EXPECT_EQ(folders.title(folders.trash), u"Papierkorb"_qs);
    EXPECT_EQ(folders.title(folders.home / ""), u"Benutzerordner"_qs);
    EXPECT_EQ(folders.title("/"), u"/"_qs);
}

} // namespace
