#include "Features/Screens/StorageOverviewPage.h"

#include "Features/Screens/StorageTreemap.h"
#include "Features/StorageOverview.h"
#include "Look/Theme.h"
#include "Support/TempTree.h"
#include "Support/WaitUntil.h"

#include <QApplication>
#include <QLabel>
#include <QListView>
#include <QMenu>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

using namespace brellin;
using namespace brellin::test;

namespace {

class StorageOverviewPageTest : public testing::Test {
protected:
    StorageOverviewPageTest()
    {
        Theme::install(*qApp);
        tree.file("Urlaub/Meran/film.mp4", std::string(400'000, 'f'));
        tree.file("Urlaub/bild.jpg", std::string(200'000, 'b'));
        tree.file("Musik/lied.mp3", std::string(300'000, 'l'));
        tree.file("brief.pdf", std::string(100'000, 'p'));
        page.resize(1060, 740);
        QObject::connect(&page, &StorageOverviewPage::openWanted, [this](const Location &entry) { opened = entry; });
        QObject::connect(&page, &StorageOverviewPage::trashWanted,
                         [this](const std::vector<Location> &entries) { trashed = entries; });
        QObject::connect(&page, &StorageOverviewPage::leaveWanted, [this] { left = true; });
    }

    void open()
    {
        page.show();
        page.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&page));
        overview.count(tree.root());
        ASSERT_TRUE(waitUntil([this] { return !overview.counting.get(); }));
        tiles()->setFocus();
    }
    template <class Kind>
    Kind *find(const char *name) const
    {
        Kind *const found = page.findChild<Kind *>(QString::fromUtf8(name));
        EXPECT_TRUE(found) << name;
        return found;
    }
    StorageTreemap *tiles() const { return find<StorageTreemap>("storageTreemap"); }
    QListView *list() const { return find<QListView>("storageList"); }
    QString text(const char *label) const { return find<QLabel>(label)->text(); }
    QStringList names() const
    {
        QStringList all;
        for (int row = 0; row < list()->model()->rowCount(); ++row)
            all << list()->model()->index(row, 0).data().toString();
        return all;
    }
    QString current() const { return list()->currentIndex().data().toString(); }
    void clickTile(int entry) { QTest::mouseClick(tiles(), Qt::LeftButton, {}, tiles()->tile(entry).center()); }

    TempTree tree;
    StorageOverview overview;
    StorageOverviewPage page{overview, nullptr, [](const Location &) -> Result<VolumeSpace> {
                                 return VolumeSpace{512'000'000'000, 212'400'000'000};
                             }};
    Location opened;
    std::vector<Location> trashed;
    bool left = false;
};

} // namespace

TEST_F(StorageOverviewPageTest, aClickGoesDownAndBackGoesUp)
{
    open();
    EXPECT_EQ(names().join(u'|'), QStringLiteral("Urlaub|Musik|brief.pdf"));
    EXPECT_TRUE(text("storageSubtitle").endsWith(QStringLiteral(" in 4 Dateien")))
        << text("storageSubtitle").toStdString();
    clickTile(0);
    EXPECT_EQ(overview.shown.get(), tree.path("Urlaub"));
    EXPECT_EQ(names().join(u'|'), QStringLiteral("Meran|bild.jpg"));
    EXPECT_TRUE(text("storageSubtitle").contains(QStringLiteral(" › Urlaub · ")));
    clickTile(1);
    EXPECT_EQ(overview.shown.get(), tree.path("Urlaub")) << "a file is only chosen";
    EXPECT_EQ(current(), QStringLiteral("bild.jpg"));

    QTest::mouseClick(find<QWidget>("storageBack"), Qt::LeftButton);
    EXPECT_EQ(overview.shown.get(), tree.root());
    EXPECT_EQ(current(), QStringLiteral("Urlaub")) << "the folder one comes from";
    EXPECT_FALSE(left);
    QTest::mouseClick(find<QWidget>("storageBack"), Qt::LeftButton);
    EXPECT_TRUE(left);
}

TEST_F(StorageOverviewPageTest, theKeysGoFromTileToTileDownAndUp)
{
    open();
    EXPECT_EQ(current(), QStringLiteral("Urlaub"));
    EXPECT_TRUE(tiles()->accessibleDescription().startsWith(QStringLiteral("Urlaub, ")));
    QTest::keyClick(tiles(), Qt::Key_Right);
    EXPECT_EQ(current(), QStringLiteral("Musik"));
    QTest::keyClick(tiles(), Qt::Key_Left);
    EXPECT_EQ(current(), QStringLiteral("Urlaub"));
    QTest::keyClick(tiles(), Qt::Key_Left);
    EXPECT_EQ(current(), QStringLiteral("Urlaub")) << "nothing lies there";
    QTest::keyClick(tiles(), Qt::Key_Return);
    EXPECT_EQ(current(), QStringLiteral("Meran"));
    QTest::keyClick(list(), Qt::Key_Return);
    EXPECT_EQ(overview.shown.get(), tree.path("Urlaub/Meran")) << "the list does the same";
    QTest::keyClick(tiles(), Qt::Key_Backspace);
    QTest::keyClick(list(), Qt::Key_Backspace);
    EXPECT_EQ(overview.shown.get(), tree.root());
    QTest::keyClick(tiles(), Qt::Key_Backspace);
    EXPECT_TRUE(left);
}

TEST_F(StorageOverviewPageTest, asksForWhatIsToBeOpenedOrTrashed)
{
    open();
    QTest::mouseClick(find<QWidget>("storageOpen"), Qt::LeftButton);
    EXPECT_EQ(opened, tree.path("Urlaub"));
    list()->setCurrentIndex(list()->model()->index(2, 0));
    EXPECT_EQ(find<QPushButton>("storageOpen")->text(), QStringLiteral("Im Ordner zeigen"));
    QTest::keyClick(tiles(), Qt::Key_Return);
    EXPECT_EQ(opened, tree.path("brief.pdf"));
    QTest::keyClick(tiles(), Qt::Key_Delete);
    EXPECT_EQ(trashed, std::vector{tree.path("brief.pdf")});

    list()->setCurrentIndex(list()->model()->index(1, 0));
    overview.removed(trashed);
    EXPECT_EQ(names().join(u'|'), QStringLiteral("Urlaub|Musik"));
    EXPECT_EQ(current(), QStringLiteral("Musik")) << "the choice stays";
    overview.removed({tree.path("Musik")});
    QTest::keyClick(tiles(), Qt::Key_Delete);
    EXPECT_NE(trashed, std::vector{tree.path("Musik")}) << "what is gone is not asked for again";
}

TEST_F(StorageOverviewPageTest, saysWhatIsFreeAndWhatIsEmpty)
{
    tree.folder("leer");
    open();
    ASSERT_TRUE(waitUntil([this] { return text("storageSpace").contains(QStringLiteral("frei")); }));
    EXPECT_EQ(text("storageSpace"),
              QStringLiteral("212,4 GB von 512 GB frei. Mehrfach verknüpfte Dateien sind einmal gezählt."));
    EXPECT_FALSE(find<QWidget>("storageStop")->isVisible());
    overview.goDown(tree.path("leer"));
    EXPECT_TRUE(find<QWidget>("storageEmpty")->isVisible());
    EXPECT_FALSE(find<QPushButton>("storageTrash")->isEnabled());
    overview.count(tree.path("gibt es nicht"));
    ASSERT_TRUE(waitUntil([this] { return overview.errorMessage.get().has_value(); }));
    EXPECT_TRUE(find<QWidget>("storageEmpty")->isVisible());
}
