#include "App/Window/WindowWorld.h"

#include "App/Window/EditableFocus.h"
#include "App/Window/WindowCommands.h"
#include "ContentView/Screens/AddressBar.h"

#include <QAction>
#include <QComboBox>
#include <QDateEdit>
#include <QPlainTextEdit>
#include <QSignalSpy>
#include <QSpinBox>

using namespace brellin;
using brellin::test::waitUntil;
using brellin::test::WindowWorld;

namespace {

/// Types every shortcut into a field and checks who handles it.
class ShortcutTest : public WindowWorld {
protected:
    ShortcutTest()
    {
        file("a.txt", "eins");
        file("unter/b.txt");
    }

    QAction *actionOf(CommandId id) const
    {
        return find<QAction>(QStringLiteral("command%1").arg(static_cast<int>(id)));
    }
    /// `field` returns the focused field; called again for each key.
    void typeAllInto(const char *kind, const std::function<QWidget *()> &field)
    {
        for (const WindowCommand &one : commandTable()) {
            if (one.editing == WhileEditing::Works)
                continue;
            for (const QKeySequence &keys : one.keys) {
                QWidget *const typedInto = field();
                ASSERT_TRUE(typedInto && typedInto->hasFocus()) << kind;
                ASSERT_TRUE(isEditable(typedInto)) << kind;
                QSignalSpy fired(actionOf(one.id), &QAction::triggered);
                QTest::keyClick(typedInto, keys[0].key(), keys[0].keyboardModifiers());
                QCoreApplication::processEvents();
                EXPECT_EQ(fired.count(), 0)
                    << kind << ": " << one.title.toStdString() << " by " << keys.toString().toStdString();
            }
        }
        EXPECT_TRUE(has("a.txt")) << kind;
        EXPECT_TRUE(has("unter/b.txt")) << kind;
        EXPECT_FALSE(has("Neuer Ordner")) << kind;
        EXPECT_FALSE(has("a (2).txt")) << kind;
    }
    template <class Field>
    void typeAllIntoA(const char *kind)
    {
        Field field(window);
        field.setGeometry(300, 300, 200, 60);
        field.show();
        if constexpr (std::is_same_v<Field, QComboBox>)
            field.setEditable(true);
        typeAllInto(kind, [&field]() -> QWidget * {
            field.setFocus();
            return QApplication::focusWidget();
        });
    }
};

} // namespace

TEST_F(ShortcutTest, noFieldOfTheWindowGivesItsKeysAway)
{
    open();
    click(QStringLiteral("a.txt"));
    typeAllInto("search", [this]() -> QWidget * {
        pane().setSearchText({});
        auto *const field = find<QLineEdit>(QStringLiteral("searchField"));
        field->setFocus();
        return field;
    });
    pane().setSearchText({});
    typeAllInto("address", [this]() -> QWidget * {
        find<AddressBar>(QStringLiteral("addressBar"))->editPath();
        return QApplication::focusWidget();
    });
    ASSERT_TRUE(rowsBecome({QStringLiteral("unter"), QStringLiteral("a.txt")}));
    typeAllInto("name in place", [this]() -> QWidget * {
        const auto editor = [this] { return shownOne<QLineEdit>(QStringLiteral("nameEditor")); };
        if (!editor()) { // closed by the previous key
            click(QStringLiteral("a.txt"));
            window->run(CommandId::Rename);
            EXPECT_TRUE(waitUntil([&] { return editor() && editor()->hasFocus(); }));
        }
        if (editor())
            editor()->setText(QStringLiteral("a.txt"));
        return editor();
    });
}

TEST_F(ShortcutTest, noOtherKindOfFieldDoesEither)
{
    open();
    click(QStringLiteral("a.txt"));
    typeAllIntoA<QLineEdit>("line");
    typeAllIntoA<QPlainTextEdit>("plain text");
    typeAllIntoA<QTextEdit>("text");
    typeAllIntoA<QSpinBox>("number");
    typeAllIntoA<QDateEdit>("date");
    typeAllIntoA<QComboBox>("choice");
}

TEST_F(ShortcutTest, everyCommandRestsWhereItCannotApply)
{
    open();
    ASSERT_TRUE(rowsBecome({QStringLiteral("unter"), QStringLiteral("a.txt")}));
    pane().setSelection(Selection());
    const auto enabled = [this](CommandId id) { return actionOf(id)->isEnabled(); };
    using enum CommandId;
    for (const CommandId id : {Open, OpenInNewTab, Rename, MoveToTrash, DeleteForGood, Cut, Copy, Duplicate, CopyTo,
                               MoveTo, CopyPath, Compress, Unpack, MakeAlias})
        EXPECT_FALSE(enabled(id)) << windowCommand(id).title.toStdString() << " with nothing selected";
    click(QStringLiteral("a.txt"));
    for (const CommandId id :
         {Open, Rename, MoveToTrash, Cut, Copy, Duplicate, CopyTo, MoveTo, CopyPath, Compress, MakeAlias})
        EXPECT_TRUE(enabled(id)) << windowCommand(id).title.toStdString();
    EXPECT_FALSE(enabled(Unpack));
    EXPECT_FALSE(enabled(DeleteForGood)) << "the volume has a Trash";
    EXPECT_FALSE(enabled(OpenInNewTab));
    // A page shown instead of the folder has no entries.
    window->run(CommandId::Agent);
    ASSERT_TRUE(waitUntil([&] { return !enabled(MoveToTrash); }));
    for (const CommandId id : {NewFolder, MoveToTrash, Cut, Copy, Paste, Compress, Rename, Up})
        EXPECT_FALSE(enabled(id)) << windowCommand(id).title.toStdString() << " on a page";
}
