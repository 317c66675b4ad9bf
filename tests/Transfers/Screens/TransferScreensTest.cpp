#include "Transfers/Screens/TransferScreens.h"

#include "ScreensWorld.h"
#include "Support/FuseMount.h"
#include "Transfers/Screens/LeftoverSheet.h"
#include "Transfers/Screens/QuestionSheet.h"
#include "Transfers/TransferLog.h"

#include <QCheckBox>
#include <QPushButton>

#include <sys/wait.h>
#include <unistd.h>

using namespace brellin;
using namespace brellin::test;

namespace {

QStringList buttonTitles(const QWidget &sheet)
{
    QStringList titles;
    for (const QPushButton *const button : sheet.findChildren<QPushButton *>())
        titles << button->text();
    return titles;
}

class TransferScreensTest : public ScreensWorld {
protected:
    TransferScreensTest()
    {
        world.tree().lines({"home/a.txt=neu a", "home/b=neu b", "home/c=neu c", "home/frei=frei", "disk/a.txt=alt a",
                            "disk/b=alt b", "disk/c/drin=alt c"});
        before = world.snapshot();
    }
    bool asks(const char *sheet) { return appears(window, sheet); }
    void conflicts() { transfer({"frei", "a.txt", "b", "c"}, world.disk("")); }

    std::string before;
    TransferScreens screens{queue, world.services(), world.clock, &window};
};

} // namespace

TEST_F(TransferScreensTest, aTakenNameIsAskedAboutWithBothEntries)
{
    conflicts();
    ASSERT_TRUE(asks("conflictSheet"));
    QWidget &sheet = *shownIn(window, "conflictSheet");
    EXPECT_EQ(sheet.accessibleName(), QStringLiteral("„a.txt“ ist im Ziel schon vorhanden"));
    EXPECT_EQ(buttonTitles(sheet),
              (QStringList{QStringLiteral("Ersetzen"), QStringLiteral("Beide behalten"), QStringLiteral("Überspringen"),
                           QStringLiteral("Später fragen"), QStringLiteral("Abbrechen")}));
    EXPECT_EQ(shownIn(sheet, "answer-Beide behalten"), QApplication::focusWidget());
    EXPECT_TRUE(shownIn(sheet, "existingEntry")->accessibleName().startsWith(QStringLiteral("Im Ziel: 5 Byte, ")));
    EXPECT_TRUE(shownIn(sheet, "incomingEntry")->accessibleName().startsWith(QStringLiteral("Neu: 5 Byte, ")));
    EXPECT_EQ(qobject_cast<QLabel *>(shownIn(sheet, "consequence"))->text(),
              QStringLiteral("„Ersetzen“ legt die vorhandene Datei in den Papierkorb."));
    EXPECT_EQ(qobject_cast<QCheckBox *>(shownIn(sheet, "forAll"))->text(),
              QStringLiteral("Für alle 3 Konflikte übernehmen"));

    shownIn(sheet, "forAll")->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    press(sheet, "answer-Überspringen");
    ASSERT_TRUE(ended());
    EXPECT_FALSE(shownIn(window, "conflictSheet"));
    EXPECT_TRUE(field->hasFocus());
    EXPECT_EQ(queue.lastFinished.get()->arrived(), std::vector<Location>{world.disk("frei")});
}

TEST_F(TransferScreensTest, eachConflictIsAskedInTurnAndTheFolderIsCalledOne)
{
    conflicts();
    ASSERT_TRUE(asks("conflictSheet"));
    press(window, "answer-Ersetzen");
    ASSERT_TRUE(waitUntil([&] {
        return shownIn(window, "conflictSheet") &&
               shownIn(window, "conflictSheet")->accessibleName().contains(QStringLiteral("„b“"));
    }));
    // Return activates the default button unless another button has the focus.
    shownIn(window, "forAll")->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    ASSERT_TRUE(appears(window, "conflictSheet"));
    EXPECT_FALSE(shownIn(window, "forAll"));
    EXPECT_TRUE(qobject_cast<QLabel *>(shownIn(window, "consequence"))->text().contains(QStringLiteral("Ordner")));
    press(window, "answer-Ersetzen");
    ASSERT_TRUE(ended());
    EXPECT_EQ(world.tree().content("disk/a.txt"), "neu a");
    EXPECT_EQ(world.tree().content("disk/b"), "alt b");
    EXPECT_EQ(world.tree().content("disk/b (2)"), "neu b");
    EXPECT_EQ(world.tree().content("disk/c"), "neu c");
    EXPECT_TRUE(world.contents().contains("alt a"));
    EXPECT_TRUE(world.contents().contains("alt c"));
}

