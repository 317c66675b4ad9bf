#include "App/Window/WindowWorld.h"

#include "Look/SheetFrame.h"

#include <QAbstractButton>

using namespace brellin;
using brellin::test::waitUntil;
using brellin::test::WindowWorld;

namespace {

/// What is known of folders follows the user's own operations.
class FoldersFollowTest : public WindowWorld {
protected:
    FolderColors &colors() const { return composition->forWindows().panes.colors; }
    QString colorOf(const std::string &name) const { return colors().color(folder / name).value_or(QString()); }
    bool colorBecomes(const std::string &name, const QString &wanted) const
    {
        return waitUntil([&] { return colorOf(name) == wanted; });
    }
    void color(const std::string &name, const QString &tag) const { colors().setColor(folder / name, tag); }
    bool canUndo() const
    {
        return waitUntil([&] { return window->state().undo.has_value(); });
    }
    void undo() const
    {
        ASSERT_TRUE(canUndo());
        window->run(CommandId::Undo);
    }
    std::int64_t bytesOf(const std::string &name) const
    {
        const auto size = composition->forWindows().panes.sizes.size(folder / name);
        return size && size->state == FolderSize::State::Current ? size->bytes : -1;
    }
    bool treeShows(const QString &title, bool shown = true) const
    {
        const auto *const list = find<QWidget>(QStringLiteral("sidebar"))->findChild<QAbstractItemView *>();
        return waitUntil([&] {
            bool found = false;
            for (int row = 0; row < list->model()->rowCount(); ++row)
                found = found || list->model()->index(row, 0).data().toString() == title;
            return found == shown;
        });
    }
    void renameTo(const QString &text) const
    {
        key(Qt::Key_F2);
        QAbstractButton *rename = nullptr;
        ASSERT_TRUE(waitUntil([&] {
            for (QAbstractButton *const button : window->findChildren<QAbstractButton *>())
                if (button->isVisible() && button->text() == QStringLiteral("Umbenennen"))
                    rename = button;
            return rename != nullptr;
        }));
        type(text);
        ASSERT_TRUE(waitUntil([&] { return rename->isEnabled(); }));
        QTest::mouseClick(rename, Qt::LeftButton);
    }
};

TEST_F(FoldersFollowTest, aTrashedFolderTakesItsColorAwayAndBack)
{
    file("rot/tief/x");
    file("blau/x");
    color("rot", QStringLiteral("Rot"));
    color("rot/tief", QStringLiteral("Gelb"));
    open();
    click(QStringLiteral("rot"));
    key(Qt::Key_Delete);
    ASSERT_TRUE(colorBecomes("rot", {}));
    EXPECT_EQ(colorOf("rot/tief"), QString());
    ASSERT_TRUE(canUndo());
    key(Qt::Key_Z, Qt::ControlModifier);
    ASSERT_TRUE(colorBecomes("rot", QStringLiteral("Rot")));
    EXPECT_EQ(colorOf("rot/tief"), QStringLiteral("Gelb"));
    ASSERT_TRUE(waitUntil([&] { return window->state().redo.has_value(); }));
    key(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    ASSERT_TRUE(colorBecomes("rot", {}));
    // The empty place passes its old colour on to nobody.
    ASSERT_TRUE(rowsBecome({QStringLiteral("blau")}));
    click(QStringLiteral("blau"));
    key(Qt::Key_F2);
    type(QStringLiteral("rot"));
    key(Qt::Key_Return);
    ASSERT_TRUE(rowsBecome({QStringLiteral("rot")}));
    ASSERT_TRUE(waitUntil([&] { return !window->state().redo; })) << "the rename is recorded";
    EXPECT_EQ(colorOf("rot"), QString());
}

TEST_F(FoldersFollowTest, aCopyLeavesTheColorToItsOriginal)
{
    file("rot/x");
    color("rot", QStringLiteral("Rot"));
    open();
    click(QStringLiteral("rot"));
    key(Qt::Key_D, Qt::ControlModifier);
    ASSERT_TRUE(rowsBecome({QStringLiteral("rot"), QStringLiteral("rot (2)")}));
    ASSERT_TRUE(canUndo());
    EXPECT_EQ(colorOf("rot"), QStringLiteral("Rot"));
    EXPECT_EQ(colorOf("rot (2)"), QString());
}

TEST_F(FoldersFollowTest, colorsFollowTheAgent)
{
    const Location moved = file("Mappe.pdf");
    color("Mappe.pdf", QStringLiteral("Rot"));
    CleanupAgent &agent = composition->forWindows().agent.agent;
    CleanupRule rule;
    rule.name = QStringLiteral("PDF");
    rule.sourcePath = textOf(folder);
    rule.conditions = {{.kind = ConditionKind::ExtensionIs, .value = QStringLiteral("pdf")}};
    rule.targetPath = textOf(folder / "ziel");
    rule.automatic = true;
    ASSERT_TRUE(agent.updateRules([&](const auto &) { return std::vector{rule}; }));
    agent.scan(CleanupAgent::Search::Rules);
    EXPECT_TRUE(colorBecomes("ziel/Mappe.pdf", QStringLiteral("Rot")));
    EXPECT_FALSE(std::filesystem::exists(moved));
}

TEST_F(FoldersFollowTest, colorsFollowRenamesUndoAndRedo)
{
    file("eins/x");
    file("zwei/x");
    color("eins", QStringLiteral("Rot"));
    color("zwei", QStringLiteral("Blau"));
    open();
    key(Qt::Key_A, Qt::ControlModifier);
    renameTo(QStringLiteral("Neu"));
    ASSERT_TRUE(colorBecomes("Neu – 01", QStringLiteral("Rot")));
    EXPECT_EQ(colorOf("Neu – 02"), QStringLiteral("Blau"));
    EXPECT_EQ(colorOf("eins"), QString());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    undo();
    ASSERT_TRUE(colorBecomes("zwei", QStringLiteral("Blau")));
    EXPECT_EQ(colorOf("eins"), QStringLiteral("Rot"));
    EXPECT_EQ(colorOf("Neu – 01"), QString());
    ASSERT_TRUE(waitUntil([&] { return window->state().redo.has_value(); }));
    window->run(CommandId::Redo);
    EXPECT_TRUE(colorBecomes("Neu – 02", QStringLiteral("Blau")));
}

TEST_F(FoldersFollowTest, sizesAreCountedAgainAfterAnOperationElsewhere)
{
    file("a/tief/x", "12345");
    file("b/y", "123");
    open();
    ASSERT_TRUE(waitUntil([&] { return bytesOf("a") == 5 && bytesOf("b") == 3; }));
    window->run(CommandId::NewTab);
    pane().navigate(folder / "a/tief");
    ASSERT_TRUE(folderBecomes(folder / "a/tief"));
    ASSERT_TRUE(rowsBecome({QStringLiteral("x")}));
    click(QStringLiteral("x"));
    key(Qt::Key_X, Qt::ControlModifier);
    pane().navigate(folder / "b");
    ASSERT_TRUE(folderBecomes(folder / "b"));
    window->run(CommandId::Paste);
    window->run(CommandId::PreviousTab);
    EXPECT_TRUE(waitUntil([&] { return bytesOf("a") == 0 && bytesOf("b") == 8; }));
    undo();
    EXPECT_TRUE(waitUntil([&] { return bytesOf("a") == 5 && bytesOf("b") == 3; }));
}

TEST_F(FoldersFollowTest, theTreeFollowsOperationsReloadAndTheHiddenSwitch)
{
    file("innen/tief/x");
    file("neben/x");
    file(".punkt/x");
    open();
    pane().navigate(folder / "innen");
    ASSERT_TRUE(treeShows(QStringLiteral("neben")));
    pane().navigate(folder);
    ASSERT_TRUE(rowsBecome({QStringLiteral("innen"), QStringLiteral("neben")}));
    click(QStringLiteral("neben"));
    key(Qt::Key_Delete);
    EXPECT_TRUE(treeShows(QStringLiteral("neben"), false));
    undo();
    EXPECT_TRUE(treeShows(QStringLiteral("neben")));
    window->run(CommandId::ShowHidden);
    EXPECT_TRUE(treeShows(QStringLiteral(".punkt")));
    window->run(CommandId::ShowHidden);
    EXPECT_TRUE(treeShows(QStringLiteral(".punkt"), false));
    std::filesystem::remove_all(folder / "neben");
    window->run(CommandId::Reload);
    EXPECT_TRUE(treeShows(QStringLiteral("neben"), false));
}

TEST_F(FoldersFollowTest, aFolderThatGoesOffersItsParent)
{
    file("bleibt");
    file("innen/tief/x");
    open();
    pane().navigate(folder / "innen/tief");
    ASSERT_TRUE(folderBecomes(folder / "innen/tief"));
    std::filesystem::remove_all(folder / "innen");
    QAbstractButton *button = nullptr;
    ASSERT_TRUE(
        waitUntil([&] { return (button = shownOne<QAbstractButton>(QStringLiteral("goUpFromGone"))) != nullptr; }));
    QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_TRUE(folderBecomes(folder));
    EXPECT_EQ(shownOne<QAbstractButton>(QStringLiteral("goUpFromGone")), nullptr);
}

TEST_F(FoldersFollowTest, aBundleIsAFolderLikeAnyOther)
{
    file("App.app/Contents/x", "12345");
    open();
    ASSERT_TRUE(waitUntil([&] { return bytesOf("App.app") == 5; }));
    doubleClick(QStringLiteral("App.app"));
    EXPECT_TRUE(folderBecomes(folder / "App.app"));
    EXPECT_TRUE(rowsBecome({QStringLiteral("Contents")}));
    EXPECT_TRUE(treeShows(QStringLiteral("App.app")));
}

} // namespace
