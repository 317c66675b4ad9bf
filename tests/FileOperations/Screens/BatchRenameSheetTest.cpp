#include "FileOperations/Screens/BatchRenameSheet.h"

#include "Base/OpenWork.h"
#include "Disk/SystemTrash.h"
#include "Look/Theme.h"
#include "Support/FakeDecoder.h"
#include "Support/Faults.h"
#include "Support/TempTree.h"
#include "Support/WaitUntil.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QSpinBox>
#include <QTest>
#include <QToolButton>
#include <QTreeView>

#include <gtest/gtest.h>

using namespace brellin;
using namespace brellin::test;

namespace {

QStringList names(const char *joined)
{
    return QString::fromUtf8(joined).split(u'|');
}

class BatchRenameSheetTest : public testing::Test {
protected:
    BatchRenameSheetTest()
    {
        Theme::install(*qApp);
        tree.lines({"f/a.jpg=eins", "f/b.jpg=zwei", "f/c.jpg=drei", "f/Urlaub – 02.jpg=vier"});
        window.resize(1100, 760);
    }
    ~BatchRenameSheetTest() override
    {
        delete sheet;
        EXPECT_TRUE(OpenWork::wait(std::chrono::seconds(60))); // the batch is undone in the background
    }

    void open(const std::vector<std::string> &names = {"f/a.jpg", "f/b.jpg", "f/c.jpg"})
    {
        std::vector<Location> urls;
        for (const std::string &name : names)
            urls.push_back(tree.path(name));
        auto made = std::make_unique<BatchRename>(BatchRenameServices{files, decoder, tree.path("logs"), undo}, urls);
        batch = made.get();
        sheet = new BatchRenameSheet(std::move(made), &window);
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
        sheet->begin();
        settled();
    }
    void settled()
    {
        ASSERT_TRUE(waitUntil([this] { return !batch->reading.get() && !batch->running.get(); }));
    }
    template <class Kind>
    Kind *find(const char *name) const
    {
        Kind *const found = sheet->findChild<Kind *>(QString::fromUtf8(name));
        EXPECT_TRUE(found) << name;
        return found;
    }
    void click(const char *name) { QTest::mouseClick(find<QWidget>(name), Qt::LeftButton); }
    void type(const char *field, const char *text)
    {
        find<QLineEdit>(field)->selectAll();
        QTest::keyClicks(find<QLineEdit>(field), QString::fromUtf8(text));
    }
    QStringList newNames() const
    {
        const QAbstractItemModel &model = *find<QTreeView>("renamePreview")->model();
        QStringList names;
        for (int row = 0; row < model.rowCount(); ++row)
            names << model.index(row, 1).data().toString();
        return names;
    }
    QString spoken(int row) const
    {
        return find<QTreeView>("renamePreview")->model()->index(row, 0).data(Qt::AccessibleTextRole).toString();
    }
    QString note() const { return find<QLabel>("renameNote")->text(); }
    QPushButton *rename() const { return find<QPushButton>("renameStartButton"); }

    TempTree tree;
    SystemVolumes volumes;
    FaultPlan faults;
    FaultyFileActions files{faults, volumes};
    SystemTrash trash{tree.path("Trash"), volumes};
    FakeDecoder decoder;
    UserUndo undo{{files, trash, tree.path("logs")}};
    QWidget window;
    BatchRename *batch = nullptr;
    QPointer<BatchRenameSheet> sheet;
};

} // namespace

TEST_F(BatchRenameSheetTest, thePreviewFollowsTheFieldsOfEachMode)
{
    open();
    EXPECT_EQ(QApplication::focusWidget(), find<QWidget>("renameBase"));
    EXPECT_EQ(newNames(), names("01.jpg|02.jpg|03.jpg"));
    type("renameBase", "Tirol");
    find<QSpinBox>("renameStart")->setValue(9);
    find<QSpinBox>("renameDigits")->setValue(3);
    EXPECT_EQ(newNames(), names("Tirol – 009.jpg|Tirol – 010.jpg|Tirol – 011.jpg"));

    click("renameModeReplace");
    EXPECT_EQ(newNames(), names("a.jpg|b.jpg|c.jpg"));
    EXPECT_FALSE(rename()->isEnabled());
    EXPECT_EQ(rename()->toolTip(), QStringLiteral("Kein Name ändert sich."));
    type("renameFind", "jpg");
    type("renameReplace", "jpeg");
    EXPECT_EQ(newNames(), names("a.jpeg|b.jpeg|c.jpeg"));

    click("renameModeAdd");
    type("renamePrefix", "x");
    type("renameSuffix", "y");
    EXPECT_EQ(newNames(), names("xay.jpg|xby.jpg|xcy.jpg"));

    click("renameModeDate");
    settled();
    ASSERT_TRUE(rename()->isEnabled()) << note().toStdString();
    EXPECT_TRUE(newNames().first().endsWith(QStringLiteral(" a.jpg"))) << newNames().first().toStdString();

    click("renameModeNumber");
    EXPECT_EQ(newNames().first(), QStringLiteral("Tirol – 009.jpg")) << "what was typed is kept";
}