TEST_F(TransferScreensTest, escCancelsAllAndASheetGoesWithItsTransfer)
{
    conflicts();
    ASSERT_TRUE(asks("conflictSheet"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    ASSERT_TRUE(ended());
    EXPECT_TRUE(queue.lastFinished.get()->outcome.cancelled);
    EXPECT_EQ(world.snapshot(), before);

    conflicts();
    ASSERT_TRUE(asks("conflictSheet"));
    queue.cancelAll();
    EXPECT_FALSE(shownIn(window, "conflictSheet"));
    EXPECT_TRUE(field->hasFocus());
    EXPECT_EQ(world.snapshot(), before);
}

TEST_F(TransferScreensTest, aQuestionStandsOverTheActiveWindow)
{
    QWidget other;
    other.resize(800, 600);
    TransferScreens otherScreens(queue, world.services(), world.clock, &other);
    conflicts();
    ASSERT_TRUE(asks("conflictSheet"));
    EXPECT_FALSE(other.findChild<QuestionSheet *>());
    other.show();
    other.activateWindow();
    ASSERT_TRUE(appears(other, "conflictSheet"));
    EXPECT_FALSE(shownIn(window, "conflictSheet"));
    other.close();
    window.activateWindow();
    ASSERT_TRUE(asks("conflictSheet"));
    press(window, "answer-Abbrechen");
    EXPECT_TRUE(ended());
}

TEST_F(TransferScreensTest, leftoversAreRemovedOnlyOnAYes)
{
    // As a crash leaves them: hidden, and in no running transfer's log.
    TransferLog dead(world.tree().path("fremd"));
    const Location half = world.disk(dead.temporaryFor(world.disk("Film.mkv")).filename().native());
    world.tree().file("disk/" + half.filename().native(), "halb");
    world.clock.time += std::chrono::hours(24 * 3650);
    screens.visit(world.disk(""));
    ASSERT_TRUE(asks("leftoverSheet"));
    EXPECT_EQ(shownIn(window, "keepLeftovers"), QApplication::focusWidget());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    EXPECT_TRUE(std::filesystem::exists(half));

    // A declined offer is not repeated in this window, but in a new one.
    QWidget other;
    other.resize(800, 600);
    other.show();
    TransferScreens otherScreens(queue, world.services(), world.clock, &other);
    otherScreens.visit(world.disk(""));
    ASSERT_TRUE(appears(other, "leftoverSheet"));
    press(other, "removeLeftovers");
    EXPECT_TRUE(waitUntil([&] { return !std::filesystem::exists(half); }));
    EXPECT_EQ(world.snapshot(), before);
}

TEST_F(TransferScreensTest, aDeadShareKeepsNothingBackButItsOwnMove)
{
    const Location share = world.tree().folder("freigabe");
    const FuseMount mount(share);
    if (!mount)
        GTEST_SKIP() << "no such volume here";
    world.tree().lines({"freigabe/Fotos/x=x", "disk/Fotos/x=x", "home/Texte/y=y", "disk/Texte/y=y"});
    if (::fork() == 0) {
        TransferLog log(world.services().logs);
        (void)log.noteRemovals({{share / "Fotos", world.disk("Fotos")}, {world.home("Texte"), world.disk("Texte")}});
        std::ofstream(log.temporaryFor(world.disk("halb"))) << "halb";
        ::_exit(0);
    }
    ::wait(nullptr);
    ASSERT_TRUE(mount.stop());
    screens.visit(world.home(""));
    QTest::qWait(100); // the comparison is waiting for the share
    screens.visit(world.disk(""));
    ASSERT_TRUE(asks("leftoverSheet"));
    press(window, "keepLeftovers");
    transfer({"frei"}, world.disk(""));
    EXPECT_TRUE(ended());
    EXPECT_FALSE(shownIn(window, "unfinishedMove"));
    // Closing a window does not wait for the share.
    {
        QWidget other;
        TransferScreens closing(queue, world.services(), world.clock, &other);
        closing.visit(world.home(""));
        QTest::qWait(100);
    }
    mount.goOn();
    EXPECT_TRUE(asks("unfinishedMove"));
    queue.offeredMoves().clear();
}

TEST_F(TransferScreensTest, aMoveKilledAtItsSourceIsFinishedOnAYes)
{
    world.tree().lines({"home/Fotos/x=x", "disk/Fotos/x=x"});
    if (::fork() == 0) {
        TransferLog log(world.services().logs);
        (void)log.noteRemovals({{world.home("Fotos"), world.disk("Fotos")}});
        ::_exit(0);
    }
    ::wait(nullptr);
    screens.visit(world.home(""));
    ASSERT_TRUE(asks("unfinishedMove"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    EXPECT_TRUE(world.tree().has("home/Fotos/x"));

    // Another window does not ask again, but the next start does.
    QWidget other;
    other.resize(800, 600);
    other.show();
    other.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    TransferScreens secondWindow(queue, world.services(), world.clock, &other);
    secondWindow.visit(world.disk(""));
    QTest::qWait(300);
    EXPECT_FALSE(shownIn(other, "unfinishedMove"));
    TransferQueue nextQueue(world.services(), world.clock);
    TransferScreens otherScreens(nextQueue, world.services(), world.clock, &other);
    otherScreens.visit(world.disk(""));
    ASSERT_TRUE(appears(other, "unfinishedMove"));
    EXPECT_TRUE(buttonTitles(*shownIn(other, "unfinishedMove")).contains(QStringLiteral("Verschieben abschließen")));
    for (QPushButton *const button : shownIn(other, "unfinishedMove")->findChildren<QPushButton *>()) {
        if (button->text() == QStringLiteral("Verschieben abschließen"))
            button->click();
    }
    EXPECT_TRUE(waitUntil([&] { return !world.tree().has("home/Fotos"); }));
    EXPECT_EQ(world.tree().content("disk/Fotos/x"), "x");
}
