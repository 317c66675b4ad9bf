#include "Features/Screens/TrashPage.h"

#include "Disk/FileActions.h"
#include "Disk/SystemTrash.h"
#include "Features/TrashList.h"
#include "Look/Theme.h"
#include "Places/KnownFolders.h"
#include "Support/TempTree.h"
#include "Support/WaitUntil.h"

#include <QApplication>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTest>
#include <QTreeView>

#include <gtest/gtest.h>

using namespace brellin;
using namespace brellin::test;

namespace {

/// Hides all volumes except that of the tree.
struct NoOthers : SystemVolumes {
    std::vector<Volume> mounted() const override { return {}; }
};

class TrashPageTest : public testing::Test {
protected:
    TrashPageTest()
    {
        Theme::install(*qApp);
        tree.lines({"Briefe/Oma.txt=lieb", "Briefe/Amt.pdf=streng", "Urlaub/bild.jpg=12345678", "Rest.txt=r"});
    }

    void throwAway(std::initializer_list<const char *> entries)
    {
        for (const char *entry : entries)
            ASSERT_TRUE(trash.put(tree.path(entry)));
    }
    void open()
    {
        page.resize(900, 600);
        page.show();
        page.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&page));
        settled();
    }
    void settled()
    {
        ASSERT_TRUE(waitUntil([this] { return !list.loading.get() && !list.returning.get(); }));
    }
    template <class Kind>
    Kind *find(const char *name) const
    {
        Kind *const found = page.findChild<Kind *>(QString::fromUtf8(name));
        EXPECT_TRUE(found) << name;
        return found;
    }
    QTreeView *table() const { return find<QTreeView>("trashTable"); }
    QStringList names() const
    {
        QStringList all;
        for (int row = 0; row < table()->model()->rowCount(); ++row)
            all << table()->model()->index(row, 0).data().toString();
        return all;
    }
    void select(const QString &name)
    {
        const qsizetype row = names().indexOf(name);
        ASSERT_GE(row, 0) << name.toStdString();
        const QRect place = table()->visualRect(table()->model()->index(static_cast<int>(row), 0));
        QTest::mouseClick(table()->viewport(), Qt::LeftButton, {}, place.center());
    }
    QString text(const char *label) const { return find<QLabel>(label)->text(); }

    TempTree tree;
    NoOthers volumes;
    SystemTrash trash{tree.path("Trash"), volumes};
    DiskFileActions files;
    TrashList list{tree.path("Trash"), volumes, trash, files};
    KnownFolders folders = [this] {
        KnownFolders made = KnownFolders::ofThisUser();
        made.home = tree.root();
        return made;
    }();
    TrashPage page{list, folders, nullptr};
};

} // namespace

TEST_F(TrashPageTest, whatIsPutBackLiesWhereItWas)
{
    const std::string before = tree.snapshot();
    throwAway({"Briefe/Oma.txt", "Urlaub"});
    open();
    EXPECT_EQ(names().size(), 2);
    EXPECT_FALSE(find<QPushButton>("trashPutBack")->isEnabled()) << "nothing is selected";
    ASSERT_TRUE(waitUntil([this] { return text("trashCounts") == u"2 Elemente · 12 Byte"; }));

    std::vector<Location> returned;
    QObject::connect(&page, &TrashPage::returned, [&](const std::vector<EntryMove> &moves) {
        returned.clear();
        for (const EntryMove &move : moves)
            returned.push_back(move.to);
    });
    select(QStringLiteral("Oma.txt"));
    EXPECT_EQ(text("trashCounts"), QStringLiteral("1 Element ausgewählt · 4 Byte"));
    QTest::mouseClick(find<QPushButton>("trashPutBack"), Qt::LeftButton);
    ASSERT_TRUE(waitUntil([&] { return !returned.empty(); }));
    EXPECT_EQ(returned, std::vector{tree.path("Briefe/Oma.txt")});
    settled();
    EXPECT_EQ(names(), QStringList{QStringLiteral("Urlaub")});
    EXPECT_EQ(text("trashReportTitle"), QStringLiteral("1 Element zurückgelegt."));

    select(QStringLiteral("Urlaub"));
    QTest::keyClick(table(), Qt::Key_Return, Qt::ControlModifier);
    ASSERT_TRUE(waitUntil([&] { return returned == std::vector{tree.path("Urlaub")}; }));
    settled();
    EXPECT_TRUE(find<QWidget>("trashEmpty")->isVisible());
    std::filesystem::remove_all(tree.path("Trash"));
    EXPECT_EQ(tree.snapshot(), before);
}

