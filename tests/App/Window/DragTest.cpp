#include "App/Window/WindowWorld.h"
#include "ContentView/Screens/FileDrop.h"
#include "Sidebar/Pins.h"
#include "Sidebar/Screens/SidebarView.h"

#include <QAbstractButton>
#include <QDropEvent>
#include <QLabel>
#include <QMimeData>
#include <QTabBar>

using namespace brellin;
using brellin::test::waitUntil;
using brellin::test::WindowWorld;

namespace {

/// Drags of "brief.txt" over the window, sent as events.
class DragTest : public WindowWorld {
protected:
    DragTest()
    {
        file("brief.txt");
        file("Ablage/2026/x.txt");
    }
    void TearDown() override
    {
        Pins &pins = composition->forWindows().pins;
        EXPECT_TRUE(pins.unpin(folder / "Ablage"));
        WindowWorld::TearDown();
    }
    void send(QWidget *over, QPoint at, QEvent::Type type, const char *source = "brief.txt") const
    {
        const std::unique_ptr<QMimeData> data(dragData({folder / source}));
        const Qt::DropActions both = Qt::CopyAction | Qt::MoveAction;
        QDragEnterEvent enter(at, both, data.get(), Qt::LeftButton, {});
        QCoreApplication::sendEvent(over, &enter);
        QDropEvent event(at, both, data.get(), Qt::LeftButton, {}, type);
        QDragMoveEvent move(at, both, data.get(), Qt::LeftButton, {});
        QCoreApplication::sendEvent(over, type == QEvent::Drop ? &event : static_cast<QEvent *>(&move));
        QCoreApplication::processEvents();
    }
    void dragOver(QWidget *over, QPoint at, const char *source = "brief.txt") const
    {
        send(over, at, QEvent::DragMove, source);
    }
    void drop(QWidget *over, QPoint at) const { send(over, at, QEvent::Drop); }
    void leave(QWidget *over) const
    {
        QDragLeaveEvent event;
        QCoreApplication::sendEvent(over, &event);
        QCoreApplication::processEvents();
    }
    /// The timer by which folders open below a drag over this widget.
    static QTimer *springOf(QWidget *over)
    {
        auto *const timer = over->findChild<QTimer *>(QStringLiteral("spring"));
        EXPECT_NE(timer, nullptr);
        return timer;
    }
    SidebarView *sidebar() const { return find<SidebarView>(QStringLiteral("sidebar")); }
    std::optional<QPoint> pinned() const
    {
        for (int y = 0; y < sidebar()->dropArea()->height(); y += 4)
            if (sidebar()->folderAt(QPoint(60, y)) == folder / "Ablage")
                return QPoint(60, y);
        return std::nullopt;
    }
    QTabBar *bar() const { return find<QTabBar>(QStringLiteral("tabs")); }
};

TEST_F(DragTest, marksWhereADropGoes)
{
    ASSERT_TRUE(composition->forWindows().pins.pin(folder / "Ablage"));
    open();
    window->addTab(folder / "Ablage");
    key(Qt::Key_PageUp, Qt::ControlModifier);
    ASSERT_TRUE(waitUntil([this] { return pinned() && rows().contains(QStringLiteral("Ablage")); }));
    auto *const crumb = find<QAbstractButton>(QStringLiteral("crumb0"));
    struct Target {
        const char *name;
        QWidget *widget;
        QPoint at;
    };
    for (const Target &target : {Target{"sidebar", sidebar()->dropArea(), *pinned()}, Target{"crumb", crumb, {8, 8}},
                                 Target{"tab", bar(), bar()->tabRect(1).center()},
                                 Target{"row", details()->viewport(), placeOf(QStringLiteral("Ablage"))}}) {
        SCOPED_TRACE(target.name);
        const QImage before = target.widget->grab().toImage();
        dragOver(target.widget, target.at);
        const QImage during = target.widget->grab().toImage();
        EXPECT_NE(during, before);
        leave(target.widget);
        EXPECT_EQ(target.widget->grab().toImage(), before);
        dragOver(target.widget, target.at, "Ablage");
        EXPECT_TRUE(target.widget == crumb || target.widget->grab().toImage() == before)
            << "a folder does not go into itself";
        leave(target.widget);
    }
}

TEST_F(DragTest, foldersOpenUnderARestingDrag)
{
    ASSERT_TRUE(composition->forWindows().pins.pin(folder / "Ablage"));
    open();
    window->addTab(folder);
    ASSERT_TRUE(waitUntil([this] { return pinned() && rows().contains(QStringLiteral("Ablage")); }));
    QWidget *const list = details()->viewport();
    dragOver(list, placeOf(QStringLiteral("Ablage")), "Ablage");
    EXPECT_FALSE(springOf(list)->isActive()) << "what is dragged stays closed";
    dragOver(list, placeOf(QStringLiteral("Ablage")));
    EXPECT_TRUE(springOf(list)->isActive());
    EXPECT_EQ(springOf(list)->interval(), 800);
    leave(list);
    EXPECT_FALSE(springOf(list)->isActive());
    for (QTimer *const timer : window->findChildren<QTimer *>(QStringLiteral("spring")))
        timer->setInterval(5);
    dragOver(list, placeOf(QStringLiteral("Ablage")));
    ASSERT_TRUE(folderBecomes(folder / "Ablage"));
    ASSERT_TRUE(rowsBecome({QStringLiteral("2026")}));
    dragOver(list, placeOf(QStringLiteral("2026")));
    ASSERT_TRUE(folderBecomes(folder / "Ablage/2026"));
    drop(list, {100, list->height() - 10});
    EXPECT_TRUE(waitUntil([this] { return has("Ablage/2026/brief.txt") && !has("brief.txt"); }));

    dragOver(sidebar()->dropArea(), *pinned());
    EXPECT_TRUE(folderBecomes(folder / "Ablage"));
    leave(sidebar()->dropArea());
    dragOver(bar(), bar()->tabRect(0).center());
    EXPECT_TRUE(waitUntil([this] { return bar()->currentIndex() == 0; }));
    EXPECT_EQ(pane().current.get(), folder) << "the tab came to the front as it was";
    leave(bar());
}

TEST_F(DragTest, saysWhatWentWhereAndTakesItBack)
{
    open();
    ASSERT_TRUE(waitUntil([this] { return rows().contains(QStringLiteral("Ablage")); }));
    auto *const card = find<QWidget>(QStringLiteral("doneCard"));
    EXPECT_FALSE(card->isVisible());
    drop(details()->viewport(), placeOf(QStringLiteral("Ablage")));
    ASSERT_TRUE(waitUntil([&] { return card->isVisible() && has("Ablage/brief.txt"); }));
    EXPECT_EQ(card->findChild<QLabel *>(QStringLiteral("doneText"))->text(),
              QStringLiteral("1 Element nach „Ablage“ verschoben"));
    EXPECT_TRUE(window->rect().contains(card->geometry()));
    QTest::mouseClick(card->findChild<QWidget *>(QStringLiteral("doneUndo")), Qt::LeftButton);
    EXPECT_TRUE(waitUntil([this] { return has("brief.txt") && !has("Ablage/brief.txt"); }));
    EXPECT_FALSE(card->isVisible());
    // The next step makes the offer stale.
    ASSERT_TRUE(waitUntil([this] { return !composition->forWindows().undo.running.get(); }));
    drop(details()->viewport(), placeOf(QStringLiteral("Ablage")));
    ASSERT_TRUE(waitUntil([&] { return card->isVisible(); }));
    window->run(CommandId::NewFolder);
    EXPECT_TRUE(waitUntil([&] { return !card->isVisible(); }));
}

TEST_F(DragTest, cutEntriesAreFadedUntilPastedOrEsc)
{
    open();
    ASSERT_TRUE(waitUntil([this] { return rows().contains(QStringLiteral("brief.txt")); }));
    click(QStringLiteral("brief.txt"));
    const auto row = [this] {
        const QPoint at = placeOf(QStringLiteral("brief.txt"));
        return details()->viewport()->grab(QRect(at.x() - 40, at.y() - 8, 160, 16)).toImage();
    };
    const QImage before = row();
    key(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(row(), before) << "copied entries stay as they are";
    key(Qt::Key_X, Qt::ControlModifier);
    EXPECT_TRUE(waitUntil([&] { return row() != before; }));
    key(Qt::Key_Escape);
    EXPECT_TRUE(waitUntil([&] { return row() == before; }));
    key(Qt::Key_X, Qt::ControlModifier);
    pane().navigate(folder / "Ablage");
    ASSERT_TRUE(folderBecomes(folder / "Ablage"));
    key(Qt::Key_V, Qt::ControlModifier);
    ASSERT_TRUE(waitUntil([this] { return has("Ablage/brief.txt") && rows().contains(QStringLiteral("brief.txt")); }));
    EXPECT_FALSE(pane().selection.get().empty());
    EXPECT_TRUE(waitUntil([&] { return row() == before; })) << "no longer faded";
}

} // namespace
