#include "Places/Crumbs.h"

#include <QStringList>

#include <gtest/gtest.h>

using namespace brellin;

TEST(CrumbsTest, leadFromTheHomeFolderOrFromTheRoot)
{
    KnownFolders folders = KnownFolders::ofThisUser();
    folders.home = "/home/anna";
    const auto way = [&folders](const Location &folder) {
        QStringList words;
        for (const Crumb &crumb : crumbsOf(folder, folders))
            words.append(crumb.title + QLatin1Char('=') + shown(crumb.folder));
        return words.join(u' ').toStdString();
    };
    EXPECT_EQ(way("/home/anna"), "Benutzerordner=/home/anna");
    EXPECT_EQ(way("/home/anna/Briefe/2026"),
              "Benutzerordner=/home/anna Briefe=/home/anna/Briefe 2026=/home/anna/Briefe/2026");
    EXPECT_EQ(way("/"), "Startvolume=/");
    // A path with the home folder's path as a mere prefix is outside, as are its ancestors.
    EXPECT_EQ(way("/home/annabell"), "Startvolume=/ home=/home annabell=/home/annabell");
    EXPECT_EQ(way("/home"), "Startvolume=/ home=/home");
}
