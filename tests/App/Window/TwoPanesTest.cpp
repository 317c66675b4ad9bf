#include "App/Window/WindowWorld.h"
#include "System/PlainSetting.h"

#include <QSplitter>

using namespace brellin;
using brellin::test::waitUntil;
using brellin::test::WindowWorld;

namespace {

/// Two panes, on "links" and "rechts".
class TwoPanesTest : public WindowWorld {
protected:
    TwoPanesTest()
    {
        for (const char *const name : {"links/a.txt", "links/b.txt", "rechts/r.txt"})
            file(name);
    }
    ~TwoPanesTest() override { std::ignore = services->settings().setValue(QStringLiteral("dualPane"), false); }
    void openBoth()
    {
        open();
        pane().navigate(folder / "links");
        key(Qt::Key_F3);
        key(Qt::Key_F6);
        pane().navigate(folder / "rechts");
        key(Qt::Key_F6);
        ASSERT_TRUE(folderBecomes(folder / "links"));
    }
    /// Closes the window and opens it as it was stored.
    void restart()
    {
        const StoredWindow was = window->stored();
        ASSERT_TRUE(storeWindows(services->settings(), {was}));
        const StoredWindow kept = storedWindows(services->settings()).at(0);
        ASSERT_TRUE(services->settings().replace(QStringLiteral("windows"), std::nullopt));
        delete window;
        open(kept);
    }
    QSplitter *splitter() const { return shownOne<QSplitter>(QStringLiteral("panes")); }
};

TEST_F(TwoPanesTest, comeBackAsTheyWere)
{
    openBoth();
    QTest::mousePress(splitter()->handle(1), Qt::LeftButton, {}, QPoint(0, 50));
    const QPoint left(-150, 50);
    QMouseEvent move(QEvent::MouseMove, left, splitter()->handle(1)->mapToGlobal(left), Qt::NoButton, Qt::LeftButton,
                     {});
    QCoreApplication::sendEvent(splitter()->handle(1), &move);
    QTest::mouseRelease(splitter()->handle(1), Qt::LeftButton, {}, QPoint(0, 50));
    const QList<int> before = splitter()->sizes();
    ASSERT_LT(before[0], before[1] - 200);
    key(Qt::Key_F6);
    window->addTab(folder);
    key(Qt::Key_F3); // this tab has one pane
    restart();
    EXPECT_FALSE(window->state().dualPane) << "a single tab comes back single";
    key(Qt::Key_PageUp, Qt::ControlModifier);
    ASSERT_TRUE(window->state().dualPane);
    EXPECT_EQ(pane().current.get(), folder / "rechts") << "the right pane was active";
    EXPECT_EQ(pane().partner->current.get(), folder / "links");
    EXPECT_NEAR(splitter()->sizes()[0], before[0], 3);
    // New tabs have two panes as long as the switch is on, also where a single one came back.
    key(Qt::Key_F3);
    key(Qt::Key_F3);
    restart();
    EXPECT_TRUE(window->state().dualPane);
    window->addTab(folder);
    EXPECT_TRUE(window->state().dualPane);
    key(Qt::Key_PageUp, Qt::ControlModifier);
    EXPECT_FALSE(window->state().dualPane);
}

/// The flow of a minute's work, without the mouse.
TEST_F(TwoPanesTest, areWorkedInByKeyboardAlone)
{
    openBoth();
    const auto select = [this](const char *name) {
        type(QString::fromUtf8(name));
        ASSERT_TRUE(waitUntil([this] { return window->state().selected; }));
    };
    select("a");
    key(Qt::Key_F5, Qt::ShiftModifier);
    EXPECT_TRUE(waitUntil([this] { return has("rechts/a.txt") && has("links/a.txt"); }));
    EXPECT_TRUE(waitUntil([this] { return pane().partner->selection.get().contains(folder / "rechts/a.txt"); }))
        << "what arrived is selected over there";
    EXPECT_EQ(pane().current.get(), folder / "links");
    key(Qt::Key_Escape);
    key(Qt::Key_End);
    ASSERT_EQ(pane().onlySelected()->location(), folder / "links/b.txt");
    key(Qt::Key_F6, Qt::ShiftModifier);
    EXPECT_TRUE(waitUntil([this] { return has("rechts/b.txt") && !has("links/b.txt"); }));
    ASSERT_TRUE(waitUntil([this] { return !composition->forWindows().transfers.busy(); }));

    key(Qt::Key_U, Qt::ControlModifier);
    EXPECT_EQ(pane().current.get(), folder / "links") << "the folder stays active on its new side";
    EXPECT_GT(QApplication::focusWidget()->mapTo(splitter(), QPoint()).x(), splitter()->width() / 3);
    EXPECT_EQ(window->stored().tabs[0].path, folder / "rechts");
    EXPECT_EQ(window->stored().tabs[0].second, folder / "links");

    key(Qt::Key_F6);
    EXPECT_EQ(pane().current.get(), folder / "rechts");
    key(Qt::Key_Backspace);
    ASSERT_TRUE(folderBecomes(folder));
    key(Qt::Key_G, Qt::ControlModifier);
    EXPECT_TRUE(waitUntil([this] { return pane().partner->current.get() == folder; }));
    EXPECT_FALSE(windowCommand(CommandId::SameFolder).enabled(window->state())) << "it is the same already";
    EXPECT_FALSE(windowCommand(CommandId::CopyToOther).enabled(window->state()));
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(waitUntil([this] { return has("links/b.txt") && !has("rechts/b.txt"); }));
    ASSERT_TRUE(waitUntil([this] { return !composition->forWindows().undo.running.get(); }));
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(waitUntil([this] { return !has("rechts/a.txt") && has("links/a.txt"); }));
    key(Qt::Key_F3);
    EXPECT_FALSE(window->state().dualPane);
}

TEST_F(TwoPanesTest, headingsSayWhatEachShowsAndCloseIt)
{
    openBoth();
    const auto heading = [this](int side) {
        std::vector<QWidget *> shown;
        for (QWidget *const one : window->findChildren<QWidget *>(QStringLiteral("paneHeading")))
            if (one->isVisible())
                shown.push_back(one);
        std::ranges::sort(shown, {}, [this](const QWidget *one) { return one->mapTo(window, QPoint()).x(); });
        return shown.at(static_cast<std::size_t>(side));
    };
    EXPECT_EQ(heading(0)->accessibleName(), QStringLiteral("links, aktiv"));
    EXPECT_EQ(heading(1)->accessibleName(), QStringLiteral("rechts"));
    const auto lineOver = [&](int side) { return heading(side)->grab().toImage().pixelColor(20, 1); };
    EXPECT_EQ(lineOver(0), color(Token::Accent));
    EXPECT_NE(lineOver(1), color(Token::Accent));
    QTest::mouseClick(heading(1), Qt::LeftButton, {}, QPoint(20, 20));
    EXPECT_EQ(pane().current.get(), folder / "rechts");
    EXPECT_EQ(lineOver(1), color(Token::Accent));
    pane().showPlace(Place::search(folder / "rechts", QStringLiteral("r")));
    EXPECT_EQ(heading(1)->accessibleName(), QStringLiteral("Suche „r“ in rechts, aktiv"));
    QTest::mouseClick(heading(0)->findChild<QWidget *>(QStringLiteral("closePane")), Qt::LeftButton);
    ASSERT_TRUE(waitUntil([this] { return !window->state().dualPane; }));
    EXPECT_EQ(pane().current.get(), folder / "rechts") << "the other one stays";
    EXPECT_EQ(shownOne<QWidget>(QStringLiteral("paneHeading")), nullptr) << "one pane needs none";
    EXPECT_TRUE(QApplication::focusWidget()->isVisible());
}

} // namespace
