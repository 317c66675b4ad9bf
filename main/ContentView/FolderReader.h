#pragma once

#include "Base/Mailbox.h"
#include "ContentView/ItemOrder.h"
#include "ContentView/Listing.h"
#include "Disk/FileCall.h"
#include "Disk/MountWorkers.h"

#include <QTimer>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace brellin {

class FolderWatcher;
struct FolderChanges;

/// Reads one folder on a worker, watches it and asks for another reading after changes. Main thread only; calls of the
/// handlers may come from within `read`.
class FolderReader {
public:
    /// Why the folder is read: for the user a local folder is waited for a moment.
    enum class For { User, Watcher };
    struct Request {
        Location folder;
        HiddenEntries hidden = HiddenEntries::LeftOut;
        std::optional<DisplayOptions> order; ///< sort the rows on the worker, too
        ItemDetails details = ItemDetails::LeftOut;
    };
    struct Reading {
        Listing listing; ///< shares its items with the reading before if nothing changed
        std::optional<DisplayedItems> rows;
    };
    struct Handlers {
        std::function<void(Reading)> read;
        std::function<void()> notAnswering;
        /// These entries of the folder changed. Each change is told once, also if the folder is read or left for
        /// another reason. No names if the folder changed, but the system does not tell where.
        std::function<void(const Location &folder, const FolderChanges &changes)> entriesChanged;
        /// The folder changed; called once for a burst of events. Expected to call `read`.
        std::function<void()> changed;
    };

    FolderReader(MountWorkers &workers, const Volumes &volumes, Handlers handlers);
    ~FolderReader();

    /// Cancels a reading under way.
    void read(const Request &request, For whom);
    bool reading() const;
    /// Cancels the reading under way, keeps the watcher.
    void drop();
    /// Stops watching until the next reading for the user.
    void unwatch();

    /// Last listing and its folder. Emptied when a reading of another folder takes longer.
    const FileItems &listing() const { return m_listing; }
    const Location &folder() const { return m_folder; }

private:
    struct Answer;
    struct Relay;

    std::function<Answer(const JobControl &)> work(const Request &request, For whom) const;
    void take(Answer answer, const Location &folder);
    void gaveUp(const Location &folder);
    void heard();
    void tellChanges();
    bool tellEntries();

    MountWorkers &m_workers;
    const Volumes &m_volumes;
    const Handlers m_handlers;
    FileItems m_listing;
    Location m_folder; ///< of `m_listing`
    FileCall<Answer> m_call;
    QTimer m_soon;
    Mailbox m_mailbox;              ///< for watcher events
    std::shared_ptr<Relay> m_relay; ///< connects watchers to this reader
    std::shared_ptr<FolderWatcher> m_watcher;
    std::chrono::steady_clock::time_point m_lastEnded;
    std::chrono::steady_clock::duration m_lastTook{};
};

} // namespace brellin
