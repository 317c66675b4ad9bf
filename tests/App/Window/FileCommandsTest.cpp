#include "App/Window/WindowWorld.h"

#include "App/Window/DesktopPasteboard.h"
#include "App/Window/FileCommands.h"
#include "Look/SheetFrame.h"

#include <QAbstractButton>
#include <QAction>

using namespace brellin;
using brellin::test::waitUntil;
using brellin::test::WindowWorld;

namespace {

class FileCommandsTest : public WindowWorld {
protected:
    bool comes(const std::string &name) const
    {
        return waitUntil([&] { return has(name); });
    }
    bool goes(const std::string &name) const
    {
        return waitUntil([&] { return !has(name); });
    }
    std::string contentOf(const std::string &name) const
    {
        std::ifstream stream(folder / name);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    SheetFrame *openSheet() const
    {
        SheetFrame *found = nullptr;
        (void)waitUntil([&] { return (found = shownSheet()) != nullptr; });
        return found;
    }
    SheetFrame *shownSheet() const
    {
        for (SheetFrame *const sheet : window->findChildren<SheetFrame *>())
            if (sheet->isVisible())
                return sheet;
        return nullptr;
    }
};

TEST_F(FileCommandsTest, copiesCutsAndTakesBack)
{
    file("a.txt", "eins");
    file("ziel/b.txt", "zwei");
    open();
    click(QStringLiteral("a.txt"));
    key(Qt::Key_C, Qt::ControlModifier);
    key(Qt::Key_V, Qt::ControlModifier);
    ASSERT_TRUE(comes("a (2).txt")) << "beside itself";
    ASSERT_TRUE(waitUntil([this] { return pane().selection.get().contains(folder / "a (2).txt"); }))
        << "what arrived is selected";
    key(Qt::Key_Z, Qt::ControlModifier);
    ASSERT_TRUE(goes("a (2).txt"));
    EXPECT_EQ(contentOf("a.txt"), "eins");

    ASSERT_TRUE(waitUntil([this] { return rows().size() == 2; }));
    click(QStringLiteral("a.txt"));
    key(Qt::Key_X, Qt::ControlModifier);
    pane().navigate(folder / "ziel");
    details()->setFocus();
    key(Qt::Key_V, Qt::ControlModifier);
    ASSERT_TRUE(comes("ziel/a.txt"));
    ASSERT_TRUE(goes("a.txt"));
    EXPECT_FALSE(filesOnClipboard()) << "what was cut is moved once";
    ASSERT_TRUE(waitUntil([this] { return window->state().undo.has_value(); }));
    key(Qt::Key_Z, Qt::ControlModifier);
    ASSERT_TRUE(comes("a.txt"));
    EXPECT_FALSE(has("ziel/a.txt"));
    EXPECT_EQ(contentOf("a.txt"), "eins");
    ASSERT_TRUE(waitUntil([this] { return window->state().redo.has_value(); }));
    key(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    ASSERT_TRUE(comes("ziel/a.txt"));
    EXPECT_FALSE(has("a.txt"));
}

TEST_F(FileCommandsTest, aTransferOutlivesItsTabAndCanBeTakenBack)
{
    file("a.txt", "eins");
    file("ziel/b.txt");
    open();
    click(QStringLiteral("a.txt"));
    key(Qt::Key_C, Qt::ControlModifier);
    window->run(CommandId::NewTab);
    pane().navigate(folder / "ziel");
    ASSERT_TRUE(folderBecomes(folder / "ziel"));
    window->run(CommandId::Paste);
    window->run(CommandId::CloseTab);
    ASSERT_TRUE(comes("ziel/a.txt"));
    ASSERT_TRUE(waitUntil([this] { return window->state().undo.has_value(); }));
    window->run(CommandId::Undo);
    EXPECT_TRUE(goes("ziel/a.txt"));
}

TEST_F(FileCommandsTest, retriesATransferWhoseDestinationFailed)
{
    file("a.txt", "eins");
    file("ziel");
    open();
    window->findChild<FileCommands *>()->transfer({folder / "a.txt"}, folder / "ziel", TransferKind::Copy, pane());
    const auto again = [this] { return shownOne<QAbstractButton>(QStringLiteral("bannerRetry")); };
    ASSERT_TRUE(waitUntil([&] { return again() != nullptr; })) << "the destination is no folder";
    std::filesystem::remove(folder / "ziel");
    std::filesystem::create_directory(folder / "ziel");
    again()->click();
    EXPECT_TRUE(comes("ziel/a.txt"));
}

TEST_F(FileCommandsTest, selectsTheNeighbourOfWhatLeftOnlyForThatMove)
{
    file("a.txt");
    file("b.txt");
    file("ziel/c.txt");
    file("fremd/d.txt");
    open();
    auto *const files = window->findChild<FileCommands *>();
    ASSERT_TRUE(waitUntil([this] { return rows().size() == 4; }));
    click(QStringLiteral("a.txt"));
    files->transfer({folder / "a.txt"}, folder / "ziel", TransferKind::Move, pane());
    ASSERT_TRUE(waitUntil([this] { return pane().selection.get().contains(folder / "b.txt"); }));
    pane().setSelection({});
    const TransferQueue &queue = composition->forWindows().transfers;
    files->transfer({folder / "fremd/d.txt"}, folder / "ziel", TransferKind::Copy, pane());
    ASSERT_TRUE(waitUntil([&] { return !queue.busy() && has("ziel/d.txt"); }));
    EXPECT_TRUE(pane().selection.get().empty());
}

TEST_F(FileCommandsTest, undoReadsOnlyThePanesThatShowIt)
{
    file("a.txt");
    file("ziel/c.txt");
    open();
    const Location a = folder / "a.txt";
    EXPECT_TRUE(pane().mayShow({{folder / "ziel/c.txt", a}}));
    EXPECT_TRUE(pane().mayShow({{folder, folder.parent_path() / "umbenannt"}})) << "its own folder";
    EXPECT_FALSE(pane().mayShow({{folder / "ziel/c.txt", {}}}));
    pane().setSearchText(QStringLiteral("txt"));
    ASSERT_TRUE(waitUntil([this] { return pane().searching.get(); }));
    EXPECT_TRUE(pane().mayShow({{folder / "ziel/c.txt", {}}}));
    EXPECT_FALSE(pane().mayShow({{folder.parent_path() / "a.txt", {}}}));
    pane().navigate(folder / "ziel");
    ASSERT_TRUE(folderBecomes(folder / "ziel"));
    EXPECT_FALSE(pane().mayShow({{a, folder / "b.txt"}}));
}

TEST_F(FileCommandsTest, trashesWhatIsSelectedNowAndPutsItBack)
{
    file("a.txt", "eins");
    file("b.txt", "zwei");
    open();
    click(QStringLiteral("a.txt"));
    // Click and key arrive before the pane is told about the selection.
    QTest::mouseClick(details()->viewport(), Qt::LeftButton, {}, placeOf(QStringLiteral("b.txt")));
    QTest::keyClick(details(), Qt::Key_Delete);
    ASSERT_TRUE(goes("b.txt"));
    EXPECT_TRUE(has("a.txt"));
    ASSERT_TRUE(waitUntil([this] { return window->state().undo.has_value(); }));
    key(Qt::Key_Z, Qt::ControlModifier);
    ASSERT_TRUE(comes("b.txt"));
    EXPECT_EQ(contentOf("b.txt"), "zwei");
}

TEST_F(FileCommandsTest, asksBeforeItReplacesAndDoesNothingOnEscape)
{
    file("a.txt", "neu");
    file("ziel/a.txt", "alt");
    open();
    click(QStringLiteral("a.txt"));
    key(Qt::Key_C, Qt::ControlModifier);
    pane().navigate(folder / "ziel");
    details()->setFocus();
    key(Qt::Key_V, Qt::ControlModifier);
    SheetFrame *sheet = openSheet();
    ASSERT_NE(sheet, nullptr);
    QTest::keyClick(sheet, Qt::Key_Escape);
    ASSERT_TRUE(waitUntil([this] { return shownSheet() == nullptr; }));
    EXPECT_EQ(contentOf("ziel/a.txt"), "alt");
    EXPECT_FALSE(has("ziel/a (2).txt"));

    details()->setFocus();
    key(Qt::Key_V, Qt::ControlModifier);
    sheet = openSheet();
    ASSERT_NE(sheet, nullptr);
    QAbstractButton *both = nullptr;
    for (QAbstractButton *const button : sheet->findChildren<QAbstractButton *>())
        if (button->text() == QStringLiteral("Beide behalten"))
            both = button;
    ASSERT_NE(both, nullptr);
    QTest::mouseClick(both, Qt::LeftButton);
    ASSERT_TRUE(comes("ziel/a (2).txt"));
    EXPECT_EQ(contentOf("ziel/a.txt"), "alt");
    EXPECT_EQ(contentOf("ziel/a (2).txt"), "neu");
}

TEST_F(FileCommandsTest, opensNoProgramUnasked)
{
    const Location program = file("start.sh", "#!/bin/sh\ntouch gestartet\n");
    std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    open();
    doubleClick(QStringLiteral("start.sh"));
    SheetFrame *const sheet = openSheet();
    ASSERT_NE(sheet, nullptr);
    EXPECT_EQ(sheet->objectName(), QStringLiteral("openQuestion"));
    ASSERT_NE(QApplication::focusWidget(), nullptr);
    ASSERT_EQ(QApplication::focusWidget()->objectName(), QStringLiteral("cancel"));
    key(Qt::Key_Delete);
    window->run(CommandId::MoveToTrash);
    key(Qt::Key_Return);
    ASSERT_TRUE(waitUntil([this] { return shownSheet() == nullptr; })) << "Return takes the safe answer";
    EXPECT_TRUE(has("start.sh")) << "a sheet keeps the keys";
    EXPECT_FALSE(has("gestartet"));
}

TEST_F(FileCommandsTest, renamesSeveralFromOneSheet)
{
    file("x.txt", "1");
    file("y.txt", "2");
    open();
    key(Qt::Key_A, Qt::ControlModifier);
    key(Qt::Key_F2);
    SheetFrame *const sheet = openSheet();
    ASSERT_NE(sheet, nullptr);
    type(QStringLiteral("Urlaub"));
    QAbstractButton *rename = nullptr;
    for (QAbstractButton *const button : sheet->findChildren<QAbstractButton *>())
        if (button->text() == QStringLiteral("Umbenennen"))
            rename = button;
    ASSERT_NE(rename, nullptr);
    ASSERT_TRUE(waitUntil([&] { return rename->isEnabled(); }));
    QTest::mouseClick(rename, Qt::LeftButton);
    ASSERT_TRUE(comes("Urlaub – 01.txt"));
    ASSERT_TRUE(comes("Urlaub – 02.txt"));
    EXPECT_EQ(contentOf("Urlaub – 01.txt"), "1");
}

TEST_F(FileCommandsTest, systemPlacesStayAsTheyAre)
{
    open();
    pane().navigate("/usr/share");
    details()->setFocus();
    key(Qt::Key_N, Qt::ControlModifier | Qt::ShiftModifier);
    ASSERT_TRUE(waitUntil([this] { return pane().errorMessage.get().has_value(); }));
    EXPECT_FALSE(std::filesystem::exists("/usr/share/Neuer Ordner"));
}

} // namespace
