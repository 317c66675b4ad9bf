#include "App/Start/WindowComposition.h"

#include "App/TransferUndo.h"
#include "Features/ThumbnailCache.h"
#include "Runs/RunKeys.h"

namespace brellin {

namespace {

std::function<bool(const Location &)> mayChange(const Services &services)
{
    return [&services](const Location &entry) { return services.mayChange(entry); };
}

} // namespace

WindowComposition::WindowComposition(Services &services, DesktopSettings &desktop)
    : m_services(services)
    , m_desktop(desktop)
    , m_workers(services.volumes())
    , m_sizes(services.settings(), services.volumes(), services.clock())
    , m_colors(services.settings())
    , m_pins(services.settings(), services.folders())
    , m_folded(services.settings())
    , m_expanded(services.settings())
    , m_disks(m_bus)
    , m_volumeList(m_mounts, m_disks)
    , m_servers(services.settings(), services.processes())
    , m_trash(services.folders().trash.parent_path(), services.volumes(), services.trash(), services.files())
    , m_thumbnails(services.settings(), services.volumes(), services.decoder(), ThumbnailCache::usualFolder())
    , m_images(m_thumbnails)
    , m_placed(m_images, services.volumes())
    , m_workspace(services.settings(), DesktopEnvironment::ofThisUser(services.folders().home))
    , m_transfers(services.forTransfers(m_workers), services.clock())
    , m_paneFiles(services.renameLogs(), &services.records())
    , m_undo({services.files(), services.trash(), services.renameLogs(), services.transferLogs(), &services.records()})
    , m_history(
          {services.records(),
           services.settings(),
           {services.files(), services.trash(), services.renameLogs(), services.transferLogs(), &services.records()},
           m_undo,
           mayChange(services)})
    , m_operations({services.files(), services.trash(), services.volumes(), services.processes(), m_workspace,
                    services.folders().trash.parent_path(), m_undo, Services::decoderProgram(), mayChange(services),
                    services.archiveLogs(), &services.records()})
    , m_sendTo(services.settings(), services.folders())
    , m_agent(services.forAgent(), CleanupAgent::Loading::WithStart)
    , m_model(services.forAgent().forModel())
    , m_shortcuts(services.settings())
    , m_check(services, m_notices)
{
    m_transfers.lastFinished.observe(&m_transfers,
                                     [this](const std::optional<FinishedTransfer> &last) { takeNote(last->record); });
    m_undo.moves.observe(&m_undo, [this](const std::vector<EntryMove> &moves) { follow(moves); });
    m_agent.moves.observe(&m_agent, [this](const std::vector<EntryMove> &moves) { follow(moves); });
    m_notices.hear(m_operations, m_undo, m_transfers, m_volumeList);
    services.deferredSettings().onFailure([this](const Failure &why) { settingNotStored(why); });
    services.records().onFailure([notices = QPointer(&m_notices)](const QString &text) {
        Mailbox::ofMainThread().post([notices, text] {
            if (notices)
                notices->add(text);
        });
    });
}

WindowComposition::~WindowComposition()
{
    m_services.deferredSettings().onFailure({});
    m_services.records().onFailure({});
}

/// The agent shows the stored settings again.
void WindowComposition::settingNotStored(const Failure &why)
{
    m_notices.add(QStringLiteral("Die Einstellung ließ sich nicht speichern: ") + why.message);
    m_agent.reload({QStringLiteral("settings")});
}

/// Done here, since the window or pane that started the transfer may be closed.
void WindowComposition::takeNote(const TransferRecord &record)
{
    m_undo.record(actionOf(record));
    // Of a move, copies whose original was kept cannot be undone.
    for (const TransferredEntry &entry : record.entries)
        m_sizes.touched(entry.dst);
}

/// Sizes and colours of folders go along with what was done, undone and redone.
void WindowComposition::follow(const std::vector<EntryMove> &moves)
{
    for (const EntryMove &move : moves) {
        if (!move.from.empty())
            m_sizes.touched(move.from);
        if (!move.to.empty())
            m_sizes.touched(move.to);
    }
    m_colors.moved(moves);
    if (!moves.empty())
        m_volumeList.refresh();
}

WindowServices WindowComposition::forWindows()
{
    const BrowserServices panes{
        m_services.settings(),
        m_services.volumes(),
        m_paneFiles,
        m_services.folders(),
        m_workers,
        m_sizes,
        m_colors,
        m_services.tagSearch(),
        mayChange(m_services),
        [&decoder = m_services.decoder()](SearchMatches &matches, const FolderQuery &query, const JobControl *control) {
            return searchInto(matches, query, control, &decoder);
        }};
    const AgentPorts agent{
        m_agent,     m_model,      m_services.forAgent(),
        m_workspace, m_pasteboard, [this](const Location &entry, int side) { return m_placed.pixmap(entry, side); }};
    return {panes,
            agent,
            m_pins,
            m_folded,
            m_expanded,
            m_volumeList,
            m_servers,
            m_trash,
            m_images,
            m_services.decoder(),
            m_desktop,
            m_services.clock(),
            m_transfers,
            m_services.forTransfers(m_workers),
            m_operations,
            m_undo,
            m_sendTo,
            {m_services.files(), m_services.decoder(), m_services.renameLogs(), m_undo, mayChange(m_services),
             &m_services.records()},
            m_services.processes(),
            m_workspace,
            m_notices,
            m_services.records(),
            m_history,
            m_shortcuts};
}

/// Another process has changed stored data.
void WindowComposition::reload(const std::set<std::string> &lists)
{
    if (lists.contains(Pins::key.toStdString()))
        m_pins.reload();
    if (lists.contains("sidebarFolded"))
        m_folded.reload();
    if (lists.contains("sidebarExpanded"))
        m_expanded.reload();
    if (lists.contains("networkServers"))
        m_servers.reload();
    if (lists.contains("folderColors"))
        m_colors.reload();
    if (lists.contains("sendToTargets"))
        m_sendTo.reload();
    if (lists.contains("shortcuts"))
        m_shortcuts.reload();
    std::set<QString> ofAgent;
    for (const std::string &list : lists) {
        if (list.starts_with("agent") || list == "settings")
            ofAgent.insert(QString::fromStdString(list));
    }
    if (lists.contains(RunKeys::history.toStdString()))
        m_history.reload();
    m_agent.reload(ofAgent);
}

void WindowComposition::start()
{
    m_volumeList.start();
    m_agent.start();
    m_check.start();
    m_workers.run(m_services.records().folder(), MountWorkers::Turn::AtOnce,
                  [&records = m_services.records(), &trash = m_services.trash()] { records.settle(trash); });
    m_watch = std::make_unique<SettingsWatch>(m_services.settings().fileOf(Pins::key).parent_path(),
                                              [this](const std::set<std::string> &lists) { reload(lists); });
}

} // namespace brellin
