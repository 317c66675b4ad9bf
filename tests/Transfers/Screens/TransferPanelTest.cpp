#include "Transfers/Screens/TransferPanel.h"

#include "ScreensWorld.h"
#include "Transfers/Screens/ProgressText.h"

#include <QProgressBar>

using namespace brellin;
using namespace brellin::test;

namespace {

class TransferPanelTest : public ScreensWorld {
protected:
    TransferPanelTest()
    {
        world.tree().lines({"home/a=12345", "home/b=67890", "home/c=c", "home/d=d"});
        QObject::connect(&panel, &TransferPanel::placeWanted, &panel, [this] { panel.placeIn(window.rect()); });
        QObject::connect(&panel, &TransferPanel::shownChanged, &panel, [this](bool now) { told.push_back(now); });
    }

    QString text(const char *name) const
    {
        auto *const found = shownIn(panel, name);
        if (auto *const progress = qobject_cast<ProgressText *>(found))
            return progress->text();
        auto *const label = qobject_cast<QLabel *>(found);
        return label ? label->text() : QString();
    }
    int waitingRows() const
    {
        int count = 0;
        for (const QWidget *const row : panel.findChildren<QWidget *>(QStringLiteral("transferWaiting")))
            count += row->isVisible() ? 1 : 0;
        return count;
    }

    TransferPanel panel{queue, &window, std::chrono::milliseconds(0)};
    std::vector<bool> told;
};

} // namespace

TEST_F(TransferPanelTest, aTransferIsShownWithWhatItIsAtAndGoesWithIt)
{
    holdCopies();
    transfer({"a", "b"}, world.disk(""));
    ASSERT_TRUE(copyHeld());
    ASSERT_TRUE(appears(window, "transferPanel"));
    gate.release(1);
    ASSERT_TRUE(copyHeld());
    const std::shared_ptr<TransferJob> job = queue.jobs.get().front();
    ASSERT_TRUE(waitUntil([&] { return job->currentName.get() == QStringLiteral("b") && job->bytes.get() >= 5; }));
    EXPECT_EQ(text("transferTitle"), QStringLiteral("Kopiere 2 Elemente nach „disk“"));
    EXPECT_EQ(text("transferDetail"), job->detailText.get());
    EXPECT_EQ(text("transferName"), QStringLiteral("b"));
    EXPECT_EQ(qobject_cast<QProgressBar *>(shownIn(panel, "transferBar"))->value(), job->bytes.get() * 100);
    EXPECT_EQ(panel.geometry().bottomRight(), window.rect().bottomRight());
    EXPECT_TRUE(field->hasFocus());

    gate.release(1);
    ASSERT_TRUE(ended());
    EXPECT_FALSE(panel.isVisible());
    EXPECT_EQ(told, (std::vector<bool>{true, false}));
}

TEST_F(TransferPanelTest, pausedItStandsUntilItMayGoOn)
{
    holdCopies();
    transfer({"a", "b"}, world.disk(""));
    ASSERT_TRUE(copyHeld());
    ASSERT_TRUE(appears(window, "transferPause"));
    press(panel, "transferPause");
    EXPECT_TRUE(text("transferDetail").endsWith(QStringLiteral("angehalten")));
    EXPECT_EQ(shownIn(panel, "transferPause")->toolTip(), QStringLiteral("Fortsetzen"));
    EXPECT_TRUE(field->hasFocus());
    gate.release(2);
    press(panel, "transferPause");
    EXPECT_TRUE(ended());
    EXPECT_EQ(world.tree().content("disk/b"), "67890");
}

TEST_F(TransferPanelTest, withTheKeysItIsCancelledAndTheyGoBack)
{
    holdCopies();
    transfer({"a", "b"}, world.disk(""));
    ASSERT_TRUE(copyHeld());
    ASSERT_TRUE(appears(window, "transferCancel"));
    shownIn(panel, "transferCancel")->setFocus(Qt::TabFocusReason);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    EXPECT_TRUE(field->hasFocus());
    shownIn(panel, "transferCancel")->setFocus(Qt::TabFocusReason);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    EXPECT_EQ(text("transferDetail"), QStringLiteral("Wird abgebrochen …"));
    EXPECT_FALSE(shownIn(panel, "transferCancel")->isEnabled());
    gate.release(1);
    ASSERT_TRUE(ended());
    EXPECT_FALSE(std::filesystem::exists(world.disk("b")));
    EXPECT_FALSE(panel.isVisible());
    EXPECT_TRUE(field->hasFocus());
}

TEST_F(TransferPanelTest, whatWaitsStandsBelowAndCanBeTakenOut)
{
    holdCopies();
    transfer({"a"}, world.disk(""));
    transfer({"c"}, world.disk(""), TransferKind::Move);
    transfer({"d"}, world.disk(""));
    ASSERT_TRUE(copyHeld());
    ASSERT_TRUE(appears(window, "transferJob"));
    EXPECT_EQ(waitingRows(), 2);
    EXPECT_EQ(text("transferWaitingHead"), QStringLiteral("2 Übertragungen warten"));
    ASSERT_TRUE(waitUntil([&] { return panel.height() == panel.sizeHint().height(); }));
    const int height = panel.height();
    press(*panel.findChildren<QWidget *>(QStringLiteral("transferWaiting")).constFirst(), "waitingCancel");
    EXPECT_EQ(waitingRows(), 1);
    EXPECT_EQ(text("waitingTitle"), QStringLiteral("Kopiere 1 Element nach „disk“"));
    EXPECT_TRUE(waitUntil([&] { return panel.height() < height; }));
    gate.release(2);
    ASSERT_TRUE(ended());
    EXPECT_TRUE(std::filesystem::exists(world.home("c")));
    EXPECT_TRUE(std::filesystem::exists(world.disk("d")));
}

