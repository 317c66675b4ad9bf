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

/// Worker threads for file calls: each call to a local volume gets a thread of its own, calls to one network mount
/// share one and run in turn. A blocked call delays only its own mount, and the program's end by 2 s.
class MountWorkers {
public:
    /// A call that takes this long counts as not responding.
    static constexpr std::chrono::milliseconds usualTimeOut{10'000};

    /// The main thread waits this long for a local volume, so that fast answers show at once.
    static constexpr std::chrono::milliseconds usualPatience{150};

    explicit MountWorkers(const Volumes &volumes, std::chrono::milliseconds timeOut = usualTimeOut,
                          std::chrono::milliseconds patience = usualPatience);
    /// Waits up to 2 s for running calls, then abandons them.
    ~MountWorkers();
    MountWorkers(const MountWorkers &) = delete;
    MountWorkers &operator=(const MountWorkers &) = delete;

    enum class Turn {
        OfMount, ///< after earlier calls to the same network mount
        AtOnce   ///< on its own thread in any case, for long work such as a search
    };
    /// Runs `work`, which must not throw, on a thread for `location`. If the system provides no thread, runs it when
    /// one becomes free or, if there is none at all, synchronously. Thread-safe.
    void run(const Location &location, Turn turn, std::function<void()> work);

    /// Decided by the mount table, without accessing the volume.
    bool isLocal(const Location &location) const { return m_volumes.isLocal(location); }
    /// Reports that a caller waited for this network mount for the whole time-out.
    void giveUp(const Location &location);
    /// False after giveUp() until the blocked call returns.
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
    mutable std::map<std::string, std::shared_ptr<Lane>> m_lanes; ///< keyed by mount point
};

} // namespace brellin
