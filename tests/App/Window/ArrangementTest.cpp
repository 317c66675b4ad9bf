#include "App/Window/WindowWorld.h"
#include "ContentView/Screens/ItemRows.h"

#include <QHeaderView>
#include <QMenu>
#include <QScrollBar>

using namespace brellin;
using brellin::test::waitUntil;
using brellin::test::WindowWorld;

namespace {

/// Sorting and grouping by clicks on the header and keys in menus.
class ArrangementTest : public WindowWorld {
protected:
    void TearDown() override
    {
        WindowWorld::TearDown();
        EXPECT_TRUE(services->settings().setValue(QStringLiteral("lastViewMode"), QVariant()));
    }
    QHeaderView *header() const { return shownOne<QHeaderView>(QStringLiteral("detailsHeader")); }
    void clickHeader(int section, Qt::KeyboardModifiers keys = {}) const
    {
        const QPoint place(header()->sectionViewportPosition(section) + 20, header()->height() / 2);
        QTest::mouseClick(header()->viewport(), Qt::LeftButton, keys, place);
        QCoreApplication::processEvents();
    }
    QAbstractItemView *icons() const { return shownOne<QAbstractItemView>(QStringLiteral("iconsView")); }
    /// Opens the menu by key and chooses by the titles' first letters.
    void arrangeByKeys(const QString &titles) const
    {
        key(Qt::Key_S, Qt::ControlModifier | Qt::AltModifier);
        QMenu *menu = shownOne<QMenu>(QStringLiteral("arrangementMenu"));
        ASSERT_NE(menu, nullptr);
        for (const QString &title : titles.split(QLatin1Char('>'))) {
            for (int step = 0; step < 20 && menu->activeAction()->text() != title; ++step)
                QTest::keyClick(menu, Qt::Key_Down);
            ASSERT_EQ(menu->activeAction()->text(), title);
            QMenu *const sub = menu->activeAction()->menu();
            QTest::keyClick(menu, sub ? Qt::Key_Right : Qt::Key_Return);
            menu = sub;
        }
        QCoreApplication::processEvents();
    }
    QStringList selected() const
    {
        QStringList names;
        for (const FileItem &item : pane().selectedItems())
            names << item.name();
        names.sort();
        return names;
    }
    /// Clicks the middle of every row.
    void clickRows(QAbstractItemView &list) const
    {
        for (int row = 0; row < list.model()->rowCount(); ++row) {
            const QModelIndex index = list.model()->index(row, 0);
            QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, list.visualRect(index).center());
            QCoreApplication::processEvents();
            EXPECT_EQ(selected(), QStringList(index.data().toString()));
        }
    }
    static QPoint headingAbove(const QAbstractItemView &view, int row)
    {
        return view.visualRect(view.model()->index(row, 0)).topLeft() + QPoint(40, -10);
    }
};

const QStringList bySize{QStringLiteral("groß.bin"), QStringLiteral("mittel.bin"), QStringLiteral("a.txt"),
                         QStringLiteral("b.txt")};

TEST_F(ArrangementTest, theFirstClickShowsTheLargestAndShiftChoosesTheSecondColumn)
{
    file("a.txt", "1");
    file("b.txt", "22");
    file("c.bin", "22");
    file("d.bin", "1");
    open();
    const auto named = [](const char *names) { return QString::fromLatin1(names).split(QLatin1Char(' ')); };
    clickHeader(1);
    EXPECT_EQ(rows(), named("b.txt c.bin a.txt d.bin"));
    clickHeader(1);
    EXPECT_EQ(rows(), named("a.txt d.bin b.txt c.bin"));
    clickHeader(3);
    clickHeader(1, Qt::ShiftModifier);
    EXPECT_EQ(rows(), named("c.bin d.bin b.txt a.txt")) << "by kind, then the largest";
    clickHeader(1, Qt::ShiftModifier);
    EXPECT_EQ(rows(), named("d.bin c.bin a.txt b.txt"));
    arrangeByKeys(QStringLiteral("Sortieren nach>Geändert"));
    EXPECT_EQ(pane().sortOrder.get(), orderBy(SortKey::Modified, SortDirection::Descending));
    arrangeByKeys(QStringLiteral("Sortieren nach>Umgekehrte Reihenfolge"));
    EXPECT_EQ(pane().sortOrder.get(), orderBy(SortKey::Modified, SortDirection::Ascending));
}

