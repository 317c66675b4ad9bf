#include "App/Window/WindowWorld.h"

#include "App/Window/ShortcutSheet.h"
#include "App/Window/Shortcuts.h"
#include "Look/Labels.h"

#include <QMenu>
#include <QTabBar>
#include <QToolButton>
#include <QTreeWidget>

using namespace brellin;
using brellin::test::waitUntil;
using brellin::test::WindowWorld;

namespace {

class ShortcutSheetTest : public WindowWorld {
protected:
    ~ShortcutSheetTest() override
    {
        EXPECT_TRUE(services->settings().update(QStringLiteral("shortcuts"),
                                                [](const auto &) { return UserDefaults::Change{"[]"}; }));
    }
    void openSheet(const QString &search)
    {
        key(Qt::Key_F1);
        ASSERT_NE(shownOne<ShortcutSheet>(QStringLiteral("shortcutSheet")), nullptr);
        type(search);
    }
    QTreeWidget *table() const { return shownOne<QTreeWidget>(QStringLiteral("shortcutTable")); }
    QString refusal() const { return shownOne<TextLabel>(QStringLiteral("keyRefusal"))->text(); }
    int tabs() const { return find<QTabBar>(QStringLiteral("tabs"))->count(); }
    QString keysShown() const { return table()->currentItem()->text(2); }
};

TEST_F(ShortcutSheetTest, findsCommandsAndTheirKeys)
{
    file("a.txt");
    open();
    ASSERT_NO_FATAL_FAILURE(openSheet({}));
    EXPECT_EQ(table()->topLevelItemCount(), static_cast<int>(commandTable().size()));
    type(QStringLiteral("strg+umschalt+n"));
    ASSERT_EQ(table()->topLevelItemCount(), 1);
    EXPECT_EQ(table()->topLevelItem(0)->text(0), QStringLiteral("Neuer Ordner"));
    find<QLineEdit>(QStringLiteral("shortcutSearch"))->clear();
    type(QStringLiteral("gibt es nicht"));
    EXPECT_EQ(table()->topLevelItemCount(), 0);
    key(Qt::Key_Return);
    key(Qt::Key_Escape);
    EXPECT_TRUE(details()->hasFocus());
}

TEST_F(ShortcutSheetTest, changesKeysButGivesNoneTwice)
{
    file("a.txt");
    open();
    ASSERT_NO_FATAL_FAILURE(openSheet(QStringLiteral("neuer tab")));
    key(Qt::Key_Return);
    ASSERT_TRUE(find<KeyField>(QStringLiteral("keyField"))->hasFocus());
    key(Qt::Key_N, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(refusal(), QStringLiteral("„Strg+Umschalt+N“ gehört schon zu „Neuer Ordner“."));
    key(Qt::Key_A);
    EXPECT_EQ(refusal(), QStringLiteral("„A“ wird zum Tippen und Bewegen gebraucht."));
    key(Qt::Key_Tab);
    EXPECT_FALSE(refusal().isEmpty());
    EXPECT_EQ(keysShown(), QStringLiteral("Strg+T"));
    key(Qt::Key_F8);
    EXPECT_EQ(refusal(), QString());
    EXPECT_EQ(keysShown(), QStringLiteral("F8"));
    key(Qt::Key_Escape);
    ASSERT_TRUE(details()->hasFocus());
    key(Qt::Key_T, Qt::ControlModifier);
    EXPECT_EQ(tabs(), 1);
    key(Qt::Key_F8);
    EXPECT_EQ(tabs(), 2);
    EXPECT_EQ(find<QToolButton>(QStringLiteral("newTabButton"))->toolTip(), QStringLiteral("Neuer Tab (F8)"));
    // At the next start, and while a field has the focus.
    EXPECT_EQ(Shortcuts(services->settings()).textOf(CommandId::NewTab), QStringLiteral("F8"));

    ASSERT_NO_FATAL_FAILURE(openSheet(QStringLiteral("alles ausw")));
    key(Qt::Key_Return);
    key(Qt::Key_T, Qt::ControlModifier); // free by now
    EXPECT_EQ(keysShown(), QStringLiteral("Strg+T"));
    key(Qt::Key_Escape);
    ASSERT_NO_FATAL_FAILURE(openSheet(QStringLiteral("neuer tab")));
    auto *const reset = shownOne<QAbstractButton>(QStringLiteral("resetKey"));
    QTest::mouseClick(reset, Qt::LeftButton);
    EXPECT_EQ(refusal(), QStringLiteral("„Strg+T“ gehört schon zu „Alles auswählen“."));
    QTest::mouseClick(shownOne<QAbstractButton>(QStringLiteral("removeKey")), Qt::LeftButton);
    EXPECT_EQ(keysShown(), QString());
    QTest::mouseClick(shownOne<QAbstractButton>(QStringLiteral("resetKeys")), Qt::LeftButton);
    EXPECT_EQ(keysShown(), QStringLiteral("Strg+T"));
    EXPECT_FALSE(reset->isEnabled());
    key(Qt::Key_Escape);
    key(Qt::Key_T, Qt::ControlModifier);
    EXPECT_EQ(tabs(), 3);
}

TEST_F(ShortcutSheetTest, aFieldKeepsChosenKeysToo)
{
    file("a.txt");
    open();
    Shortcuts &shortcuts = composition->forWindows().shortcuts;
    ASSERT_TRUE(shortcuts.setKey(CommandId::MoveToTrash, QKeySequence(Qt::CTRL | Qt::Key_E)));
    click(QStringLiteral("a.txt"));
    find<QLineEdit>(QStringLiteral("searchField"))->setFocus();
    key(Qt::Key_E, Qt::ControlModifier);
    EXPECT_TRUE(has("a.txt"));
    details()->setFocus();
    key(Qt::Key_E, Qt::ControlModifier);
    EXPECT_TRUE(waitUntil([this] { return !has("a.txt"); }));
}

TEST_F(ShortcutSheetTest, takesNothingWrongFromAnEditedFile)
{
    ASSERT_TRUE(services->settings().update(QStringLiteral("shortcuts"), [](const auto &) {
        return UserDefaults::Change{R"([{"command":"Home","keys":["Ctrl+T","A"]},{"command":"Reload","keys":["Ctrl+T"]},
                                        {"command":"Nirgends","keys":["F8"]},{"command":"Up","keys":["Quatsch+"]}])"};
    }));
    const Shortcuts shortcuts(services->settings());
    EXPECT_EQ(shortcuts.keysOf(CommandId::Home), Shortcuts::Keys{QKeySequence(Qt::CTRL | Qt::Key_T)});
    EXPECT_TRUE(shortcuts.keysOf(CommandId::Reload).empty());
    EXPECT_TRUE(shortcuts.keysOf(CommandId::NewTab).empty());
    EXPECT_TRUE(shortcuts.keysOf(CommandId::Up).empty());
    EXPECT_EQ(shortcuts.textOf(CommandId::NewFolder), QStringLiteral("Strg+Umschalt+N"));
}

TEST_F(ShortcutSheetTest, f10OpensTheMenuForTheKeyboard)
{
    file("a.txt");
    open();
    key(Qt::Key_F10);
    auto *const menu = shownOne<QMenu>(QStringLiteral("commandsMenu"));
    ASSERT_NE(menu, nullptr);
    EXPECT_EQ(menu->activeAction(), menu->actions().constFirst());
    menu->close();
}

} // namespace
