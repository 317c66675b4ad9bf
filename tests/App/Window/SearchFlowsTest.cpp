#include "App/Window/WindowWorld.h"

#include <QComboBox>

using namespace brellin;
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
    QWidget *bar() const { return shownOne<QWidget>(QStringLiteral("searchBar")); }
    QString choice(const char *name) const { return find<QComboBox>(QString::fromLatin1(name))->currentText(); }
};

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
}

} // namespace