TEST_F(BatchRenameSheetTest, eachCheckIsSaidAndMarkedInItsLine)
{
    open();
    const std::string before = tree.snapshot();
    type("renameBase", "a/b");
    EXPECT_EQ(note(), QStringLiteral("Namen dürfen nicht leer sein und keine „/“ oder „:“ enthalten."));
    EXPECT_FALSE(rename()->isEnabled());
    EXPECT_EQ(rename()->toolTip(), note());

    type("renameBase", "Urlaub");
    EXPECT_EQ(note(), QStringLiteral("„Urlaub – 02.jpg“ gibt es in diesem Ordner schon."));
    EXPECT_EQ(spoken(0), QStringLiteral("a.jpg wird zu Urlaub – 01.jpg"));
    EXPECT_EQ(spoken(1), QStringLiteral("b.jpg wird zu Urlaub – 02.jpg: gibt es schon"));
    click("renameShowConflict");
    EXPECT_EQ(find<QTreeView>("renamePreview")->currentIndex().row(), 1);

    click("renameModeReplace");
    type("renameFind", "b");
    type("renameReplace", "a");
    EXPECT_EQ(note(), QStringLiteral("Mehrere Dateien würden gleich heißen."));
    QTest::keyClick(find<QWidget>("renameReplace"), Qt::Key_Return);
    EXPECT_FALSE(batch->running.get());
    EXPECT_EQ(tree.snapshot(), before);
}

TEST_F(BatchRenameSheetTest, renamesWithReturnAndTakesItBack)
{
    open();
    const std::string before = snapshotOf(tree.path("f"));
    std::vector<Location> told;
    QObject::connect(sheet, &BatchRenameSheet::renamed, [&](const std::vector<Location> &places) { told = places; });
    type("renameBase", "Tirol");
    QTest::keyClick(find<QWidget>("renameBase"), Qt::Key_Return);
    settled();
    EXPECT_EQ(batch->status.get(), QStringLiteral("3 umbenannt."));
    EXPECT_TRUE(find<QWidget>("renameResult")->isVisible());
    EXPECT_FALSE(rename()->isVisible());
    EXPECT_EQ(tree.content("f/Tirol – 02.jpg"), "zwei");
    ASSERT_EQ(told.size(), 3U);
    EXPECT_EQ(told[1], tree.path("f/Tirol – 02.jpg"));

    click("renameUndo");
    settled();
    EXPECT_EQ(snapshotOf(tree.path("f")), before);
    EXPECT_EQ(note(), QStringLiteral("3 zurückbenannt."));
    EXPECT_EQ(told[1], tree.path("f/b.jpg"));
    EXPECT_TRUE(rename()->isEnabled());

    click("renameStartButton");
    settled();
    bool closed = false;
    QObject::connect(sheet, &SheetFrame::closed, [&] { closed = true; });
    click("renameFinish");
    EXPECT_TRUE(closed);
}

TEST_F(BatchRenameSheetTest, aFailureIsSaidAndEverythingIsAsBefore)
{
    open();
    const std::string before = snapshotOf(tree.path("f"));
    faults.failAt = 4;
    type("renameBase", "Tirol");
    click("renameStartButton");
    settled();
    EXPECT_TRUE(note().startsWith(QStringLiteral("Umbenennen abgebrochen: "))) << note().toStdString();
    EXPECT_TRUE(rename()->isVisible());
    EXPECT_EQ(snapshotOf(tree.path("f")), before);
    QTest::keyClick(sheet, Qt::Key_Escape);
    EXPECT_FALSE(sheet && sheet->isVisible());
}

TEST_F(BatchRenameSheetTest, manyAreRenamedAsTypedAlsoWithinThePause)
{
    constexpr int many = 1200;
    std::vector<std::string> made;
    for (int i = 0; i < many; ++i)
        made.push_back("viele/" + std::to_string(i) + ".txt");
    for (const std::string &path : made)
        tree.file(path);
    open(made);
    type("renameBase", "Tirol");
    QTest::keyClick(find<QWidget>("renameBase"), Qt::Key_Return);
    settled();
    EXPECT_EQ(batch->status.get(), QStringLiteral("1.200 umbenannt."));
    EXPECT_TRUE(tree.has("viele/Tirol – 1200.txt"));
}
