#include "App/Window/WindowWorld.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QMenu>
#include <QTabBar>

using namespace brellin;
using brellin::test::waitUntil;
using brellin::test::WindowWorld;

namespace {

class TabsTest : public WindowWorld {
protected:
    TabsTest()
    {
        for (const char *const name : {"eins", "zwei", "drei"})
            file(std::string(name) + "/x.txt");
    }
    QTabBar *bar() const { return find<QTabBar>(QStringLiteral("tabs")); }
    /// Names of the tabs' folders, the current one in brackets.
    std::string tabs() const
    {
        std::string all;
        const StoredWindow now = window->stored();
        for (std::size_t tab = 0; tab < now.tabs.size(); ++tab) {
            const std::string name = now.tabs[tab].path.filename();
            all += (tab ? " " : "") + (static_cast<int>(tab) == now.current ? "[" + name + "]" : name);
        }
        return all;
    }
    void openThree()
    {
        open();
        pane().navigate(folder / "eins");
        window->addTab(folder / "zwei");
        window->addTab(folder / "drei");
        ASSERT_EQ(tabs(), "eins zwei [drei]");
        QCoreApplication::processEvents(); // the bar grows
    }
    QPoint middleOf(int tab) const { return bar()->tabRect(tab).center(); }
    QPoint closeOf(int tab) const { return {bar()->tabRect(tab).right() - 14, bar()->tabRect(tab).center().y()}; }
    void dragTo(QPoint point) const
    {
        QMouseEvent move(QEvent::MouseMove, point, bar()->mapToGlobal(point), Qt::NoButton, Qt::LeftButton, {});
        QCoreApplication::sendEvent(bar(), &move);
    }
    void press(QPoint point) const { QTest::mousePress(bar(), Qt::LeftButton, {}, point); }
    void release(QPoint point) const { QTest::mouseRelease(bar(), Qt::LeftButton, {}, point); }
    /// The action of an open menu; closes the menu.
    void choose(QMenu *menu, const QString &title) const
    {
        ASSERT_NE(menu, nullptr);
        for (QAction *const action : menu->actions())
            if (action->text().section(QLatin1Char('\t'), 0, 0) == title) {
                EXPECT_TRUE(action->isEnabled()) << title.toStdString();
                action->trigger();
                menu->close();
                window->activateWindow();
                ASSERT_TRUE(QTest::qWaitForWindowActive(window));
                return;
            }
        ADD_FAILURE() << title.toStdString();
    }
    void mouseButton(QWidget *on, Qt::MouseButton button) const
    {
        QTest::mouseClick(on, button, {}, QPoint(on->width() / 2, on->height() - 20));
        QCoreApplication::processEvents();
    }
};

TEST_F(TabsTest, aNameWithAnAmpersandIsNoShortcut)
{
    file("R&D/x.txt");
    open();
    window->addTab(folder / "R&D");
    key(Qt::Key_PageUp, Qt::ControlModifier);
    ASSERT_EQ(tabs(), "[d] R&D");
    key(Qt::Key_D, Qt::AltModifier);
    EXPECT_EQ(tabs(), "[d] R&D");
}

TEST_F(TabsTest, dragReordersAndNeverCloses)
{
    ASSERT_NO_FATAL_FAILURE(openThree());
    press(middleOf(0));
    EXPECT_EQ(tabs(), "[eins] zwei drei");
    dragTo(middleOf(0) + QPoint(2, 0)); // not yet a drag
    EXPECT_EQ(tabs(), "[eins] zwei drei");
    dragTo(middleOf(1));
    dragTo(closeOf(2));
    EXPECT_EQ(tabs(), "zwei drei [eins]");
    release(closeOf(2));
    EXPECT_EQ(tabs(), "zwei drei [eins]");
    EXPECT_EQ(pane().current.get(), folder / "eins");
    press(middleOf(2));
    dragTo(middleOf(1));
    dragTo(QPoint(-50, 5));
    release(QPoint(-50, 5));
    EXPECT_EQ(tabs(), "[eins] zwei drei");
    // Only press and release on the same × close.
    press(closeOf(1));
    release(closeOf(2));
    press(middleOf(0));
    release(closeOf(0));
    press(closeOf(1));
    release(middleOf(1));
    QTest::mousePress(bar(), Qt::MiddleButton, {}, middleOf(1));
    QTest::mouseRelease(bar(), Qt::MiddleButton, {}, middleOf(2));
    EXPECT_EQ(tabs(), "[eins] zwei drei");
    press(closeOf(1));
    release(closeOf(1));
    EXPECT_EQ(tabs(), "[eins] drei");
}

TEST_F(TabsTest, middleClicksOpenInTheBackground)
{
    open();
    click(QStringLiteral("eins"), Qt::MiddleButton);
    EXPECT_EQ(tabs(), "[d] eins");
    auto *const crumb = find<QAbstractButton>(QStringLiteral("crumb1"));
    QTest::mouseClick(crumb, Qt::MiddleButton);
    EXPECT_EQ(tabs(), "[d] eins d");
    auto *const sidebar = find<QAbstractItemView>(QStringLiteral("sidebarMarks"));
    for (int row = 0; row < sidebar->model()->rowCount(); ++row) {
        const QModelIndex index = sidebar->model()->index(row, 0);
        if (index.data().toString() == QStringLiteral("Aufräum-Agent"))
            QTest::mouseClick(sidebar->viewport(), Qt::MiddleButton, {}, sidebar->visualRect(index).center());
    }
    EXPECT_EQ(tabs(), "[d] eins d d");
    EXPECT_FALSE(window->state().agent);
    key(Qt::Key_PageUp, Qt::ControlModifier);
    EXPECT_TRUE(window->state().agent);
}

TEST_F(TabsTest, theMenuOfATabActsOnThatTab)
{
    ASSERT_NO_FATAL_FAILURE(openThree());
    const auto menu = [this](int tab) {
        QContextMenuEvent wanted(QContextMenuEvent::Mouse, middleOf(tab), bar()->mapToGlobal(middleOf(tab)));
        QCoreApplication::sendEvent(bar(), &wanted);
        return shownOne<QMenu>(QStringLiteral("tabMenu"));
    };
    choose(menu(0), QStringLiteral("Tab duplizieren"));
    EXPECT_EQ(tabs(), "eins [eins] zwei drei");
    choose(menu(0), QStringLiteral("Tab schließen"));
    EXPECT_EQ(tabs(), "[eins] zwei drei");
    choose(menu(1), QStringLiteral("Andere Tabs schließen"));
    EXPECT_EQ(tabs(), "[zwei]");
    EXPECT_EQ(pane().current.get(), folder / "zwei");
    // The tab closed last first, each at its place.
    for (const char *const wanted : {"[eins] zwei", "eins zwei [drei]", "[eins] eins zwei drei"}) {
        key(Qt::Key_T, Qt::ControlModifier | Qt::ShiftModifier);
        EXPECT_EQ(tabs(), wanted);
    }
    EXPECT_FALSE(window->state().closedTabs);
    EXPECT_TRUE(rowsBecome({QStringLiteral("x.txt")}));
}

TEST_F(TabsTest, theArrowsListTheHistory)
{
    open();
    pane().navigate(folder / "eins");
    ASSERT_TRUE(folderBecomes(folder / "eins"));
    pane().showPlace(Place::agent());
    pane().navigate(folder / "zwei");
    ASSERT_TRUE(folderBecomes(folder / "zwei"));
    const auto titles = [](const QMenu *menu) {
        QStringList all;
        for (const QAction *const action : menu->actions()) {
            all << action->text();
            EXPECT_FALSE(action->icon().isNull());
        }
        return all.join(QLatin1Char('|'));
    };
    const auto arrow = [this](CommandId id) {
        return find<QAbstractButton>(QStringLiteral("tool%1").arg(static_cast<int>(id)));
    };
    const auto listed = [this] { return shownOne<QMenu>(QStringLiteral("historyMenu")); };
    // A long press, whose release is no click.
    QTest::mousePress(arrow(CommandId::Back), Qt::LeftButton);
    ASSERT_TRUE(waitUntil([&] { return listed() != nullptr; }));
    QTest::mouseRelease(arrow(CommandId::Back), Qt::LeftButton);
    EXPECT_EQ(pane().current.get(), folder / "zwei");
    EXPECT_EQ(titles(listed()), QStringLiteral("Aufräum-Agent|eins|d"));
    choose(listed(), QStringLiteral("d"));
    EXPECT_TRUE(folderBecomes(folder));
    EXPECT_TRUE(pane().history().empty(NavigationHistory::Way::Back));
    // A right click on the other one.
    QContextMenuEvent wanted(QContextMenuEvent::Mouse, {5, 5}, arrow(CommandId::Forward)->mapToGlobal(QPoint(5, 5)));
    QCoreApplication::sendEvent(arrow(CommandId::Forward), &wanted);
    ASSERT_TRUE(waitUntil([&] { return listed() != nullptr; }));
    EXPECT_EQ(titles(listed()), QStringLiteral("eins|Aufräum-Agent|zwei"));
    choose(listed(), QStringLiteral("Aufräum-Agent"));
    EXPECT_TRUE(waitUntil([this] { return window->state().agent; }));
    key(Qt::Key_Left, Qt::AltModifier);
    EXPECT_TRUE(folderBecomes(folder / "eins"));
}

TEST_F(TabsTest, theMouseGoesBackAndForwardInThePaneBelowIt)
{
    open();
    pane().navigate(folder / "eins");
    ASSERT_TRUE(folderBecomes(folder / "eins"));
    mouseButton(details()->viewport(), Qt::BackButton);
    EXPECT_TRUE(folderBecomes(folder));
    mouseButton(details()->viewport(), Qt::BackButton); // nowhere to go
    EXPECT_TRUE(folderBecomes(folder));
    mouseButton(details()->viewport(), Qt::ForwardButton);
    EXPECT_TRUE(folderBecomes(folder / "eins"));
    // The other pane has a history of its own.
    key(Qt::Key_F3);
    auto *const second = shownOne<QWidget>(QStringLiteral("secondPane"));
    ASSERT_NE(second, nullptr);
    BrowserModel *const right = pane().partner;
    right->navigate(folder / "zwei");
    ASSERT_TRUE(waitUntil([&] { return right->current.get() == folder / "zwei"; }));
    mouseButton(second, Qt::BackButton);
    EXPECT_TRUE(waitUntil([&] { return right->current.get() == folder / "eins"; }));
    EXPECT_EQ(&pane(), right);
    EXPECT_EQ(right->partner->current.get(), folder / "eins");
    key(Qt::Key_F3);
}

} // namespace
