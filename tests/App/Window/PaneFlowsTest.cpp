#include "App/Window/WindowWorld.h"

#include "App/Window/DesktopPasteboard.h"
#include "App/Window/FileCommands.h"
#include "Features/FileTags.h"

#include <QAbstractButton>
#include <QHeaderView>
#include <QLabel>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTabBar>

#include <cerrno>

using namespace brellin;
using brellin::test::waitUntil;
using brellin::test::WindowWorld;

namespace {

const QString rot = QStringLiteral("Rot");

/// A pane as its user works in it: by clicks and keys alone.
class PaneFlowsTest : public WindowWorld {
protected:
    void numbered(int count) const
    {
        for (int number = 1; number <= count; ++number)
            file("datei " + std::to_string(1000 + number) + ".txt");
    }
    QString current() const { return details()->currentIndex().data().toString(); }
    QStringList selected() const
    {
        QStringList names;
        for (const FileItem &item : pane().selectedItems())
            names << item.name();
        names.sort();
        return names;
    }
    QString banner() const
    {
        const auto *const text = shownOne<QLabel>(QStringLiteral("bannerText"));
        return text ? text->text() : QString();
    }
    bool bannerBecomes(const QString &beginning) const
    {
        return waitUntil([&] { return banner().startsWith(beginning) && banner().isEmpty() == beginning.isEmpty(); });
    }
    bool settles() const
    {
        return waitUntil([this] { return !pane().searchRunning.get() && !pane().loading.get(); });
    }
    bool undoable() const
    {
        return waitUntil([this] { return window->state().undo.has_value(); });
    }
    void search(const QString &text) const
    {
        key(Qt::Key_F, Qt::ControlModifier);
        type(text);
        key(Qt::Key_Return);
        ASSERT_TRUE(settles());
    }
    void clickSidebar(const QString &name) const
    {
        for (const char *const half : {"sidebarList", "sidebarMarks"}) {
            auto *const list = find<QAbstractItemView>(QString::fromLatin1(half));
            for (int row = 0; row < list->model()->rowCount(); ++row) {
                const QModelIndex index = list->model()->index(row, 0);
                if (index.data().toString() != name)
                    continue;
                list->scrollTo(index);
                QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualRect(index).center());
                QCoreApplication::processEvents();
                return;
            }
        }
        FAIL() << name.toStdString() << " is not in the sidebar";
    }
};

TEST_F(PaneFlowsTest, deletesTenInARowByKeyboard)
{
    numbered(300);
    open();
    ASSERT_TRUE(waitUntil([this] { return rows().size() == 300; }));
    type(QStringLiteral("datei 1150"));
    ASSERT_EQ(current(), QStringLiteral("datei 1150.txt"));
    for (int turn = 0; turn < 10; ++turn) {
        key(Qt::Key_Delete);
        const QString next = QStringLiteral("datei %1.txt").arg(1151 + turn);
        ASSERT_TRUE(waitUntil([&] { return selected() == QStringList(next); })) << turn;
        EXPECT_EQ(current(), next);
        EXPECT_TRUE(details()->viewport()->rect().contains(details()->visualRect(details()->currentIndex()).center()));
    }
    EXPECT_EQ(rows().size(), 290);
    key(Qt::Key_End);
    key(Qt::Key_Delete);
    EXPECT_TRUE(waitUntil([this] { return current() == QStringLiteral("datei 1299.txt"); }))
        << "the last one's other side";
    key(Qt::Key_Home);
    key(Qt::Key_Z, Qt::ControlModifier);
    ASSERT_TRUE(waitUntil([this] { return selected() == QStringList(QStringLiteral("datei 1300.txt")); }));
    EXPECT_TRUE(details()->viewport()->rect().contains(details()->visualRect(details()->currentIndex()).center()))
        << "what came back is in sight";
}

TEST_F(PaneFlowsTest, aMoveAwayLeavesTheNeighbourSelected)
{
    for (const char *const name : {"a.txt", "b.txt", "c.txt", "ziel/z.txt"})
        file(name);
    open();
    click(QStringLiteral("b.txt"));
    window->findChild<FileCommands *>()->transfer({folder / "b.txt"}, folder / "ziel", TransferKind::Move, pane());
    EXPECT_TRUE(waitUntil([this] { return selected() == QStringList(QStringLiteral("c.txt")); }));
}

