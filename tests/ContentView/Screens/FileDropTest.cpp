#include "ContentView/Screens/FileDrop.h"

#include "Support/TempTree.h"

#include <QApplication>
#include <QDropEvent>
#include <QMimeData>
#include <QWidget>

#include <gtest/gtest.h>

#include <memory>

using namespace brellin;
using brellin::test::TempTree;

namespace {

TEST(FileDropTest, keysDecideBeforeVolumes)
{
    EXPECT_EQ(dropKind({}, true), DropKind::Move);
    EXPECT_EQ(dropKind({}, false), DropKind::Copy);
    EXPECT_EQ(dropKind(Qt::ControlModifier, true), DropKind::Copy);
    EXPECT_EQ(dropKind(Qt::ShiftModifier, false), DropKind::Move);
}

TEST(FileDropTest, bringsEveryNameAndNeverAsAWordOfTheClipboard)
{
    const std::vector<Location> files{"/tmp/Größe ü #%.txt",
                                      "/tmp/kein\xff"
                                      "utf8",
                                      "/tmp/zwei\nZeilen"};
    const std::unique_ptr<QMimeData> data(dragData(files));
    EXPECT_EQ(draggedFiles(*data), files);
    QMimeData text;
    text.setText(QStringLiteral("file:///etc/passwd"));
    EXPECT_TRUE(draggedFiles(text).empty());
    QMimeData web;
    web.setData(QStringLiteral("text/uri-list"), "https://example.org/x\r\n");
    EXPECT_TRUE(draggedFiles(web).empty());
}

/// What dropping `source` on `target` would do; none if refused.
std::optional<DroppedFiles> dropped(const Location &source, const Location &target, Qt::KeyboardModifiers keys = {})
{
    QWidget widget;
    FileDrop drop(&widget, [target](QPoint) { return std::optional(target); });
    std::optional<DroppedFiles> got;
    QObject::connect(&drop, &FileDrop::dropped, [&got](const DroppedFiles &files) { got = files; });
    const std::unique_ptr<QMimeData> data(dragData({source}));
    QDragEnterEvent enter(QPoint(1, 1), Qt::CopyAction | Qt::MoveAction, data.get(), Qt::LeftButton, keys);
    QApplication::sendEvent(&widget, &enter);
    QDropEvent event(QPointF(1, 1), Qt::CopyAction | Qt::MoveAction, data.get(), Qt::LeftButton, keys);
    QApplication::sendEvent(&widget, &event);
    EXPECT_NE(event.dropAction(), Qt::MoveAction) << "whoever began the drag removes nothing";
    return got;
}

TEST(FileDropTest, putsNothingIntoItselfOrWhereItIs)
{
    const TempTree tree;
    tree.lines({"a/x.txt=1", "a/unter/", "b/"});
    const Location folder = tree.path("a");
    EXPECT_FALSE(dropped(folder, folder));
    EXPECT_FALSE(dropped(folder, tree.path("a/unter")));
    EXPECT_FALSE(dropped(tree.path("a/x.txt"), folder)) << "it is there already";
    const auto copied = dropped(tree.path("a/x.txt"), folder, Qt::ControlModifier);
    ASSERT_TRUE(copied) << "a copy beside itself";
    EXPECT_EQ(copied->kind, DropKind::Copy);
    const auto moved = dropped(tree.path("a/x.txt"), tree.path("b"));
    ASSERT_TRUE(moved);
    EXPECT_EQ(moved->kind, DropKind::Move);
    EXPECT_EQ(moved->destination, tree.path("b"));
}

} // namespace
