#include "App/Window/WindowWorld.h"

#include "ContentView/Screens/AddressBar.h"
#include "Look/Labels.h"

#include <QCompleter>
#include <QMenu>

using namespace brellin;
using brellin::test::waitUntil;
using brellin::test::WindowWorld;

namespace {

/// What happens to a name or path that is refused, and to those around it.
class NamesAndPathsTest : public WindowWorld {
protected:
    QLineEdit *editor() const { return shownOne<QLineEdit>(QStringLiteral("nameEditor")); }
    QLineEdit *path() const { return find<QLineEdit>(QStringLiteral("pathField")); }
    /// The reason beside a field; empty if none is shown.
    QString reason() const
    {
        const auto *const text = shownOne<TextLabel>(QStringLiteral("fieldReasonText"));
        return text ? text->text() : QString();
    }
    bool bannerShown() const { return shownOne<QWidget>(QStringLiteral("paneBanner")) != nullptr; }
    /// Opens the editor and waits until the name is selected without its extension.
    void beginRename(const QString &name)
    {
        click(name);
        key(Qt::Key_F2);
        ASSERT_TRUE(editorBecomes(name));
    }
    bool editorBecomes(const QString &name) const
    {
        const QString stem = name.section(QLatin1Char('.'), 0, 0);
        return waitUntil([&] {
            return editor() && editor()->text() == name && editor()->hasFocus() && editor()->selectedText() == stem;
        });
    }
    void typePath(const QString &text)
    {
        key(Qt::Key_L, Qt::ControlModifier);
        path()->setText(text);
        key(Qt::Key_Return);
    }
};

QString qs(const char *text)
{
    return QString::fromUtf8(text);
}

TEST_F(NamesAndPathsTest, aRefusedNameStaysInItsFieldWithTheReason)
{
    file("a.txt");
    file("b.txt");
    open();
    ASSERT_NO_FATAL_FAILURE(beginRename(qs("a.txt")));
    type(qs("x/y"));
    key(Qt::Key_Return);
    ASSERT_TRUE(waitUntil([this] { return !reason().isEmpty(); }));
    EXPECT_EQ(reason(), qs("Der Name darf keine Zeichen „/“ oder „:“ enthalten."));
    ASSERT_TRUE(editor() && editor()->hasFocus());
    EXPECT_EQ(editor()->text(), qs("x/y.txt"));
    EXPECT_TRUE(editor()->property("refused").toBool());
    EXPECT_FALSE(bannerShown());
    editor()->selectAll();
    type(qs("b.txt"));
    EXPECT_EQ(reason(), QString()) << "of another name";
    key(Qt::Key_Return);
    ASSERT_TRUE(waitUntil([this] { return !reason().isEmpty(); }));
    EXPECT_EQ(reason(), qs("Es gibt schon etwas mit diesem Namen."));
    editor()->selectAll();
    type(qs("c.txt"));
    key(Qt::Key_Return);
    ASSERT_TRUE(rowsBecome({qs("b.txt"), qs("c.txt")}));
    EXPECT_EQ(editor(), nullptr);
    EXPECT_EQ(reason(), QString());
    EXPECT_FALSE(bannerShown());
    EXPECT_TRUE(details()->hasFocus());

    ASSERT_NO_FATAL_FAILURE(beginRename(qs("c.txt")));
    type(qs("x:y"));
    key(Qt::Key_Return);
    ASSERT_TRUE(waitUntil([this] { return !reason().isEmpty(); }));
    key(Qt::Key_Escape);
    ASSERT_TRUE(waitUntil([this] { return !pane().renameTarget.get(); }));
    EXPECT_FALSE(pane().errorMessage.get());
    EXPECT_TRUE(has("c.txt"));
}

TEST_F(NamesAndPathsTest, leavingARefusedNameOnceSaysSoTwiceGivesItUp)
{
    file("a.txt");
    file("b.txt");
    open();
    ASSERT_NO_FATAL_FAILURE(beginRename(qs("a.txt")));
    type(qs("x/y"));
    click(qs("b.txt"));
    ASSERT_TRUE(waitUntil([this] { return editor() && !reason().isEmpty(); }));
    EXPECT_EQ(editor()->text(), qs("x/y.txt"));
    click(qs("b.txt"));
    ASSERT_TRUE(waitUntil([this] { return !editor() && !pane().renameTarget.get(); }));
    EXPECT_EQ(reason(), QString());
    EXPECT_TRUE(has("a.txt"));
    // A name that is accepted needs no Return.
    ASSERT_NO_FATAL_FAILURE(beginRename(qs("a.txt")));
    type(qs("neu"));
    click(qs("b.txt"));
    EXPECT_TRUE(rowsBecome({qs("b.txt"), qs("neu.txt")}));
}

TEST_F(NamesAndPathsTest, tabRenamesTheNextEntry)
{
    for (const char *const name : {"a.txt", "b.txt", "c.txt"})
        file(name);
    open();
    ASSERT_NO_FATAL_FAILURE(beginRename(qs("a.txt")));
    type(qs("z")); // is the last one from now on
    key(Qt::Key_Tab);
    ASSERT_TRUE(editorBecomes(qs("b.txt")));
    key(Qt::Key_Tab); // unchanged
    ASSERT_TRUE(editorBecomes(qs("c.txt")));
    type(qs("x"));
    key(Qt::Key_Tab, Qt::ShiftModifier);
    ASSERT_TRUE(editorBecomes(qs("b.txt")));
    type(qs("z"));
    key(Qt::Key_Tab);
    ASSERT_TRUE(waitUntil([this] { return !reason().isEmpty(); })) << "refused, so it stays";
    EXPECT_EQ(editor()->text(), qs("z.txt"));
    editor()->setText(qs("y.txt"));
    key(Qt::Key_Tab);
    ASSERT_TRUE(editorBecomes(qs("x.txt")));
    key(Qt::Key_Return);
    EXPECT_TRUE(rowsBecome({qs("x.txt"), qs("y.txt"), qs("z.txt")}));
    EXPECT_EQ(editor(), nullptr);
}

TEST_F(NamesAndPathsTest, aRefusedPathStaysInItsField)
{
    const Location letter = file("unter/brief.txt");
    std::filesystem::create_directory(folder / "am Ende ");
    open();
    typePath(qs("unter/nichts"));
    ASSERT_TRUE(waitUntil([this] { return !reason().isEmpty(); }));
    EXPECT_EQ(reason(), shown(folder / "unter/nichts").prepend(qs("„")) + qs("“ wurde nicht gefunden."));
    EXPECT_EQ(pane().errorMessage.get(), reason());
    EXPECT_EQ(path()->text(), qs("unter/nichts"));
    EXPECT_TRUE(path()->hasFocus());
    EXPECT_FALSE(bannerShown());
    EXPECT_EQ(shownOne<QAbstractButton>(QStringLiteral("fieldReasonAction")), nullptr);
    key(Qt::Key_Escape);
    EXPECT_EQ(reason(), QString());
    EXPECT_FALSE(pane().errorMessage.get());
    EXPECT_FALSE(bannerShown());

    typePath(qs("unter/brief.txt"));
    ASSERT_TRUE(waitUntil([this] { return !reason().isEmpty(); }));
    EXPECT_TRUE(reason().endsWith(qs("brief.txt“ wurde nicht gefunden.")));
    auto *const show = shownOne<QAbstractButton>(QStringLiteral("fieldReasonAction"));
    ASSERT_NE(show, nullptr);
    EXPECT_EQ(show->text(), qs("Im Ordner zeigen"));
    QTest::mouseClick(show, Qt::LeftButton);
    ASSERT_TRUE(folderBecomes(folder / "unter"));
    EXPECT_TRUE(waitUntil([&] { return pane().selection.get() == Selection({letter}); }));
    EXPECT_EQ(reason(), QString());

    typePath(qs("../am Ende "));
    EXPECT_TRUE(waitUntil([this] { return pane().current.get() == folder / "am Ende "; })) << "not trimmed";
}

TEST_F(NamesAndPathsTest, aPathRefusedLateTakesNoFocusAndWaitsForItsPane)
{
    file("a.txt");
    open();
    const auto refused = [](const BrowserModel &of) {
        return waitUntil([&] { return of.refusedPath.get().has_value(); });
    };
    find<QLineEdit>(QStringLiteral("searchField"))->setFocus();
    pane().navigateToTyped(qs("gibt es nicht"));
    ASSERT_TRUE(refused(pane()));
    EXPECT_TRUE(find<QLineEdit>(QStringLiteral("searchField"))->hasFocus());
    EXPECT_FALSE(reason().isEmpty());

    BrowserModel &first = pane();
    first.dismissError();
    EXPECT_FALSE(path()->isVisible());
    window->run(CommandId::NewTab);
    first.navigateToTyped(qs("gibt es auch nicht"));
    ASSERT_TRUE(refused(first));
    EXPECT_TRUE(reason().isEmpty());
    window->run(CommandId::PreviousTab);
    EXPECT_TRUE(first.refusedPath.get());
    EXPECT_EQ(path()->text(), qs("gibt es auch nicht"));
    EXPECT_FALSE(reason().isEmpty());
}

TEST_F(NamesAndPathsTest, completionOffersHiddenFoldersAfterADot)
{
    std::filesystem::create_directories(folder / ".verborgen");
    std::filesystem::create_directories(folder / "offen");
    open();
    const auto offered = [this] {
        QStringList all;
        const QAbstractItemModel *const model = path()->completer()->model();
        for (int row = 0; row < model->rowCount(); ++row)
            all << model->index(row, 0).data().toString();
        return all.join(QLatin1Char(' '));
    };
    const auto typed = [&](const char *text) {
        path()->clear();
        QTest::keyClicks(path(), qs(text));
    };
    key(Qt::Key_L, Qt::ControlModifier);
    typed("~/d/");
    EXPECT_TRUE(waitUntil([&] { return offered() == qs("~/d/offen/"); })) << offered().toStdString();
    typed("~/d/.");
    EXPECT_TRUE(waitUntil([&] { return offered() == qs("~/d/.verborgen/ ~/d/offen/"); })) << offered().toStdString();
    typed("./o");
    EXPECT_TRUE(waitUntil([&] { return offered() == qs("./offen/"); })) << "below the folder shown";
    pane().setShowHidden(true);
    typed("~/d/");
    EXPECT_TRUE(waitUntil([&] { return offered() == qs("~/d/.verborgen/ ~/d/offen/"); }));
    pane().setShowHidden(false);
}

TEST_F(NamesAndPathsTest, theCurrentCrumbCanBeReadInANarrowWindowAndEveryOneNavigates)
{
    const Location deep =
        folder / "Rechnungen und Belege" / "Versicherungen" / "Haftpflicht der Familie" / "Schriftverkehr";
    std::filesystem::create_directories(deep);
    std::ofstream(deep / "x.txt") << "x";
    open();
    window->resize(900, 600);
    pane().navigate(deep);
    ASSERT_TRUE(folderBecomes(deep));
    const auto crumb = [this](int step) { return shownOne<QAbstractButton>(QStringLiteral("crumb%1").arg(step)); };
    ASSERT_TRUE(waitUntil([&] { return crumb(5) && crumb(5)->width() >= crumb(5)->sizeHint().width(); }));
    EXPECT_EQ(crumb(0), nullptr);
    QTest::mouseClick(crumb(5), Qt::LeftButton);
    EXPECT_FALSE(find<AddressBar>(QStringLiteral("addressBar"))->isEditing());
    EXPECT_EQ(pane().current.get(), deep);
    auto *const more = shownOne<QAbstractButton>(QStringLiteral("crumbOverflow"));
    ASSERT_NE(more, nullptr);
    QTest::mouseClick(more, Qt::LeftButton);
    auto *const menu = shownOne<QMenu>(QStringLiteral("overflow"));
    ASSERT_NE(menu, nullptr);
    EXPECT_EQ(menu->actions().constLast()->text(), qs("Benutzerordner"));
    menu->actions().constLast()->trigger();
    menu->close();
    EXPECT_TRUE(folderBecomes(services->folders().home));
    EXPECT_EQ(shownOne<QAbstractButton>(QStringLiteral("crumbOverflow")), nullptr);
}

} // namespace
