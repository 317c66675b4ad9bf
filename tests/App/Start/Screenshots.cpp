// Makes the pictures of the documentation: brellin-bilder FOLDER. Run by tools/make-screenshots over a demo home.

#include "Agent/Screens/AgentView.h"
#include "App/Start/WindowComposition.h"
#include "App/Window/MainWindow.h"
#include "Base/German.h"
#include "Look/DesktopSettings.h"
#include "Look/Theme.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QDir>
#include <QTest>

#include <cstdio>

using namespace brellin;

namespace {

/// Long enough for thumbnails, folder sizes and a preview to come in.
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
        from.frame = {0, 0, 1280, 800};
        m_window = std::make_unique<MainWindow>(m_composition.forWindows(), from);
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
        agent();
    }

private:
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
        agent.executeChosen();
        if (!QTest::qWaitFor(idle, 20'000))
            return;
        view->open(AgentArea::History);
        both(QStringLiteral("agent-verlauf"));
        view->showGuide();
        both(QStringLiteral("agent-anleitung"));
        view->showStart();
        view->openSheet(AgentSheet::CleanupRules);
        both(QStringLiteral("agent-regeln"));
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
        const QString path = QStringLiteral("%1/%2-%3.png").arg(m_folder, name, tone);
        if (!m_window->grab().save(path))
            std::fprintf(stderr, "%s could not be written\n", qPrintable(path));
        Theme::shared().setAppearance(Appearance::Light);
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