TEST_F(TrashPageTest, aFailureIsSaidByNameAndTheEntryStays)
{
    throwAway({"Rest.txt", "Briefe/Amt.pdf"});
    tree.file("Rest.txt", "neu");
    open();
    table()->selectAll();
    QTest::mouseClick(find<QPushButton>("trashPutBack"), Qt::LeftButton);
    ASSERT_TRUE(waitUntil([this] { return find<QWidget>("trashReport")->isVisible(); }));
    settled();
    EXPECT_EQ(text("trashReportTitle"), QStringLiteral("1 Element zurückgelegt. 1 Element blieb im Papierkorb:"));
    EXPECT_TRUE(text("trashReportText").startsWith(QStringLiteral("Rest.txt: ")))
        << text("trashReportText").toStdString();
    EXPECT_EQ(names(), QStringList{QStringLiteral("Rest.txt")});
    EXPECT_EQ(tree.content("Rest.txt"), "neu");
    QTest::mouseClick(find<QWidget>("trashReportClose"), Qt::LeftButton);
    EXPECT_FALSE(find<QWidget>("trashReport")->isVisible());
}

TEST_F(TrashPageTest, aFilterHidesAndASelectionSurvivesAReading)
{
    throwAway({"Rest.txt", "Briefe/Amt.pdf", "Briefe/Oma.txt", "Urlaub"});
    open();
    QTest::keyClicks(find<QLineEdit>("trashFilter"), QStringLiteral("BRIEFE"));
    EXPECT_EQ(names().size(), 2) << "the place is searched, too";
    select(QStringLiteral("Oma.txt"));
    tree.file("Neu.txt", "n");
    throwAway({"Neu.txt"});
    list.refresh();
    settled();
    const QModelIndexList selected = table()->selectionModel()->selectedRows();
    ASSERT_EQ(selected.size(), 1);
    EXPECT_EQ(selected.front().data().toString(), QStringLiteral("Oma.txt"));

    std::vector<Location> places;
    QObject::connect(&page, &TrashPage::placeWanted, [&](const Location &place) { places.push_back(place); });
    QTest::mouseClick(find<QPushButton>("trashShowPlace"), Qt::LeftButton);
    table()->setFocus();
    QTest::keyClick(table(), Qt::Key_Return);
    EXPECT_EQ(places, (std::vector{tree.path("Briefe"), tree.path("Briefe")}));

    find<QLineEdit>("trashFilter")->setText(QStringLiteral("gibt es nicht"));
    EXPECT_TRUE(find<QWidget>("trashEmpty")->isVisible());
    EXPECT_FALSE(find<QPushButton>("trashPutBack")->isEnabled()) << "what is not shown is not put back";
}

TEST_F(TrashPageTest, columnsSortByWhatTheyMean)
{
    tree.lines({"b 10.txt=1", "B 9.txt=4444", "a.txt=22"});
    throwAway({"b 10.txt", "B 9.txt", "a.txt"});
    open();
    const auto sortedBy = [this](int column) {
        table()->sortByColumn(column, Qt::AscendingOrder);
        return names().join(u'|');
    };
    EXPECT_EQ(sortedBy(0), QStringLiteral("a.txt|B 9.txt|b 10.txt"));
    EXPECT_EQ(sortedBy(3), QStringLiteral("b 10.txt|a.txt|B 9.txt"));
}

