#include "App/Window/WindowWorld.h"

#include "App/Window/DesktopPasteboard.h"
#include "Look/SheetFrame.h"
#include "Sidebar/Pins.h"

#include <QClipboard>
#include <QDialog>
#include <QMenu>
#include <QMimeData>

using namespace brellin;
using brellin::test::waitUntil;
using brellin::test::WindowWorld;

namespace {

/// Prepares the window so that a command is enabled, and compares everything a command may change.
class CommandTableTest : public WindowWorld {
protected:
    /// Uses its own folder, since the view of a folder is stored.
    CommandTableTest() { folder = folder.parent_path() / "befehle"; }

    void begin()
    {
        std::filesystem::remove_all(folder);
        file("a.txt", "eins");
        file("b.txt", "zwei");
        file("kaputt.zip", "kein Archiv");
        file("unter/c.txt", "drei");
        ASSERT_TRUE(services->settings().setValue(QStringLiteral("terminal"), QStringLiteral("true")));
        ASSERT_TRUE(services->settings().setValue(QStringLiteral("dualPane"), QVariant()));
        open();
        window->addTab(folder);
        window->run(CommandId::DualPane);
        pane().navigate(folder / "unter");
        pane().navigate(folder);
        pane().navigate(folder / "unter");
        pane().goBack();
        ASSERT_TRUE(waitUntil([this] { return pane().current.get() == folder; }));
        pane().setViewMode(ViewMode::Details);
        pane().setSelection(Selection({folder / "a.txt"}));
        putOnClipboard({ClipboardFiles::Purpose::Copy, {folder / "b.txt"}});
        QObject::connect(window, &MainWindow::newWindowRequested, window, [this] { ++wishes; });
        QObject::connect(window, &MainWindow::quitRequested, window, [this] { ++wishes; });
        pane().searchRunning.observe(window, [this](bool) { ++searches; });
        operations().operations.observe(window, [this](const auto &) { ++operationSteps; });
    }
    /// Closes open questions, which would appear in the next window.
    void end()
    {
        EXPECT_TRUE(waitUntil([this] { return operations().operations.get().empty(); }));
        WindowWorld::TearDown();
        composition.reset();
        composition = std::make_unique<WindowComposition>(*services, *desktop);
    }
    void TearDown() override
    {
        WindowWorld::TearDown();
        for (const char16_t *const one : {u"terminal", u"dualPane", u"showPreview", u"lastViewMode", u"lastIconSize"})
            EXPECT_TRUE(services->settings().setValue(QString::fromUtf16(one), QVariant()));
        if (Pins &pins = composition->forWindows().pins; pins.holds(folder)) {
            EXPECT_TRUE(pins.toggle(folder));
        }
    }
    FileOperations &operations() const { return composition->forWindows().operations; }

    /// What only some commands require.
    void prepareFor(CommandId id)
    {
        if (id == CommandId::Open || id == CommandId::OpenInNewTab)
            pane().setSelection(Selection({folder / "unter"}));
        if (id == CommandId::Unpack)
            pane().setSelection(Selection({folder / "kaputt.zip"}));
        if (id == CommandId::CopyToOther || id == CommandId::MoveToOther || id == CommandId::SameFolder ||
            id == CommandId::SwapPanes)
            pane().partner->navigate(folder / "unter");
        if (id == CommandId::ReopenTab)
            window->run(CommandId::CloseTab);
        if (id == CommandId::Details)
            pane().setViewMode(ViewMode::Icons);
        if (id == CommandId::Reload) {
            pane().showPlace(Place::search(folder, QStringLiteral("txt")));
            ASSERT_TRUE(waitUntil([this] { return !pane().searchRunning.get(); }));
        }
        if (id == CommandId::ShowInFolder) {
            pane().showPlace(Place::search(folder, QStringLiteral("txt")));
            ASSERT_TRUE(waitUntil([this] { return !pane().searchRunning.get(); }));
            pane().select({pane().items.get()[0].location()});
        }
        if (id == CommandId::DeleteForGood) {
            const Location trashed = *services->trash().put(folder / "unter");
            pane().navigate(trashed);
            ASSERT_TRUE(waitUntil([&] { return pane().current.get() == trashed && details(); }));
            pane().selectAll();
        }
        if (id == CommandId::Undo || id == CommandId::Redo) {
            window->run(CommandId::Rename);
            pane().setRenameText(QStringLiteral("anders.txt"));
            pane().commitRename();
            ASSERT_TRUE(waitUntil([this] { return window->state().undo.has_value(); }));
        }
        if (id == CommandId::Redo) {
            window->run(CommandId::Undo);
            ASSERT_TRUE(waitUntil([this] { return window->state().redo.has_value(); }));
        }
    }

    QStringList everything() const
    {
        QStringList all{window->windowTitle(), QString::number(wishes), QString::number(searches),
                        QString::number(operationSteps)};
        for (const auto &one : std::filesystem::recursive_directory_iterator(folder))
            all << shown(one.path());
        const BrowserModel &now = pane();
        const CommandState state = window->state();
        all << shown(window->stored().tabs.back().path) << shown(now.current.get()) << now.place.get().name
            << now.errorMessage.get().value_or(QString());
        for (const auto number : std::initializer_list<std::size_t>{
                 static_cast<std::size_t>(now.place.get().kind), now.backStack().size(), now.forwardStack().size(),
                 now.selection.get().size(), now.renameTarget.get().has_value(), now.showHidden.get(),
                 static_cast<std::size_t>(now.viewMode.get()), now.partner && now.partner->current.get() == folder,
                 static_cast<std::size_t>(now.iconSize.get()), state.dualPane, state.preview, state.sidebar,
                 window->stored().tabs.size(), static_cast<std::size_t>(window->stored().current),
                 composition->forWindows().pins.entries.get().size()})
            all << QString::number(number);
        const QWidget *const focus = QApplication::focusWidget();
        all << (focus ? QString::number(reinterpret_cast<quintptr>(focus)) : QString());
        for (const QWidget *const one : window->findChildren<QWidget *>())
            if (one->isVisible() && (qobject_cast<const SheetFrame *>(one) || qobject_cast<const QDialog *>(one) ||
                                     qobject_cast<const QMenu *>(one)))
                all << QString::fromLatin1(one->metaObject()->className());
        const QMimeData *const clipboard = QApplication::clipboard()->mimeData();
        return all << clipboard->text() << clipboard->formats()
                   << QString::fromUtf8(clipboard->data(QStringLiteral("x-special/gnome-copied-files")));
    }

    int wishes = 0;
    int searches = 0;
    int operationSteps = 0;
};

TEST_F(CommandTableTest, everyRowDoesSomething)
{
    for (const WindowCommand &one : commandTable()) {
        SCOPED_TRACE(one.title.toStdString());
        ASSERT_NO_FATAL_FAILURE(begin());
        ASSERT_NO_FATAL_FAILURE(prepareFor(one.id));
        EXPECT_TRUE(waitUntil([&] { return one.enabled(window->state()); }));
        const QStringList before = everything();
        ASSERT_TRUE(one.run) << "the row has nothing to run";
        window->run(one.id);
        EXPECT_TRUE(waitUntil([&] { return everything() != before; }));
        end();
    }
}

} // namespace