TEST_F(PaneFlowsTest, comesBackToWhatWasLeft)
{
    numbered(200);
    file("unter/tief/x.txt");
    open();
    click(QStringLiteral("unter"));
    type(QStringLiteral("datei 1120"));
    key(Qt::Key_Down, Qt::ShiftModifier);
    const QStringList chosen = selected();
    ASSERT_EQ(chosen.size(), 2);
    const int scrolled = details()->verticalScrollBar()->value();
    ASSERT_GT(scrolled, 0);
    const QString row = current();
    pane().navigate(folder / "unter" / "tief");
    ASSERT_TRUE(folderBecomes(folder / "unter" / "tief"));
    key(Qt::Key_Up, Qt::AltModifier);
    ASSERT_TRUE(folderBecomes(folder / "unter"));
    EXPECT_EQ(selected(), QStringList(QStringLiteral("tief"))) << "where the user came from";
    EXPECT_EQ(current(), QStringLiteral("tief"));
    key(Qt::Key_Left, Qt::AltModifier);
    key(Qt::Key_Left, Qt::AltModifier);
    ASSERT_TRUE(folderBecomes(folder));
    EXPECT_EQ(selected(), chosen);
    EXPECT_EQ(current(), row);
    EXPECT_EQ(details()->verticalScrollBar()->value(), scrolled);
    // The other view shows the same selection.
    key(Qt::Key_2, Qt::ControlModifier);
    QCoreApplication::processEvents();
    EXPECT_EQ(selected(), chosen);
    key(Qt::Key_1, Qt::ControlModifier);
    QCoreApplication::processEvents();
    EXPECT_EQ(selected(), chosen);
    EXPECT_EQ(current(), row);
    QStringList marked;
    for (const QModelIndex &index : details()->selectionModel()->selectedRows())
        marked << index.data().toString();
    marked.sort();
    EXPECT_EQ(marked, chosen);
}

TEST_F(PaneFlowsTest, theListHasTheFocusWhereTheUserGoesOn)
{
    file("unter/x.txt");
    file("a.txt");
    open();
    key(Qt::Key_L, Qt::ControlModifier);
    key(Qt::Key_Escape);
    EXPECT_TRUE(details()->hasFocus());
    key(Qt::Key_L, Qt::ControlModifier);
    type(shown(folder / "unter"));
    key(Qt::Key_Return);
    ASSERT_TRUE(folderBecomes(folder / "unter"));
    EXPECT_TRUE(details()->hasFocus());
    clickSidebar(QStringLiteral("Downloads"));
    EXPECT_FALSE(find<QWidget>(QStringLiteral("sidebarList"))->hasFocus());
    // By keys from a page to the path and on.
    window->run(CommandId::Agent);
    ASSERT_EQ(pane().place.get(), Place::agent());
    key(Qt::Key_L, Qt::ControlModifier);
    ASSERT_TRUE(find<QLineEdit>(QStringLiteral("pathField"))->hasFocus());
    type(shown(folder));
    key(Qt::Key_Return);
    ASSERT_TRUE(folderBecomes(folder));
    EXPECT_TRUE(details()->hasFocus());
    search(QStringLiteral("unter"));
    key(Qt::Key_Down);
    EXPECT_TRUE(details()->hasFocus());
    EXPECT_EQ(selected(), QStringList(QStringLiteral("unter")));
    key(Qt::Key_Return);
    EXPECT_TRUE(folderBecomes(folder / "unter"));
}

TEST_F(PaneFlowsTest, escEndsOneThingAtATime)
{
    file("a.txt");
    file("b.txt");
    open();
    click(QStringLiteral("a.txt"));
    key(Qt::Key_X, Qt::ControlModifier);
    search(QStringLiteral("txt"));
    ASSERT_TRUE(rowsBecome({QStringLiteral("a.txt"), QStringLiteral("b.txt")}));
    key(Qt::Key_Down);
    pane().showError(QStringLiteral("Etwas ging schief."));
    type(QStringLiteral("b"));
    key(Qt::Key_F2);
    ASSERT_NE(shownOne<QLineEdit>(QStringLiteral("nameEditor")), nullptr);
    key(Qt::Key_Escape);
    EXPECT_TRUE(waitUntil([this] { return !pane().renameTarget.get(); }));
    EXPECT_FALSE(banner().isEmpty());
    details()->setFocus();
    type(QStringLiteral("a"));
    key(Qt::Key_Escape);
    EXPECT_FALSE(banner().isEmpty()) << "typing ahead came first";
    key(Qt::Key_Escape);
    EXPECT_TRUE(banner().isEmpty());
    EXPECT_TRUE(pane().searching.get());
    key(Qt::Key_Escape);
    EXPECT_FALSE(pane().searching.get());
    EXPECT_EQ(selected(), QStringList(QStringLiteral("a.txt"))) << "as before the search";
    EXPECT_TRUE(filesOnClipboard());
    key(Qt::Key_Escape);
    EXPECT_FALSE(filesOnClipboard());
}

