#include "App/Window/WindowWorld.h"

#include <QMenu>

using namespace brellin;
using brellin::test::waitUntil;
using brellin::test::WindowWorld;

namespace {

class TemplatesTest : public WindowWorld {
protected:
    TemplatesTest()
    {
        const Location configuration = qgetenv("XDG_CONFIG_HOME").toStdString();
        std::filesystem::create_directories(configuration);
        std::ofstream(configuration / "user-dirs.dirs") << "XDG_TEMPLATES_DIR=\"$HOME/Vorlagen\"\n";
        std::filesystem::remove_all(models);
        std::filesystem::create_directories(models);
    }
    void close() const
    {
        for (QMenu *const old : window->findChildren<QMenu *>(QStringLiteral("contextMenu"))) {
            old->setObjectName({});
            old->close();
        }
        window->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(window));
    }
    /// The menu of the folder, with its templates.
    QMenu *menu()
    {
        close();
        Q_EMIT details()->customContextMenuRequested(QPoint(20, details()->height() - 30));
        auto *const whole = window->findChild<QMenu *>(QStringLiteral("contextMenu"));
        return whole ? whole->findChild<QMenu *>(QStringLiteral("templateMenu")) : nullptr;
    }

    Location models = Location(qgetenv("HOME").toStdString()) / "Vorlagen";
};

TEST_F(TemplatesTest, makesACopyWithAFreeNameAndAsksForItsName)
{
    file("a.txt");
    file("Brief.odt", "alt");
    open();
    ASSERT_NE(menu(), nullptr);
    EXPECT_FALSE(menu()->menuAction()->isVisible()) << "no templates yet";
    std::ofstream(models / "Brief.odt") << "Vorlage";
    std::ofstream(models / ".verborgen") << "x";
    QMenu *const filled = menu();
    ASSERT_TRUE(waitUntil([&] { return filled->menuAction()->isVisible(); }));
    ASSERT_EQ(filled->actions().size(), 1);
    filled->actions().front()->trigger();
    close();
    ASSERT_TRUE(waitUntil([this] { return pane().renameTarget.get().has_value(); }));
    EXPECT_EQ(pane().renameTarget.get()->name(), QStringLiteral("Brief (2).odt"));
    type(QStringLiteral("Absage"));
    key(Qt::Key_Return);
    ASSERT_TRUE(waitUntil([this] { return has("Absage.odt"); }));
    std::ifstream stream(folder / "Absage.odt");
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(stream), {}), "Vorlage");
    const auto undo = [this](const QString &title) {
        return waitUntil([&] {
            return !composition->forWindows().undo.running.get() &&
                   window->state().undo.value_or(QString()).startsWith(title);
        });
    };
    ASSERT_TRUE(undo(QStringLiteral("Umbenennen")));
    window->run(CommandId::Undo);
    ASSERT_TRUE(undo(QStringLiteral("Anlegen")));
    window->run(CommandId::Undo);
    EXPECT_TRUE(waitUntil([this] { return !has("Absage.odt") && !has("Brief (2).odt"); }));
}

} // namespace