TEST_F(TrashPageTest, asksToDeleteWhatIsSelectedAndToEmpty)
{
    open();
    EXPECT_FALSE(find<QPushButton>("trashEmptyAll")->isEnabled()) << "nothing is in it";
    throwAway({"Rest.txt", "Briefe/Oma.txt"});
    list.refresh();
    settled();
    EXPECT_FALSE(find<QWidget>("trashDelete")->isEnabled()) << "nothing is selected";
    std::vector<std::vector<Location>> wanted;
    int emptied = 0;
    QObject::connect(&page, &TrashPage::deleteWanted, [&](const auto &places) { wanted.push_back(places); });
    QObject::connect(&page, &TrashPage::emptyWanted, [&] { ++emptied; });
    QTest::keyClick(table(), Qt::Key_Delete, Qt::ShiftModifier);
    EXPECT_TRUE(wanted.empty());
    select(QStringLiteral("Oma.txt"));
    QTest::keyClick(table(), Qt::Key_Delete, Qt::ShiftModifier);
    QTest::mouseClick(find<QWidget>("trashDelete"), Qt::LeftButton);
    const std::vector one{tree.path("Trash/files/Oma.txt")};
    EXPECT_EQ(wanted, (std::vector{one, one}));
    QTest::mouseClick(find<QPushButton>("trashEmptyAll"), Qt::LeftButton);
    EXPECT_EQ(emptied, 1);

    std::filesystem::remove(tree.path("Trash/files/Oma.txt"));
    page.tellDeleted({{"Rest.txt", {QStringLiteral("Das geht nicht."), {}}}}, false);
    EXPECT_EQ(text("trashReportTitle"), QStringLiteral("1 Element blieb im Papierkorb:"));
    EXPECT_EQ(text("trashReportText"), QStringLiteral("Rest.txt: Das geht nicht."));
    EXPECT_TRUE(waitUntil([this] { return names() == QStringList{QStringLiteral("Rest.txt")}; })) << "read again";
}

TEST_F(TrashPageTest, showsPlacesAsTheProgramDoesAndSortsByDate)
{
    const auto trashedOn = [this](const char *name, const char *day) {
        tree.file(std::string("Trash/files/") + name, "x");
        tree.file(std::string("Trash/info/") + name + ".trashinfo",
                  "[Trash Info]\nPath=" + tree.path("Briefe/2026").native() + "/" + name + "\nDeletionDate=" + day +
                      "T10:00:00\n");
    };
    trashedOn("b.txt", "2026-03-01");
    trashedOn("a.txt", "2026-01-09");
    trashedOn("c.txt", "2025-12-31");
    open();
    EXPECT_EQ(names().join(u' '), QStringLiteral("b.txt a.txt c.txt")) << "the latest first";
    EXPECT_EQ(table()->model()->index(0, 1).data().toString(), QStringLiteral("Briefe › 2026"));
    QHeaderView *const header = table()->header();
    const QPoint date(header->sectionViewportPosition(2) + 20, header->height() / 2);
    QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, date);
    EXPECT_EQ(names().join(u' '), QStringLiteral("c.txt a.txt b.txt"));
    QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, date);
    EXPECT_EQ(names().join(u' '), QStringLiteral("b.txt a.txt c.txt"));
}

TEST_F(TrashPageTest, theMenuPutsBackAndNothingIsCutInLargeType)
{
    Theme::shared().setFontFactor(1.25);
    throwAway({"Rest.txt"});
    open();
    for (const char *name : {"trashPutBack", "trashShowPlace"})
        EXPECT_GE(find<QPushButton>(name)->width(), find<QPushButton>(name)->sizeHint().width());
    EXPECT_GE(table()->sizeHintForRow(0), QFontMetrics(sizedFont()).height());
    select(QStringLiteral("Rest.txt"));
    Q_EMIT table()->customContextMenuRequested(table()->visualRect(table()->currentIndex()).center());
    auto *const menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
    ASSERT_TRUE(menu);
    menu->findChild<QAction *>(QStringLiteral("menuPutBack"))->trigger();
    menu->close();
    EXPECT_TRUE(waitUntil([this] { return tree.has("Rest.txt"); }));
    settled();
    Theme::shared().setFontFactor(1);
}
