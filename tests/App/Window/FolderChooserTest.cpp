#include "App/Window/WindowWorld.h"

#include "FolderChooser/Screens/FolderChooser.h"

#include <QAbstractButton>
#include <QLabel>

using namespace brellin;
using brellin::test::waitUntil;
using brellin::test::WindowWorld;

namespace {

/// "Kopieren nach …" of a.txt, by keyboard in the chooser.
class FolderChooserTest : public WindowWorld {
protected:
    FolderChooser *chooser() const { return window->findChild<FolderChooser *>(); }
    template <class Widget>
    Widget *part(const char *name) const
    {
        return chooser()->findChild<Widget *>(QString::fromLatin1(name));
    }
    QStringList folders() const
    {
        QStringList names;
        const DisplayedItems &rows = chooser()->pane().displayedItems.get();
        for (std::size_t row = 0; row < rows.size(); ++row)
            names << rows[row].name();
        return names;
    }
    void ask(CommandId command = CommandId::CopyTo)
    {
        click(QStringLiteral("a.txt"));
        window->run(command);
        ASSERT_TRUE(waitUntil([this] { return chooser() && chooser()->isVisible(); }));
        QCoreApplication::processEvents();
    }
    /// The chooser shows a folder with these in it.
    bool shows(const Location &wanted, const QStringList &within) const
    {
        return waitUntil([&] { return chooser()->pane().current.get() == wanted && folders() == within; });
    }
    bool comes(const std::string &name) const
    {
        return waitUntil([&] { return has(name); });
    }
    bool goes(const std::string &name) const
    {
        return waitUntil([&] { return !has(name); });
    }
    bool refuses(const QString &beginning) const
    {
        return waitUntil([&] {
            auto *const reason = part<QLabel>("refusal");
            return reason->isVisible() && reason->text().startsWith(beginning) &&
                   !part<QAbstractButton>("accept")->isEnabled();
        });
    }
};

const Qt::KeyboardModifiers control = Qt::ControlModifier;

TEST_F(FolderChooserTest, isDoneByKeyboardAndRemembersWhereItWas)
{
    for (const char *const name : {"a.txt", "eins/x.txt", "zwei/tief/x.txt"})
        file(name);
    open();
    ask();
    ASSERT_TRUE(shows(folder, {QStringLiteral("eins"), QStringLiteral("zwei")})) << "folders only";
    key(Qt::Key_Down);
    key(Qt::Key_Down);
    key(Qt::Key_Return);
    ASSERT_TRUE(shows(folder / "zwei", {QStringLiteral("tief")})) << "Return opens";
    key(Qt::Key_Down);
    key(Qt::Key_Return, control);
    ASSERT_TRUE(comes("zwei/tief/a.txt")) << "the selected folder";
    ASSERT_TRUE(waitUntil([this] { return !chooser(); }));
    EXPECT_TRUE(details()->hasFocus());

    ask();
    ASSERT_TRUE(shows(folder / "zwei" / "tief", {}));
    key(Qt::Key_Up, Qt::AltModifier);
    ASSERT_TRUE(shows(folder / "zwei", {QStringLiteral("tief")}));
    key(Qt::Key_Escape);
    EXPECT_TRUE(waitUntil([this] { return !chooser(); }));
    std::filesystem::remove_all(folder / "zwei");
    ask();
    EXPECT_TRUE(shows(folder, {QStringLiteral("eins")})) << "the nearest that is left";
    key(Qt::Key_Escape);
    ask(CommandId::MoveTo);
    EXPECT_TRUE(shows(folder, {QStringLiteral("eins")})) << "another purpose begins where the pane is";
}

TEST_F(FolderChooserTest, takesATypedPathAndMakesAFolder)
{
    file("a.txt");
    file("zwei/x.txt");
    open();
    ask();
    key(Qt::Key_L, control);
    type(shown(folder / "zwei"));
    key(Qt::Key_Return);
    ASSERT_TRUE(shows(folder / "zwei", {}));
    ASSERT_TRUE(chooser()->isVisible()) << "Return ended the typing only";
    key(Qt::Key_N, control | Qt::ShiftModifier);
    ASSERT_TRUE(waitUntil([this] { return chooser()->pane().renameTarget.get().has_value(); }));
    type(QStringLiteral("Neues"));
    key(Qt::Key_Return);
    ASSERT_TRUE(comes("zwei/Neues"));
    ASSERT_TRUE(waitUntil([this] { return chooser()->pane().onlySelected() != nullptr; }));
    ASSERT_TRUE(chooser()->isVisible());
    QTest::mouseClick(part<QAbstractButton>("accept"), Qt::LeftButton);
    ASSERT_TRUE(comes("zwei/Neues/a.txt"));
    ASSERT_TRUE(
        waitUntil([this] { return window->state().undo.value_or(QString()).startsWith(QStringLiteral("Kop")); }));
    const UserUndo &undo = composition->forWindows().undo;
    for (const char *const gone : {"zwei/Neues/a.txt", "zwei/Neues", "zwei/Neuer Ordner"}) {
        ASSERT_TRUE(waitUntil([&] { return !undo.running.get() && window->state().undo; })) << gone;
        window->run(CommandId::Undo);
        EXPECT_TRUE(goes(gone)) << gone;
    }
}

TEST_F(FolderChooserTest, refusesWhatIsGoneAndWhereTheSystemLives)
{
    file("a.txt");
    file("zwei/x.txt");
    open();
    ask();
    key(Qt::Key_L, control);
    type(QStringLiteral("/usr/lib"));
    key(Qt::Key_Return);
    EXPECT_TRUE(refuses(QStringLiteral("Orte des Systems werden nicht verändert.")));
    chooser()->pane().navigate(folder);
    ASSERT_TRUE(shows(folder, {QStringLiteral("zwei")}));
    key(Qt::Key_Down);
    ASSERT_TRUE(waitUntil([this] { return part<QAbstractButton>("accept")->isEnabled(); }));
    // Gone while it is chosen, before the watcher tells.
    std::filesystem::remove_all(folder / "zwei");
    key(Qt::Key_Return, control);
    EXPECT_TRUE(refuses(QStringLiteral("Den Ordner gibt es nicht mehr.")) ||
                chooser()->pane().onlySelected() == nullptr);
    EXPECT_TRUE(chooser()->isVisible());
}

} // namespace