TEST_F(ArrangementTest, groupsByKeyAndStepsOverHeadings)
{
    file("groß.bin", std::string(2'000'000, 'x'));
    file("mittel.bin", std::string(1'000'000, 'x'));
    file("a.txt", "1");
    file("b.txt", "2");
    file("ziel/z.txt");
    open();
    arrangeByKeys(QStringLiteral("Gruppieren nach>Größe"));
    clickHeader(1);
    ASSERT_EQ(rows(), QStringList(QStringLiteral("ziel")) + bySize);
    const auto top = [this](int row) { return details()->visualRect(details()->model()->index(row, 0)).top(); };
    EXPECT_GT(top(1) - top(0), details()->visualRect(details()->model()->index(0, 0)).height()) << "a heading between";
    for (const QString &below : {QStringLiteral("mittel.bin"), QStringLiteral("a.txt")}) {
        SCOPED_TRACE(details() ? "list" : "icons");
        QAbstractItemView *const list = details() ? details() : icons();
        list->setFocus();
        key(Qt::Key_Home);
        key(Qt::Key_Down);
        EXPECT_EQ(selected(), bySize.mid(0, 1)) << "over the heading";
        key(Qt::Key_Down);
        EXPECT_EQ(selected(), QStringList(below));
        key(Qt::Key_End, Qt::ShiftModifier);
        EXPECT_EQ(selected().size(), details() ? 3 : 2);
        clickRows(*list);
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, headingAbove(*list, 3));
        QCoreApplication::processEvents();
        EXPECT_EQ(selected(), QStringList()) << "a heading is no row";
        key(Qt::Key_A, Qt::ControlModifier);
        EXPECT_EQ(selected().size(), 5);
        pane().setViewMode(ViewMode::Icons);
        QCoreApplication::processEvents();
    }
}

TEST_F(ArrangementTest, opensRenamesAndDrawsABandBelowHeadings)
{
    file("tief/c.txt");
    file("tief/klein.txt", "1");
    open();
    arrangeByKeys(QStringLiteral("Gruppieren nach>Art"));
    doubleClick(QStringLiteral("tief"));
    ASSERT_TRUE(folderBecomes(folder / "tief")) << "a click below the place it has without a heading";
    ASSERT_TRUE(waitUntil([this] { return rows().size() == 2; }));
    EXPECT_EQ(pane().grouping.get(), GroupKey::Kind);
    click(QStringLiteral("klein.txt"));
    key(Qt::Key_F2);
    const QRect row = details()->visualRect(details()->model()->index(1, 0));
    const QWidget *const editor = QApplication::focusWidget();
    EXPECT_TRUE(row.contains(editor->geometry().center()));
    key(Qt::Key_Escape);
    const QRect first = details()->visualRect(details()->model()->index(0, 0));
    const QPoint start(first.right() - 20, first.top() - 20);
    QTest::mousePress(details()->viewport(), Qt::LeftButton, {}, start);
    QMouseEvent move(QEvent::MouseMove, QPointF(start.x() - 60, first.center().y()),
                     details()->viewport()->mapToGlobal(QPointF(start.x() - 60, first.center().y())), Qt::NoButton,
                     Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(details()->viewport(), &move);
    QTest::mouseRelease(details()->viewport(), Qt::LeftButton, {}, move.position().toPoint());
    QCoreApplication::processEvents();
    EXPECT_EQ(selected(), QStringList(QStringLiteral("c.txt"))) << "from the heading into the first row";
}

TEST_F(ArrangementTest, choosesColumnsByKeysInBothPanes)
{
    file("a.txt", "1");
    open();
    pane().navigate(folder);
    window->run(CommandId::DualPane);
    key(Qt::Key_F6);
    arrangeByKeys(QStringLiteral("Rechte"));
    const int rights = static_cast<int>(Column::Rights);
    int shown = 0;
    for (const QHeaderView *const one : window->findChildren<QHeaderView *>(QStringLiteral("detailsHeader")))
        shown += one->isSectionHidden(rights) ? 0 : 1;
    EXPECT_EQ(shown, 2);
    key(Qt::Key_F3);
    EXPECT_TRUE(waitUntil(
        [&] { return details()->model()->index(0, rights).data().toString().startsWith(QStringLiteral("-rw-")); }));
    EXPECT_TRUE(services->settings().setValue(QStringLiteral("detailsShown"), QVariant()));
    EXPECT_TRUE(services->settings().setValue(QStringLiteral("dualPane"), QVariant()));
}

TEST_F(ArrangementTest, scrollsToTheEndOfManyGroups)
{
    for (int number = 0; number < 40; ++number)
        file(std::to_string(number) + ".e" + std::to_string(number));
    for (int number = 100; number < 140; ++number)
        file(std::to_string(number) + ".txt", std::string(static_cast<std::size_t>(number % 2), 'x'));
    open();
    ASSERT_TRUE(waitUntil([this] { return rows().size() == 80; }));
    arrangeByKeys(QStringLiteral("Gruppieren nach>Größe"));
    for (int turn = 0; turn < 2; ++turn) {
        QAbstractItemView *const list = details() ? details() : icons();
        list->setFocus();
        key(Qt::Key_Home);
        key(Qt::Key_End);
        const QRect last = list->visualRect(list->currentIndex());
        EXPECT_EQ(list->currentIndex().row(), 79);
        EXPECT_TRUE(list->viewport()->rect().contains(last)) << turn;
        EXPECT_EQ(list->verticalScrollBar()->value(), list->verticalScrollBar()->maximum());
        EXPECT_EQ(last.bottom() + 1, list->viewport()->height());
        window->resize(1200, 600);
        QCoreApplication::processEvents();
        EXPECT_EQ(list->verticalScrollBar()->value(), list->verticalScrollBar()->maximum() - 100) << "stays in place";
        window->resize(1200, 700);
        pane().setViewMode(ViewMode::Icons);
        QCoreApplication::processEvents();
    }
}

} // namespace
