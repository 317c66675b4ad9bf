#pragma once

#include "Base/Location.h"
#include "Disk/Volumes.h"

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>

namespace brellin {

/// The threads on which file calls wait for their volume, so that nobody else does: calls to a local volume each have one
/// of their own, those to a network mount share one that takes them in turn. A call that never comes back holds up only its
/// own mount, and the end of the program for a moment.
class MountWorkers {
public:
    /// A mount counts as not answering when a call to it has taken so long.
    static constexpr std::chrono::milliseconds usualTimeOut{10'000};

    /// So long the main thread waits for a local volume, so that what is there at once shows at once.
    static constexpr std::chrono::milliseconds usualPatience{150};

    explicit MountWorkers(const Volumes &volumes, std::chrono::milliseconds timeOut = usualTimeOut,
                          std::chrono::milliseconds patience = usualPatience);
    /// Waits for calls under way, but not for those that do not come back.
    ~MountWorkers();
    MountWorkers(const MountWorkers &) = delete;
    MountWorkers &operator=(const MountWorkers &) = delete;

    enum class Turn {
        OfMount, ///< after the calls to the same network mount that came before
        AtOnce   ///< on a thread of its own in any case: long work, such as a search
    };
    /// Runs `work`, which must not throw, on the thread for `location`; where the system gives no thread, as soon as one
    /// comes back, or at once where none is out. Callable from every thread.
    void run(const Location &location, Turn turn, std::function<void()> work);

    /// By the mount table, without touching the volume.
    bool isLocal(const Location &location) const { return m_volumes.isLocal(location); }
    /// Somebody has waited for a call to this network mount for the whole time-out.
    void giveUp(const Location &location);
    /// False from then on until the call that holds up the mount comes back.
    bool answers(const Location &location) const;
    std::chrono::milliseconds timeOut() const { return m_timeOut; }
    std::chrono::milliseconds patience() const { return m_patience; }

private:
    struct Lane;
    struct Active;
    std::shared_ptr<Lane> laneOf(const Location &location) const;

    const Volumes &m_volumes;
    const std::chrono::milliseconds m_timeOut;
    const std::chrono::milliseconds m_patience;
    const std::shared_ptr<Active> m_active;
    mutable std::mutex m_mutex;
    mutable std::map<std::string, std::shared_ptr<Lane>> m_lanes; ///< by mount point
};

} // namespace brellin