TEST_F(PaneFlowsTest, aFailureStaysUntilItIsMended)
{
    file("a.txt");
    file("b.txt");
    const Location trash = services->folders().trash;
    std::filesystem::remove_all(trash.parent_path());
    std::filesystem::create_directories(trash.parent_path().parent_path());
    std::ofstream(trash.parent_path()) << "im Weg";
    open();
    click(QStringLiteral("a.txt"));
    for (int turn = 0; turn < 2; ++turn) {
        key(Qt::Key_Delete);
        ASSERT_TRUE(bannerBecomes(QStringLiteral("a.txt: "))) << turn;
        EXPECT_EQ(selected(), QStringList(QStringLiteral("a.txt")));
        if (turn == 0)
            key(Qt::Key_Escape);
        EXPECT_EQ(banner().isEmpty(), turn == 0);
    }
    auto *const retry = shownOne<QAbstractButton>(QStringLiteral("bannerRetry"));
    ASSERT_NE(retry, nullptr);
    std::filesystem::remove(trash.parent_path());
    QTest::mouseClick(retry, Qt::LeftButton);
    EXPECT_TRUE(waitUntil([this] { return !has("a.txt") && banner().isEmpty(); }));
    EXPECT_TRUE(waitUntil([this] { return selected() == QStringList(QStringLiteral("b.txt")); }));

    // A refused name is said at its field.
    file("c.txt");
    ASSERT_TRUE(waitUntil([this] { return rows().contains(QStringLiteral("c.txt")); }));
    click(QStringLiteral("c.txt"));
    key(Qt::Key_F2);
    type(QStringLiteral("b"));
    key(Qt::Key_Return);
    ASSERT_TRUE(waitUntil([this] { return shownOne<QWidget>(QStringLiteral("fieldReason")) != nullptr; }));
    EXPECT_EQ(banner(), QString());
    shownOne<QLineEdit>(QStringLiteral("nameEditor"))->setText(QStringLiteral("d.txt"));
    key(Qt::Key_Return);
    EXPECT_TRUE(waitUntil([this] { return has("d.txt") && banner().isEmpty(); })) << "until the next success";
}

TEST_F(PaneFlowsTest, theBannerLeadsToSpaceAndRights)
{
    const Location entry = file("a.txt");
    open();
    const auto fails = [&](int cause) {
        const EntryFailure failed{entry, Failure::system(cause)};
        pane().showFailure(paneFailure(failed.line(), {failed}));
    };
    fails(EACCES);
    QTest::mouseClick(shownOne<QAbstractButton>(QStringLiteral("bannerShowRights")), Qt::LeftButton);
    ASSERT_TRUE(waitUntil([this] { return shownOne<QWidget>(QStringLiteral("propertiesSheet")) != nullptr; }));
    key(Qt::Key_Escape);
    ASSERT_TRUE(waitUntil([this] { return shownOne<QWidget>(QStringLiteral("propertiesSheet")) == nullptr; }));
    EXPECT_FALSE(banner().isEmpty()) << "the sheet has taken the key";
    fails(ENOSPC);
    EXPECT_EQ(shownOne<QAbstractButton>(QStringLiteral("bannerShowRights")), nullptr);
    QTest::mouseClick(shownOne<QAbstractButton>(QStringLiteral("bannerFreeSpace")), Qt::LeftButton);
    EXPECT_EQ(pane().place.get(), Place::storage(folder));
}

