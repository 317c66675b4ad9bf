#include "App/Start/SettingsWatch.h"

#include "Disk/FolderWatcher.h"
#include "System/PrivateFolders.h"

namespace brellin {

SettingsWatch::SettingsWatch(const Location &folder, Changed changed) : m_changed(std::move(changed))
{
    constexpr std::chrono::milliseconds pause{200};
    m_pause.setSingleShot(true);
    m_pause.setInterval(pause);
    QObject::connect(&m_pause, &QTimer::timeout, this, [this] { take(); });
    const auto heard = [this] { m_mailbox.post([this] { m_pause.start(); }); };
    // A missing folder cannot be watched, and on a new account the first setting would create it.
    (void)createPrivateFolders(folder);
    if (Result<std::shared_ptr<FolderWatcher>> watcher = FolderWatcher::watch(folder, heard))
        m_watcher = *std::move(watcher);
}

SettingsWatch::~SettingsWatch() = default;

void SettingsWatch::take()
{
    if (!m_watcher)
        return;
    constexpr std::string_view ending(".json");
    std::set<std::string> lists;
    for (const std::string &name : m_watcher->take().names) {
        if (name.ends_with(ending))
            lists.insert(name.substr(0, name.size() - ending.size()));
    }
    if (!lists.empty())
        m_changed(lists);
}

} // namespace brellin
