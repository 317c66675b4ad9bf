#include "App/Window/WindowWorld.h"

#include "App/Window/EditableFocus.h"
#include "App/Window/FittingFrame.h"
#include "App/Window/Windows.h"
#include "Features/FileTags.h"

#include <QAbstractButton>
#include <QHeaderView>
#include <QMenu>
#include <QPlainTextEdit>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTabBar>

#include <set>

using namespace brellin;
using brellin::test::waitUntil;
using brellin::test::WindowWorld;

namespace {

class WindowTest : public WindowWorld {};

QStringList names(std::initializer_list<const char *> list)
{
    QStringList made;
    for (const char *const one : list)
        made.append(QString::fromUtf8(one));
    return made;
}

TEST_F(WindowTest, goesIntoFoldersAndBack)
{
    file("Briefe/an Anna.txt");
    file("b10.txt");
    file("b9.txt");
    open();
    EXPECT_TRUE(rowsBecome(names({"Briefe", "b9.txt", "b10.txt"})));
    doubleClick(QStringLiteral("Briefe"));
    EXPECT_TRUE(rowsBecome(names({"an Anna.txt"})));
    key(Qt::Key_Left, Qt::AltModifier);
    EXPECT_TRUE(rowsBecome(names({"Briefe", "b9.txt", "b10.txt"})));
    key(Qt::Key_Right, Qt::AltModifier);
    EXPECT_TRUE(folderBecomes(folder / "Briefe"));
    key(Qt::Key_Backspace);
    EXPECT_TRUE(folderBecomes(folder));
    // With the keyboard only: type-ahead and Return.
    type(QStringLiteral("bri"));
    key(Qt::Key_Return);
    EXPECT_TRUE(folderBecomes(folder / "Briefe"));
    // With the address bar.
    QTest::mouseClick(find<QAbstractButton>(QStringLiteral("crumb0")), Qt::LeftButton);
    EXPECT_TRUE(folderBecomes(services->folders().home));
}

TEST_F(WindowTest, aTypedPathLeadsThereOrSaysThatItDoesNotExist)
{
    file("Briefe/an Anna.txt");
    open();
    key(Qt::Key_L, Qt::ControlModifier);
    auto *const field = find<QLineEdit>(QStringLiteral("pathField"));
    ASSERT_TRUE(field->hasFocus());
    EXPECT_EQ(field->selectedText(), shown(folder));
    field->setText(QStringLiteral("~/d/Briefe"));
    key(Qt::Key_Return);
    EXPECT_TRUE(folderBecomes(folder / "Briefe"));
    key(Qt::Key_L, Qt::ControlModifier);
    field->setText(QStringLiteral("~/d/nirgends"));
    key(Qt::Key_Return);
    EXPECT_TRUE(folderBecomes(folder / "Briefe"));
    ASSERT_TRUE(pane().errorMessage.get());
    EXPECT_TRUE(pane().errorMessage.get()->contains(QStringLiteral("wurde nicht gefunden.")));
    EXPECT_EQ(shownOne<QWidget>(QStringLiteral("paneBanner")), nullptr) << "said at the field";
    EXPECT_TRUE(rowsBecome(names({"an Anna.txt"})));
}

TEST_F(WindowTest, makesAndRenamesInPlace)
{
    file("Brief.alt.txt");
    open();
    key(Qt::Key_N, Qt::ControlModifier | Qt::ShiftModifier);
    ASSERT_TRUE(waitUntil([this] { return shownOne<QLineEdit>(QStringLiteral("nameEditor")) != nullptr; }));
    auto *editor = shownOne<QLineEdit>(QStringLiteral("nameEditor"));
    ASSERT_TRUE(waitUntil([&] { return editor->selectedText() == QStringLiteral("Neuer Ordner"); }));
    type(QStringLiteral("Ürlaub"));
    key(Qt::Key_Return);
    ASSERT_TRUE(rowsBecome(names({"Ürlaub", "Brief.alt.txt"})));
    EXPECT_TRUE(has("Ürlaub"));

    click(QStringLiteral("Brief.alt.txt"));
    key(Qt::Key_F2);
    editor = shownOne<QLineEdit>(QStringLiteral("nameEditor"));
    ASSERT_NE(editor, nullptr);
    ASSERT_TRUE(waitUntil([&] { return editor->selectedText() == QStringLiteral("Brief.alt"); }))
        << editor->selectedText().toStdString();
    // A change by another program meanwhile does not end the editor.
    type(QStringLiteral("Zettel"));
    file("anderes.txt");
    ASSERT_TRUE(waitUntil([this] { return rows().contains(QStringLiteral("anderes.txt")); }));
    ASSERT_EQ(shownOne<QLineEdit>(QStringLiteral("nameEditor")), editor);
    EXPECT_EQ(editor->text(), QStringLiteral("Zettel.txt"));
    key(Qt::Key_Return);
    ASSERT_TRUE(waitUntil([this] { return has("Zettel.txt"); }));

    click(QStringLiteral("anderes.txt"));
    key(Qt::Key_F2);
    type(QStringLiteral("weg"));
    key(Qt::Key_Escape);
    EXPECT_TRUE(waitUntil([this] { return !pane().renameTarget.get(); }));
    EXPECT_TRUE(has("anderes.txt"));
}

TEST_F(WindowTest, sortsSearchesAndSelects)
{
    file("a.txt", "123456789");
    file("b.txt", "1");
    file("unter/Rechnung.txt");
    open();
    auto *const header = find<QHeaderView>(QStringLiteral("detailsHeader"));
    const auto clickHead = [header](int section) {
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                          QPoint(header->sectionViewportPosition(section) + 20, header->height() / 2));
    };
    clickHead(0);
    EXPECT_TRUE(rowsBecome(names({"unter", "b.txt", "a.txt"}))) << "folders first in either direction";
    clickHead(1);
    EXPECT_TRUE(rowsBecome(names({"unter", "a.txt", "b.txt"}))) << "the largest first";
    clickHead(1);
    EXPECT_TRUE(rowsBecome(names({"unter", "b.txt", "a.txt"})));