TEST_F(TransferPanelTest, whereThingsMoveItComesAndGoesToo)
{
    Theme::shared().setMotion(true);
    for (const char *const name : {"a", "d"}) {
        holdCopies();
        transfer({name}, world.disk(""));
        ASSERT_TRUE(copyHeld());
        ASSERT_TRUE(waitUntil([&] { return text("transferName") == QString::fromUtf8(name); }));
        EXPECT_EQ(panel.findChildren<QWidget *>(QStringLiteral("transferJob")).size(), 1);
        gate.release(1);
        ASSERT_TRUE(waitUntil([&] { return !panel.isVisible(); }));
        ASSERT_TRUE(waitUntil([&] { return !panel.findChild<QWidget *>(QStringLiteral("transferJob")); }));
    }
    EXPECT_EQ(told, (std::vector<bool>{true, false, true, false}));
}

TEST_F(TransferPanelTest, whatIsDoneAtOnceDoesNotFlash)
{
    TransferPanel patient(queue, &window, std::chrono::hours(1));
    holdCopies();
    transfer({"a"}, world.disk(""));
    ASSERT_TRUE(copyHeld());
    ASSERT_TRUE(appears(panel, "transferJob"));
    EXPECT_FALSE(patient.isVisible());
    gate.release(1);
    ASSERT_TRUE(ended());
    EXPECT_FALSE(patient.isVisible());
}

TEST_F(TransferPanelTest, saysAtTheEndWhatCouldNotBeKept)
{
    world.files.notKept << QStringLiteral("Änderungszeiten kann das Ziel nicht speichern.");
    transfer({"a", "b"}, world.disk(""));
    ASSERT_TRUE(ended());
    ASSERT_TRUE(appears(panel, "transferNote"));
    EXPECT_EQ(text("noteTitle"), QStringLiteral("2 Elemente nach „disk“ kopiert"));
    EXPECT_EQ(text("noteText"), QStringLiteral("Änderungszeiten kann das Ziel nicht speichern."));
    EXPECT_TRUE(field->hasFocus());
    press(panel, "noteClose");
    EXPECT_FALSE(panel.isVisible());

    TransferPanel brief(queue, &window, std::chrono::milliseconds(0), std::chrono::milliseconds(1));
    transfer({"c"}, world.disk(""));
    ASSERT_TRUE(appears(panel, "transferNote"));
    EXPECT_TRUE(waitUntil([&] { return !shownIn(brief, "transferNote") && !brief.isVisible(); }));
    EXPECT_TRUE(shownIn(panel, "transferNote"));
}

TEST_F(TransferPanelTest, otherWorkHasItsLinesToo)
{
    std::vector<int> cancelled;
    QObject::connect(&panel, &TransferPanel::workCancelWanted, &panel, [&](int id) { cancelled.push_back(id); });
    panel.showWork({{7, QStringLiteral("Komprimiere 3 Elemente"), QStringLiteral("a.txt"), 0.25}});
    ASSERT_TRUE(appears(panel, "panelWork"));
    panel.showWork({{7, QStringLiteral("Komprimiere 3 Elemente"), QStringLiteral("b.txt"), 0.5},
                    {8, QStringLiteral("Leere den Papierkorb"), {}, {}}});
    EXPECT_EQ(panel.findChildren<QWidget *>(QStringLiteral("panelWork")).size(), 2);
    panel.showWork({{7, QStringLiteral("Komprimiere 3 Elemente"), QStringLiteral("b.txt"), 0.5}});
    EXPECT_EQ(text("workTitle"), QStringLiteral("Komprimiere 3 Elemente"));
    EXPECT_EQ(text("workDetail"), QStringLiteral("b.txt"));
    EXPECT_EQ(qobject_cast<QProgressBar *>(shownIn(panel, "workBar"))->value(), 500);
    press(panel, "workCancel");
    EXPECT_EQ(cancelled, std::vector{7});
    panel.showWork({{7, QStringLiteral("Komprimiere 3 Elemente"), QStringLiteral("c.txt"), 0.6}});
    EXPECT_EQ(text("workDetail"), QStringLiteral("Wird abgebrochen …"));
    panel.showWork({});
    EXPECT_FALSE(panel.isVisible());
    EXPECT_TRUE(field->hasFocus());

    // Reusing an ID is new work, even while the panel is sliding out.
    Theme::shared().setMotion(true);
    panel.showWork({{7, QStringLiteral("Komprimiere 3 Elemente"), {}, 0.5}});
    ASSERT_TRUE(appears(panel, "workCancel"));
    press(panel, "workCancel");
    panel.showWork({});
    panel.showWork({{7, QStringLiteral("Entpacke „a.zip“"), QStringLiteral("a.txt"), 0.5}});
    EXPECT_TRUE(waitUntil([&] { return text("workDetail") == QStringLiteral("a.txt"); }));
    EXPECT_TRUE(shownIn(panel, "workCancel")->isEnabled());
}
