// Makes the screenshots of the documentation: brellin-bilder FOLDER. Run by tools/make-screenshots on a demo home.

#include "Agent/Screens/AgentView.h"
#include "App/Start/WindowComposition.h"
#include "App/Window/MainWindow.h"
#include "Base/German.h"
#include "Look/DesktopSettings.h"
#include "Look/SheetFrame.h"
#include "Look/Theme.h"
#include "Transfers/Screens/TransferPanel.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QDir>
#include <QTest>

#include <cstdio>
#include <fstream>

using namespace brellin;

namespace {

/// Long enough for thumbnails, folder sizes and a preview to arrive.
constexpr int settling = 1500;

class Photographer {
public:
    Photographer(const QString &folder, Services &services, DesktopSettings &desktop)
        : m_folder(folder)
        , m_services(services)
        , m_composition(services, desktop)
        , m_downloads(services.folders().dir(StandardFolder::Downloads))
    {
        m_composition.start();
        StoredWindow from;
        from.tabs = {
            {QUuid::createUuid(), m_downloads, std::nullopt},
            {QUuid::createUuid(), services.folders().dir(StandardFolder::Documents) / "Rechnungen", std::nullopt}};
        m_window = std::make_unique<MainWindow>(m_composition.forWindows(), from);
        m_window->resize(1280, 800); // larger than the offscreen platform's screen
        m_window->setAttribute(Qt::WA_DeleteOnClose, false);
        m_window->show();
        m_window->activateWindow();
    }

    void all()
    {
        select("Rechnung_2026-1184 Stadtwerke.pdf");
        both(QStringLiteral("details"));
        pane().setViewMode(ViewMode::Icons);
        m_window->run(CommandId::DualPane);
        pane().partner->navigate(m_services.folders().dir(StandardFolder::Documents));
        pane().partner->setViewMode(ViewMode::Details);
        select("IMG_4418.png");
        take(QStringLiteral("symbole-zwei-ordner"), Appearance::Light);
        m_window->run(CommandId::DualPane);
        pane().setViewMode(ViewMode::Details);
        files();
        agent();
    }

private:
    /// The sheets and pages of file commands.
    void files()
    {
        const Location documents = m_services.folders().dir(StandardFolder::Documents);
        m_window->run(CommandId::StorageOverview);
        both(QStringLiteral("speicherplatz"));
        m_window->run(CommandId::Back);

        pane().setSelection(Selection({m_downloads / "IMG_4417.png", m_downloads / "IMG_4418.png",
                                       m_downloads / "Abendrot Kalterer See.png", m_downloads / "Wanderung.png"}));
        m_window->run(CommandId::Rename);
        withSheet(QStringLiteral("umbenennen"));

        select("notizen.txt");
        m_window->run(CommandId::Properties);
        withSheet(QStringLiteral("eigenschaften"));

        std::filesystem::copy_file(m_downloads / "notizen.txt", documents / "notizen.txt");
        select("notizen.txt");
        m_window->run(CommandId::Copy);
        pane().navigate(documents);
        m_window->run(CommandId::Paste);
        withSheet(QStringLiteral("konflikt"));

        panel(documents);
        pane().navigate(m_downloads);
    }

    /// Many small files, so that the transfer lasts long enough to be seen.
    void panel(const Location &documents)
    {
        const Location many = m_downloads / "Vorlagen/Sammlung";
        std::filesystem::create_directories(many);
        for (int number = 0; number < 6000; ++number)
            std::ofstream(many / (std::to_string(number) + ".txt")) << std::string(20'000, 'x');
        pane().navigate(many.parent_path());
        pane().setSelection(Selection({many}));
        m_window->run(CommandId::Copy);
        pane().navigate(documents);
        m_window->run(CommandId::Paste);
        auto *const shown = m_window->findChild<TransferPanel *>();
        if (!QTest::qWaitFor([shown] { return shown->isVisible(); }, 5'000))
            return;
        QTest::qWait(400);
        grab(QStringLiteral("uebertragung-hell"));
        std::ignore = QTest::qWaitFor([shown] { return !shown->isVisible(); }, 60'000);
        std::filesystem::remove_all(many);
        std::filesystem::remove_all(documents / "Sammlung");
    }

    void withSheet(const QString &name)
    {
        const auto sheet = [this]() -> SheetFrame * {
            for (SheetFrame *const one : m_window->findChildren<SheetFrame *>())
                if (one->isVisible())
                    return one;
            return nullptr;
        };
        if (!QTest::qWaitFor([&] { return sheet() != nullptr; }, 5'000))
            return;
        both(name);
        QTest::keyClick(sheet(), Qt::Key_Escape);
        QTest::qWait(300);
    }

    BrowserModel &pane() { return *m_window->state().pane; }

    void select(const char *name)
    {
        pane().setSelection(Selection({m_downloads / name}));
        QTest::qWait(settling);
    }

    void agent()
    {
        CleanupAgent &agent = m_composition.agent();
        pane().choose(SidebarItem::agent());
        auto *const view = m_window->findChild<AgentView *>();
        const auto idle = [&agent] { return !agent.running.get(); };
        if (!QTest::qWaitFor(idle, 20'000))
            return;
        agent.scan(CleanupAgent::Search::RulesAndDuplicates);
        if (!QTest::qWaitFor(idle, 20'000))
            return;
        both(QStringLiteral("agent"));
        view->open(AgentArea::Cleanup);
        both(QStringLiteral("agent-vorschlaege"));
        view->showGuide();
        both(QStringLiteral("agent-anleitung"));
        view->showStart();
        view->openSheet(AgentSheet::CleanupRules);
        both(QStringLiteral("agent-regeln"));
        // Select the fifth rule, "Rechnungen (PDF) ablegen".
        for (int step = 0; step < 4; ++step)
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        both(QStringLiteral("agent-regel-bearbeiten"));
        for (int sheet = 0; sheet < 2; ++sheet) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
            QTest::qWait(300);
        }
        agent.executeChosen();
        if (!QTest::qWaitFor(idle, 20'000))
            return;
        view->open(AgentArea::History);
        both(QStringLiteral("agent-verlauf"));
    }

    void both(const QString &name)
    {
        take(name, Appearance::Light);
        take(name, Appearance::Dark);
    }

    void take(const QString &name, Appearance appearance)
    {
        Theme::shared().setAppearance(appearance);
        QTest::qWait(settling);
        const QString tone = appearance == Appearance::Light ? QStringLiteral("hell") : QStringLiteral("dunkel");
        grab(name + QLatin1Char('-') + tone);
        Theme::shared().setAppearance(Appearance::Light);
    }

    void grab(const QString &name)
    {
        const QString path = QStringLiteral("%1/%2.png").arg(m_folder, name);
        if (!m_window->grab().save(path))
            std::fprintf(stderr, "%s could not be written\n", qPrintable(path));
    }

    QString m_folder;
    Services &m_services;
    WindowComposition m_composition;
    Location m_downloads;
    std::unique_ptr<MainWindow> m_window;
};

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QLocale::setDefault(german());
    if (argc != 2 || !QDir().mkpath(QFile::decodeName(argv[1])))
        return 2;
    Theme &theme = Theme::install(application);
    Services services;
    DesktopSettings desktop(theme, nullptr);
    Photographer(QFile::decodeName(argv[1]), services, desktop).all();
    return 0;
}
