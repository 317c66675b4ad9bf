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

/// Tells which stored lists have changed, whoever changed them: the terminal, another program, or this one (which then finds
/// what it knows). Bursts are told once.
class SettingsWatch : public QObject {
public:
    /// The names of files without ".json".
    using Changed = std::function<void(const std::set<std::string> &lists)>;

    SettingsWatch(const Location &folder, Changed changed);
    ~SettingsWatch() override;

private:
    void take();

    Changed m_changed;
    QTimer m_pause;
    Mailbox m_mailbox;                        ///< outlives the watcher, whose thread posts to it
    std::shared_ptr<FolderWatcher> m_watcher; ///< none where the folder cannot be watched
};

} // namespace brellin
