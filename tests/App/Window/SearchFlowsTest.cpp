#include "App/Window/WindowWorld.h"

#include "Support/SmallPdf.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHeaderView>
#include <QMenu>

using namespace brellin;
using brellin::test::smallPdf;
using brellin::test::waitUntil;
using brellin::test::WindowWorld;

namespace {

/// A search as its user works with it: by clicks and keys alone.
class SearchFlowsTest : public WindowWorld {
protected:
    void search(const QString &text, int keyToField = Qt::Key_F, Qt::KeyboardModifiers keys = Qt::ControlModifier) const
    {
        key(keyToField, keys);
        type(text);
        key(Qt::Key_Return);
        ASSERT_TRUE(waitUntil([this] { return pane().searching.get() && !pane().searchRunning.get(); }));
    }
    void chooseInMenuOf(const QString &name, const QString &title) const
    {
        click(name);
        const QPoint place = placeOf(name);
        QContextMenuEvent wanted(QContextMenuEvent::Mouse, place, details()->viewport()->mapToGlobal(place));
        QCoreApplication::sendEvent(details()->viewport(), &wanted);
        auto *const menu = shownOne<QMenu>(QStringLiteral("contextMenu"));
        ASSERT_NE(menu, nullptr);
        for (QAction *const entry : menu->actions())
            if (entry->text().startsWith(title))
                QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(entry).center());
        window->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    }
    QWidget *bar() const { return shownOne<QWidget>(QStringLiteral("searchBar")); }
    QString choice(const char *name) const { return find<QComboBox>(QString::fromLatin1(name))->currentText(); }
    QString passage(int row) const
    {
        return details()->model()->index(row, static_cast<int>(Column::Passage)).data().toString();
    }
    bool passagesShown() const
    {
        return !find<QHeaderView>(QStringLiteral("detailsHeader"))->isSectionHidden(static_cast<int>(Column::Passage));
    }
};

TEST_F(SearchFlowsTest, findsAPdfByAWordInItAndShowsItInItsFolder)
{
    file("unter/brief.pdf", smallPdf("Die Kaution f\xFCr die Wohnung"));
    file("unter/anderes.pdf", smallPdf("Die Miete"));
    file("notiz.txt", "Zeile eins\nKAUTION zurück?\n");
    file("kaution.jpg");
    open();
    ASSERT_EQ(bar(), nullptr);
    search(QStringLiteral("kaution"), Qt::Key_F, Qt::ControlModifier | Qt::ShiftModifier);
    ASSERT_TRUE(rowsBecome({QStringLiteral("brief.pdf"), QStringLiteral("kaution.jpg"), QStringLiteral("notiz.txt")}));
    EXPECT_TRUE(passagesShown());
    EXPECT_EQ(passage(0), QStringLiteral("Seite 1: Die Kaution für die Wohnung"));
    EXPECT_EQ(passage(1), QString()) << "found by its name";
    EXPECT_EQ(passage(2), QStringLiteral("Zeile 2: KAUTION zurück?"));
    chooseInMenuOf(QStringLiteral("brief.pdf"), QStringLiteral("Im Ordner zeigen"));
    ASSERT_TRUE(folderBecomes(folder / "unter"));
    EXPECT_TRUE(waitUntil([this] { return pane().onlySelected() && pane().onlySelected()->nameBytes == "brief.pdf"; }));
    EXPECT_FALSE(passagesShown());
    EXPECT_EQ(bar(), nullptr);

    // By the mouse: first by name only, since the switch is off at first.
    key(Qt::Key_Left, Qt::AltModifier);
    ASSERT_TRUE(waitUntil([this] { return pane().searching.get() && passage(0).startsWith(u"Seite 1"); }))
        << "back to the results as they were";
    key(Qt::Key_Escape);
    ASSERT_TRUE(folderBecomes(folder));
    search(QStringLiteral("kaution"));
    ASSERT_TRUE(rowsBecome({QStringLiteral("kaution.jpg")}));
    EXPECT_FALSE(passagesShown());
    QTest::mouseClick(shownOne<QCheckBox>(QStringLiteral("searchContents")), Qt::LeftButton);
    EXPECT_TRUE(rowsBecome({QStringLiteral("brief.pdf"), QStringLiteral("kaution.jpg"), QStringLiteral("notiz.txt")}));
}

TEST_F(SearchFlowsTest, filtersByKeysAndEscClearsInSteps)
{
    file("brief.pdf");
    file("brief.txt", std::string(2'000'000, 'x'));
    file("briefe/alt.zip");
    open();
    search(QStringLiteral("brief"));
    ASSERT_TRUE(rowsBecome({QStringLiteral("briefe"), QStringLiteral("brief.pdf"), QStringLiteral("brief.txt")}));
    ASSERT_NE(bar(), nullptr);
    key(Qt::Key_Tab);
    for (int step = 0; step < 5; ++step)
        key(Qt::Key_Down);
    EXPECT_EQ(choice("searchKind"), QStringLiteral("PDF"));
    EXPECT_TRUE(rowsBecome({QStringLiteral("brief.pdf")}));
    key(Qt::Key_Tab);
    key(Qt::Key_Tab);
    key(Qt::Key_Down);
    key(Qt::Key_Down);
    EXPECT_EQ(choice("searchSize"), QStringLiteral("Ab 1 MB"));
    EXPECT_TRUE(rows().isEmpty());
    EXPECT_TRUE(shownOne<QWidget>(QStringLiteral("paneMessage")));
    key(Qt::Key_Escape);
    EXPECT_TRUE(rowsBecome({QStringLiteral("briefe"), QStringLiteral("brief.pdf"), QStringLiteral("brief.txt")}));
    EXPECT_EQ(choice("searchKind"), QStringLiteral("Alle Arten"));
    EXPECT_TRUE(bar());
    key(Qt::Key_Down);
    EXPECT_TRUE(rowsBecome({QStringLiteral("brief.pdf")})) << "the filter by size still has the focus";
    key(Qt::Key_F, Qt::ControlModifier);
    key(Qt::Key_Escape);
    EXPECT_EQ(rows().size(), 3) << "from the field, first the filters as well";
    EXPECT_TRUE(pane().searching.get());
    key(Qt::Key_Escape);
    EXPECT_TRUE(rowsBecome({QStringLiteral("briefe"), QStringLiteral("brief.pdf"), QStringLiteral("brief.txt")}));
    EXPECT_FALSE(pane().searching.get());
    EXPECT_EQ(bar(), nullptr);
    EXPECT_TRUE(details()->hasFocus());
    // The switch without a search goes as well.
    key(Qt::Key_F, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_TRUE(bar());
    EXPECT_EQ(find<QLineEdit>(QStringLiteral("searchField"))->placeholderText(),
              QStringLiteral("Inhalte in „d“ suchen"));
    key(Qt::Key_Escape);
    EXPECT_EQ(bar(), nullptr);
}

} // namespace
