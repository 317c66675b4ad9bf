#pragma once

#include "Base/Location.h"
#include "Base/Mailbox.h"

#include <QObject>
#include <QTimer>

#include <functional>
#include <memory>
#include <set>
#include <string>

namespace brellin {

class FolderWatcher;

/// Reports which stored lists have changed, whether by the terminal program, another process or this one. Coalesces
/// bursts.
class SettingsWatch : public QObject {
public:
    /// File names without ".json".
    using Changed = std::function<void(const std::set<std::string> &lists)>;

    SettingsWatch(const Location &folder, Changed changed);
    ~SettingsWatch() override;

private:
    void take();

    Changed m_changed;
    QTimer m_pause;
    Mailbox m_mailbox;                        ///< outlives the watcher, whose thread posts to it
    std::shared_ptr<FolderWatcher> m_watcher; ///< null if the folder cannot be watched
};

} // namespace brellin