TEST_F(PaneFlowsTest, saysWhatWasTakenBackAndWhatNot)
{
    file("Wand.png");
    open();
    QSignalSpy said(window->findChild<FileCommands *>(), &FileCommands::said);
    const auto says = [&](const QString &wanted) {
        return waitUntil([&] { return !said.isEmpty() && said.constLast().constFirst().toString() == wanted; });
    };
    const auto rename = [this](const QString &name) {
        key(Qt::Key_F2);
        type(name);
        key(Qt::Key_Return);
        return undoable();
    };
    click(QStringLiteral("Wand.png"));
    ASSERT_TRUE(rename(QStringLiteral("Dach")));
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(says(QStringLiteral("Umbenennen von „Wand.png“ rückgängig gemacht.")));
    EXPECT_TRUE(waitUntil([this] { return selected() == QStringList(QStringLiteral("Wand.png")); }));
    key(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_TRUE(says(QStringLiteral("Umbenennen von „Wand.png“ wiederholt.")));
    ASSERT_TRUE(undoable());
    std::filesystem::remove(folder / "Dach.png");
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(says(QStringLiteral("Umbenennen von „Wand.png“ ließ sich nicht rückgängig machen.")));
    EXPECT_TRUE(bannerBecomes(QStringLiteral("Dach.png: "))) << "why";
}

TEST_F(PaneFlowsTest, takesTheTrashAndCopiesBackAndForth)
{
    file("a.txt");
    open();
    click(QStringLiteral("a.txt"));
    key(Qt::Key_D, Qt::ControlModifier);
    ASSERT_TRUE(waitUntil([this] { return selected() == QStringList(QStringLiteral("a (2).txt")); }));
    ASSERT_TRUE(undoable());
    key(Qt::Key_Delete);
    ASSERT_TRUE(rowsBecome({QStringLiteral("a.txt")}));
    for (int turn = 0; turn < 2; ++turn) {
        ASSERT_TRUE(undoable());
        key(Qt::Key_Z, Qt::ControlModifier);
        ASSERT_TRUE(waitUntil([this] { return selected() == QStringList(QStringLiteral("a (2).txt")); })) << turn;
        key(Qt::Key_Z, Qt::ControlModifier);
        ASSERT_TRUE(rowsBecome({QStringLiteral("a.txt")}));
        ASSERT_TRUE(waitUntil([this] { return !window->state().undo; }));
        key(Qt::Key_Y, Qt::ControlModifier);
        ASSERT_TRUE(waitUntil([this] { return selected() == QStringList(QStringLiteral("a (2).txt")); })) << turn;
        ASSERT_TRUE(undoable());
        key(Qt::Key_Y, Qt::ControlModifier);
        ASSERT_TRUE(rowsBecome({QStringLiteral("a.txt")}));
    }
}

TEST_F(PaneFlowsTest, aTagViewIsAPlace)
{
    const Location first = file("unter/a.txt");
    const Location second = file("b.txt");
    if (!FileTags::add(rot, {first, second}))
        GTEST_SKIP() << "this file system keeps no tags";
    open();
    clickSidebar(rot);
    ASSERT_TRUE(rowsBecome({QStringLiteral("a.txt"), QStringLiteral("b.txt")}));
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Markierung Rot"));
    EXPECT_EQ(find<QTabBar>(QStringLiteral("tabs"))->tabText(0), QStringLiteral("Markierung Rot"));
    EXPECT_EQ(find<QAbstractButton>(QStringLiteral("crumb0"))->text(), QStringLiteral("Markierung Rot"));
    auto *const header = find<QHeaderView>(QStringLiteral("detailsHeader"));
    const int place = static_cast<int>(Column::Folder);
    EXPECT_FALSE(header->isSectionHidden(place));
    EXPECT_EQ(details()->model()->index(0, place).data().toString(), QStringLiteral("~/d/unter"));

    // What the user does there shows at once, and is taken back there.
    click(QStringLiteral("b.txt"));
    key(Qt::Key_Delete);
    ASSERT_TRUE(rowsBecome({QStringLiteral("a.txt")}));
    ASSERT_TRUE(undoable());
    key(Qt::Key_Z, Qt::ControlModifier);
    ASSERT_TRUE(rowsBecome({QStringLiteral("a.txt"), QStringLiteral("b.txt")}));
    EXPECT_TRUE(waitUntil([this] { return selected() == QStringList(QStringLiteral("b.txt")); }));
    click(QStringLiteral("b.txt"));
    key(Qt::Key_F2);
    type(QStringLiteral("c"));
    key(Qt::Key_Return);
    ASSERT_TRUE(rowsBecome({QStringLiteral("a.txt"), QStringLiteral("c.txt")}));
    EXPECT_TRUE(waitUntil([this] { return selected() == QStringList(QStringLiteral("c.txt")); }));
    ASSERT_TRUE(settles());

    key(Qt::Key_Escape);
    EXPECT_EQ(pane().place.get(), Place::folder(folder));
    EXPECT_TRUE(header->isSectionHidden(place));
    EXPECT_EQ(find<QTabBar>(QStringLiteral("tabs"))->tabText(0), QStringLiteral("d"));
    key(Qt::Key_Right, Qt::AltModifier);
    ASSERT_TRUE(rowsBecome({QStringLiteral("a.txt"), QStringLiteral("c.txt")}));
    click(QStringLiteral("a.txt"));
    window->run(CommandId::ShowInFolder);
    ASSERT_TRUE(folderBecomes(folder / "unter"));
    EXPECT_EQ(selected(), QStringList(QStringLiteral("a.txt")));
    key(Qt::Key_Left, Qt::AltModifier);
    ASSERT_TRUE(settles());
    EXPECT_EQ(pane().place.get(), Place::tag(rot));

    // A way that leads nowhere leaves nothing of it.
    key(Qt::Key_L, Qt::ControlModifier);
    type(QStringLiteral("/gibt/es/nicht"));
    key(Qt::Key_Return);
    ASSERT_TRUE(waitUntil(
        [this] { return pane().errorMessage.get() == QStringLiteral("„/gibt/es/nicht“ wurde nicht gefunden."); }));
    EXPECT_EQ(window->windowTitle(), QStringLiteral("d"));
    EXPECT_EQ(rows(), (QStringList{QStringLiteral("unter"), QStringLiteral("c.txt")}));
}

} // namespace