    click(QStringLiteral("a.txt"));
    key(Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(pane().selection.get().size(), 3U);
    click(QStringLiteral("b.txt"));
    click(QStringLiteral("unter"), Qt::LeftButton, Qt::ControlModifier);
    EXPECT_EQ(pane().selection.get().size(), 2U);

    key(Qt::Key_F, Qt::ControlModifier);
    type(QStringLiteral("RECHN"));
    ASSERT_TRUE(rowsBecome(names({"Rechnung.txt"})));
    key(Qt::Key_Escape);
    ASSERT_TRUE(waitUntil([this] { return rows().size() == 3; }));
    EXPECT_TRUE(details()->hasFocus()) << "back to the list";
}

TEST_F(WindowTest, aRubberBandBeginsBesideANameAndNotOnIt)
{
    for (const char *const name : {"a", "b", "c", "d"})
        file(name);
    open();
    QWidget *const field = details()->viewport();
    const QPoint from(field->width() - 20, placeOf(QStringLiteral("b")).y());
    QTest::mousePress(field, Qt::LeftButton, {}, from);
    for (int step = 1; step <= 5; ++step)
        QTest::mouseMove(field, QPoint(from.x() - 20 * step, from.y() + 8 * step));
    QMouseEvent move(QEvent::MouseMove, QPointF(from.x() - 100, placeOf(QStringLiteral("d")).y()),
                     field->mapToGlobal(QPointF(from.x() - 100, placeOf(QStringLiteral("d")).y())), Qt::NoButton,
                     Qt::LeftButton, {});
    QCoreApplication::sendEvent(field, &move);
    QTest::mouseRelease(field, Qt::LeftButton, {}, QPoint(from.x() - 100, placeOf(QStringLiteral("d")).y()));
    QCoreApplication::processEvents();
    EXPECT_EQ(pane().selection.get().size(), 3U) << "b, c and d";
    EXPECT_FALSE(pane().selection.get().contains(folder / "a"));
}

TEST_F(WindowTest, tabsAndPanesKeepToThemselves)
{
    file("eins/x.txt");
    file("zwei/y.txt");
    open();
    QTest::mouseClick(details()->viewport(), Qt::MiddleButton, {}, placeOf(QStringLiteral("eins")));
    QCoreApplication::processEvents();
    EXPECT_EQ(find<QTabBar>(QStringLiteral("tabs"))->count(), 2);
    key(Qt::Key_PageDown, Qt::ControlModifier);
    EXPECT_EQ(pane().current.get(), folder / "eins") << "in a tab of its own";
    key(Qt::Key_F3);
    ASSERT_TRUE(window->state().dualPane);
    auto *const second = shownOne<QWidget>(QStringLiteral("secondPane"));
    ASSERT_NE(second, nullptr);
    key(Qt::Key_F6);
    EXPECT_EQ(pane().current.get(), folder / "eins") << "the second pane starts where the first one is";
    BrowserModel *const right = &pane();
    pane().navigate(folder / "zwei");
    EXPECT_EQ(right->partner->current.get(), folder / "eins");
    const StoredWindow stored = window->stored();
    ASSERT_EQ(stored.tabs.size(), 2U);
    EXPECT_EQ(stored.tabs[1].path, folder / "eins");
    EXPECT_EQ(stored.tabs[1].second, folder / "zwei");
    key(Qt::Key_F3);
    EXPECT_FALSE(window->state().dualPane);
    EXPECT_TRUE(folderBecomes(folder / "eins"));
    key(Qt::Key_W, Qt::ControlModifier);
    EXPECT_EQ(find<QTabBar>(QStringLiteral("tabs"))->count(), 1);
    EXPECT_TRUE(folderBecomes(folder));
}

TEST_F(WindowTest, windowsComeBackAtTheNextStart)
{
    file("eins/x.txt");
    {
        Windows windows(composition->forWindows());
        windows.start({folder / "eins"});
        windows.take({folder});
        MainWindow *first = nullptr;
        for (QWidget *const one : QApplication::topLevelWidgets())
            first = first ? first : qobject_cast<MainWindow *>(one);
        ASSERT_NE(first, nullptr);
        first->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    const std::vector<StoredWindow> stored = storedWindows(services->settings());
    ASSERT_EQ(stored.size(), 1U);
    ASSERT_EQ(stored[0].tabs.size(), 2U);
    EXPECT_EQ(stored[0].tabs[0].path, folder / "eins");
    EXPECT_EQ(stored[0].tabs[1].path, folder);
    // Unreadable data counts as no windows.
    ASSERT_TRUE(services->settings().update(QStringLiteral("windows"),
                                            [](const auto &) { return UserDefaults::Change{"[{\"tabs\":7}]"}; }));
    EXPECT_TRUE(storedWindows(services->settings()).empty());
}

TEST(FittingFrameTest, aFrameFitsTheScreenThatIsThere)
{
    const QRect room(0, 0, 1280, 800);
    const QRect usual(100, 100, 900, 600);
    EXPECT_EQ(fittingFrame(usual, room), usual);
    for (const QRect &wanted : {QRect(0, 0, 1280, 800), QRect(-3000, 400, 900, 600), QRect(2600, 1500, 900, 600),
                                QRect(0, 0, 5000, 4000), QRect(10, -20, 300, 200)}) {
        const QRect frame = fittingFrame(wanted, room);
        EXPECT_TRUE(room.contains(frame)) << wanted.x();
        EXPECT_GT(frame.y(), 0) << "there is room for a title";
        EXPECT_EQ(frame.size(), wanted.size().boundedTo(frame.size()));
    }
}

TEST_F(WindowTest, followsWhatHappensOutsideAndSaysWhenTheFolderIsGone)
{
    file("a.txt");
    file("b.txt");
    open();
    click(QStringLiteral("b.txt"));
    file("aa.txt");
    ASSERT_TRUE(rowsBecome(names({"a.txt", "aa.txt", "b.txt"})));
    EXPECT_TRUE(pane().selection.get().contains(folder / "b.txt"));
    EXPECT_EQ(details()->currentIndex().data().toString(), QStringLiteral("b.txt"));
    std::filesystem::remove(folder / "b.txt");
    ASSERT_TRUE(rowsBecome(names({"a.txt", "aa.txt"})));
    EXPECT_TRUE(pane().selection.get().empty());
    std::filesystem::remove_all(folder);
    ASSERT_TRUE(waitUntil([this] { return pane().errorMessage.get().has_value(); }));
    EXPECT_NE(shownOne<QWidget>(QStringLiteral("paneMessage")), nullptr);
    // The window stays usable.
    pane().navigate(services->folders().home);
    EXPECT_FALSE(pane().errorMessage.get());
}

TEST_F(WindowTest, tagsFromTheMenu)
{
    const Location tagged = file("a.txt");
    open();
    click(QStringLiteral("a.txt"));
    const QPoint place = placeOf(QStringLiteral("a.txt"));
    QContextMenuEvent wanted(QContextMenuEvent::Mouse, place, details()->viewport()->mapToGlobal(place));
    QCoreApplication::sendEvent(details()->viewport(), &wanted);
    ASSERT_TRUE(waitUntil([this] { return window->findChild<QMenu *>(QStringLiteral("tagMenu")) != nullptr; }));
    auto *const menu = window->findChild<QMenu *>(QStringLiteral("tagMenu"));
    menu->findChild<QAction *>(QStringLiteral("tagRot"))->trigger();
    if (!waitUntil([&] { return FileTags::tags(tagged) == QStringList(QStringLiteral("Rot")); }))
        GTEST_SKIP() << "this file system keeps no tags";
    ASSERT_TRUE(waitUntil([this] {
        return details()->model()->index(0, static_cast<int>(Column::Tags)).data().toString() == QStringLiteral("Rot");
    }));
}

TEST(WindowCommandsTest, noKeyStandsForTwoAndEveryOneCanHappen)
{
    std::set<QString> keys;
    for (const WindowCommand &one : commandTable()) {
        EXPECT_FALSE(one.title.isEmpty());
        EXPECT_TRUE(one.enabled) << one.title.toStdString();
        for (const QKeySequence &key : one.keys)
            EXPECT_TRUE(keys.insert(key.toString()).second)
                << key.toString().toStdString() << " of " << one.title.toStdString();
    }
    EXPECT_EQ(keyText(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_N)), QStringLiteral("Strg+Umschalt+N"));
    EXPECT_EQ(keyText(QKeySequence(Qt::ALT | Qt::Key_Left)), QStringLiteral("Alt+←"));
}

TEST_F(WindowTest, noCommandFiresWhileAFieldUsesItsKey)
{
    file("a.txt");
    file("unter/b.txt");
    open();
    click(QStringLiteral("a.txt"));
    QPlainTextEdit text;
    auto *const search = find<QLineEdit>(QStringLiteral("searchField"));
    key(Qt::Key_L, Qt::ControlModifier);
    const std::vector<QWidget *> fields{search, find<QLineEdit>(QStringLiteral("pathField"))};
    for (QWidget *const field : fields) {
        for (const WindowCommand &one : commandTable()) {
            if (one.editing == WhileEditing::Works)
                continue;
            for (const QKeySequence &keys : one.keys) {
                if (field != search)
                    find<AddressBar>(QStringLiteral("addressBar"))->editPath();
                else
                    field->setFocus();
                ASSERT_TRUE(field->hasFocus());
                QAction *const action = find<QAction>(QStringLiteral("command%1").arg(static_cast<int>(one.id)));
                QSignalSpy fired(action, &QAction::triggered);
                const QKeyCombination combined = keys[0];
                QTest::keyClick(field, combined.key(), combined.keyboardModifiers());
                QCoreApplication::processEvents();
                EXPECT_EQ(fired.count(), 0) << one.title.toStdString() << " by " << keys.toString().toStdString();
                pane().setSearchText({});
            }
        }
    }
    EXPECT_TRUE(has("a.txt"));
    EXPECT_TRUE(isEditable(search));
    EXPECT_FALSE(isEditable(details()));
}

} // namespace
