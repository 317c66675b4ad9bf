#include "App/Window/WindowWorld.h"

#include "App/Window/Notices.h"
#include "App/Window/SettingsSheet.h"
#include "Places/NetworkServers.h"
#include "Sidebar/ExpandedFolders.h"
#include "Sidebar/FoldedSections.h"
#include "Sidebar/Screens/SidebarView.h"
#include "System/FileLock.h"
#include "System/FileUserDefaults.h"
#include "System/PlainSetting.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QUrl>

using namespace brellin;
using namespace brellin::test;

namespace {

class WindowSettingsTest : public WindowWorld {
protected:
    QVariant kept(const char16_t *key) const
    {
        return services->settings().value(QString::fromUtf16(key)).value_or(QVariant());
    }
    void openSheet()
    {
        key(Qt::Key_Comma, Qt::ControlModifier);
        ASSERT_TRUE(waitUntil([this] { return shownOne<SettingsSheet>(QStringLiteral("settingsSheet")) != nullptr; }));
    }
    bool sheetGoes()
    {
        return waitUntil([this] {
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            return window->findChild<SettingsSheet *>() == nullptr;
        });
    }
    void choose(const QString &box, int steps)
    {
        auto *const choice = find<QComboBox>(box);
        choice->setFocus();
        for (int step = 0; step < std::abs(steps); ++step)
            QTest::keyClick(choice, steps > 0 ? Qt::Key_Down : Qt::Key_Up);
    }
    void TearDown() override
    {
        WindowWorld::TearDown();
        for (const char16_t *const one : {u"appearance", u"fontFactor", u"terminal", u"folderSizesNetwork"})
            EXPECT_TRUE(services->settings().setValue(QString::fromUtf16(one), QVariant()));
        Theme::shared().setAppearance(Appearance::Light);
        Theme::shared().setFontFactor(1);
    }
};

TEST_F(WindowSettingsTest, takeEffectAtOnceAndAreKept)
{
    open();
    openSheet();
    choose(QStringLiteral("appearance"), 2);
    EXPECT_EQ(Theme::shared().appearance(), Appearance::Dark);
    EXPECT_EQ(kept(u"appearance"), QStringLiteral("dunkel"));
    const int before = scaled(100);
    choose(QStringLiteral("fontFactor"), 2);
    EXPECT_EQ(kept(u"fontFactor").toDouble(), 1.25);
    EXPECT_GT(scaled(100), before);
    EXPECT_FALSE(find<QCheckBox>(QStringLiteral("folderSizesNetwork"))->isChecked()) << "never unasked";
    find<QCheckBox>(QStringLiteral("folderSizesNetwork"))->click();
    EXPECT_TRUE(kept(u"folderSizesNetwork").toBool());
    find<QLineEdit>(QStringLiteral("terminalField"))->setFocus();
    type(QStringLiteral(" konsole "));
    key(Qt::Key_Escape);
    ASSERT_TRUE(sheetGoes());
    EXPECT_EQ(kept(u"terminal").toString(), QStringLiteral("konsole")) << "also when Esc closes the sheet";
    // They are kept when the sheet is opened again.
    openSheet();
    EXPECT_EQ(find<QComboBox>(QStringLiteral("appearance"))->currentText(), QStringLiteral("Dunkel"));
    EXPECT_EQ(find<QComboBox>(QStringLiteral("fontFactor"))->currentText(), QStringLiteral("Schrift 125 %"));
    EXPECT_TRUE(find<QCheckBox>(QStringLiteral("folderSizesNetwork"))->isChecked());
    EXPECT_EQ(find<QLineEdit>(QStringLiteral("terminalField"))->text(), QStringLiteral("konsole"));
    QTest::mouseClick(find<QPushButton>(QStringLiteral("done")), Qt::LeftButton);
    EXPECT_TRUE(sheetGoes());
}

TEST_F(WindowSettingsTest, nonsenseCountsAsUsual)
{
    ASSERT_TRUE(services->settings().setValue(QStringLiteral("fontFactor"), 37.0));
    ASSERT_TRUE(services->settings().setValue(QStringLiteral("appearance"), QStringLiteral("lila")));
    const int before = scaled(100);
    applyAppearance(services->settings(), *desktop);
    EXPECT_EQ(scaled(100), before);
    open();
    openSheet();
    EXPECT_EQ(find<QComboBox>(QStringLiteral("appearance"))->currentText(), QStringLiteral("Wie das System"));
    EXPECT_EQ(find<QComboBox>(QStringLiteral("fontFactor"))->currentText(), QStringLiteral("Schrift 100 %"));
}

TEST_F(WindowSettingsTest, doNotWaitForAnotherProgramAndSayWhatCannotBeStored)
{
    const QString network = QStringLiteral("folderSizesNetwork");
    ASSERT_TRUE(services->settings().setValue(network, false));
    ASSERT_TRUE(services->deferredSettings().finish(std::chrono::seconds(20)));
    const Location settings = services->settings().fileOf(network).parent_path();
    const auto isStored = [&] { return plainSetting(FileUserDefaults(settings), network, false); };
    open();
    openSheet();
    Result<FileLock> other = FileLock::wait(settings / "settings.lock", std::chrono::seconds(20));
    ASSERT_TRUE(other);
    auto *const box = find<QCheckBox>(network);
    box->click();
    EXPECT_TRUE(kept(u"folderSizesNetwork").toBool());
    EXPECT_FALSE(isStored()) << "the other program still holds the lock";
    other->release();
    EXPECT_TRUE(waitUntil(isStored));
    // Now the lock cannot be taken at all.
    std::filesystem::remove(settings / "settings.lock");
    std::filesystem::create_directory(settings / "settings.lock");
    const WindowServices all = composition->forWindows();
    QStringList said;
    all.notices.unread.observe(window, [&](const QStringList &unread) { said += unread; });
    box->click();
    EXPECT_TRUE(waitUntil([&] { return !said.isEmpty(); }));
    EXPECT_TRUE(said.join(u' ').startsWith(QStringLiteral("Die Einstellung ließ sich nicht speichern: ")));
    EXPECT_TRUE(kept(u"folderSizesNetwork").toBool()) << "as it is stored";
    std::filesystem::remove(settings / "settings.lock");
}

TEST_F(WindowSettingsTest, followWhatAnotherProgramStores)
{
    open();
    composition->start();
    FileUserDefaults other(services->settings().fileOf(QStringLiteral("windows")).parent_path());
    const auto store = [&](const char *list, const QByteArray &json) {
        ASSERT_TRUE(other.update(QString::fromUtf8(list), [&](const auto &) { return UserDefaults::Change{json}; }));
    };
    store("sidebarFolded", R"(["quickAccess"])");
    store("networkServers", R"([{"address":"smb://nas/Musik","name":"Musik auf nas"}])");
    store("sidebarExpanded", R"(["/tmp"])");
    const WindowServices all = composition->forWindows();
    EXPECT_TRUE(waitUntil([&] { return all.folded.folded.get().contains(QStringLiteral("quickAccess")); }));
    EXPECT_TRUE(waitUntil([&] { return all.servers.servers.get().size() == 1; }));
    EXPECT_TRUE(waitUntil([&] { return all.expanded.stored() == std::vector<Location>{"/tmp"}; }));
    for (const char *const list : {"sidebarFolded", "networkServers", "sidebarExpanded"})
        store(list, "[]");
    EXPECT_TRUE(waitUntil([&] { return all.folded.folded.get().empty() && all.servers.servers.get().empty(); }));
    EXPECT_TRUE(waitUntil([&] { return all.expanded.stored().empty(); }));
}

TEST_F(WindowSettingsTest, nameWhatIsDamagedAndKeepALastGoodVersionOfTheRest)
{
    const Location settings = services->settings().fileOf(QStringLiteral("windows")).parent_path();
    std::filesystem::create_directories(settings);
    std::ofstream(settings / "windows.json") << R"([{"tabs":[]},{"tabs":7}])";
    std::ofstream(settings / "sidebarFolded.json") << "[]";
    std::filesystem::remove(settings / "sidebarFolded.zuletzt-gut.json");
    composition->start();
    const WindowServices all = composition->forWindows();
    EXPECT_TRUE(waitUntil([&] { return !all.notices.unread.get().isEmpty(); }));
    EXPECT_TRUE(all.notices.unread.get().join(u' ').contains(QStringLiteral("„windows.json“ ist zum Teil beschädigt")));
    EXPECT_TRUE(entryExists(settings / "sidebarFolded.zuletzt-gut.json"));
    for (const char *const file : {"windows.json", "windows.zuletzt-gut.json"})
        std::filesystem::remove(settings / file);
}

/// A drag of files over the sidebar, sent as events.
class SidebarDropTest : public WindowWorld {
protected:
    bool drops(const Location &source, QPoint place)
    {
        QWidget *const area = find<SidebarView>(QStringLiteral("sidebar"))->dropArea();
        QMimeData files;
        files.setUrls({QUrl::fromLocalFile(shown(source))});
        const Qt::DropActions both = Qt::CopyAction | Qt::MoveAction;
        QDragEnterEvent enter(place, both, &files, Qt::LeftButton, {});
        QCoreApplication::sendEvent(area, &enter);
        QDragMoveEvent move(place, both, &files, Qt::LeftButton, {});
        QCoreApplication::sendEvent(area, &move);
        const bool taken = move.isAccepted();
        QDropEvent drop(place, both, &files, Qt::LeftButton, {});
        QCoreApplication::sendEvent(area, &drop);
        return taken;
    }
    /// A point in the row of this folder.
    std::optional<QPoint> placeFor(const Location &wanted) const
    {
        const auto *const sidebar = find<SidebarView>(QStringLiteral("sidebar"));
        for (int y = 0; y < sidebar->dropArea()->height(); y += 4)
            if (sidebar->folderAt(QPoint(60, y)) == wanted)
                return QPoint(60, y);
        return std::nullopt;
    }
};

TEST_F(SidebarDropTest, movesIntoAPinnedFolderAndNowhereElse)
{
    const Location letter = file("brief.txt");
    std::filesystem::create_directories(folder / "Ablage");
    open();
    key(Qt::Key_A, Qt::ControlModifier); // the pane keeps the focus throughout
    pane().navigate(folder / "Ablage");
    window->run(CommandId::Pin);
    ASSERT_TRUE(waitUntil([this] { return placeFor(folder / "Ablage").has_value(); }));
    const QPoint pinned = *placeFor(folder / "Ablage");
    EXPECT_FALSE(drops(folder / "Ablage", pinned)) << "into itself";
    EXPECT_TRUE(drops(letter, pinned));
    EXPECT_TRUE(waitUntil([this] { return has("Ablage/brief.txt") && !has("brief.txt"); }));
    EXPECT_FALSE(drops(folder / "Ablage/brief.txt", pinned)) << "where it is already";
    EXPECT_TRUE(has("Ablage/brief.txt"));
    window->run(CommandId::Pin);
}

} // namespace
