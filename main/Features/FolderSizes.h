#pragma once

#include "Base/Job.h"
#include "Base/Location.h"
#include "Base/Published.h"
#include "Base/Result.h"
#include "Disk/Volumes.h"
#include "Features/FolderCount.h"
#include "System/Clock.h"
#include "System/UserDefaults.h"

#include <QPointer>
#include <QThreadPool>
#include <QTimer>

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace brellin {

/// The known size of a folder.
struct FolderSize {
    std::int64_t bytes = 0;
    std::int64_t files = 0;
    enum class State {
        Current,
        Stale, ///< older than five minutes, or changed since
        Capped ///< a lower bound: counting stopped at the limit; `calculate` completes it
    };
    State state = State::Current;

    bool operator==(const FolderSize &) const = default;
};

/// Counts folders on workers and caches their sizes until the program ends. Lives on the main thread; the settings,
/// volumes and clock must outlive it.
class FolderSizes : public Model<FolderSizes> {
public:
    /// Limit of entries for counts started by request().
    static constexpr std::int64_t automaticLimit = 200'000;

    FolderSizes(const UserDefaults &defaults, const Volumes &volumes, Clock &clock,
                std::int64_t limit = automaticLimit);
    ~FolderSizes() override;

    /// The cached size; nullopt if the folder was not counted yet.
    std::optional<FolderSize> size(const Location &folder) const;
    /// Sets the folders on display, visible ones first: unknown and stale ones are counted in this order. The first
    /// `onScreen` are counted again as they become older than five minutes. Replaces the owner's previous request; ends
    /// with the owner's destruction.
    void request(QObject *owner, const std::vector<Location> &folders, std::size_t onScreen = 0);
    /// Announces and recounts what became too old on screen. Called every half minute.
    void age();
    /// Counts a folder without limit, before all others ("Berechnen").
    void calculate(const Location &folder);
    /// Cancels `calculate`; keeps the previous size.
    void cancel(const Location &folder);
    /// Whether a folder is being counted without limit, or is queued for it.
    bool calculating(const Location &folder) const;
    /// Whether a folder is being counted or queued.
    bool pending(const Location &folder) const;
    /// Drops the cached sizes of the folders below `parent`.
    void forget(const Location &parent);
    /// Call after a change of this entry: marks the folders above it as stale, and recounts those on display.
    void touched(const Location &entry);
    /// The same if any of the entries of `folder` may have changed.
    void touchedIn(const Location &folder);
    /// Calls `heard` with the folders whose sizes have changed, in batches, until `receiver` is destroyed.
    void observe(QObject *receiver, std::function<void(const std::vector<Location> &changed)> heard);

private:
    using Moment = std::chrono::steady_clock::time_point;
    struct Known {
        FolderCount count;
        Instant when;
        bool touched = false;
        Moment notBefore; ///< earliest recount, so that a constantly changing folder is not counted all the time
    };
    struct Wish {
        QObject *owner = nullptr;
        std::set<std::string> folders;
        std::vector<std::string> onScreen;
        std::deque<std::string> waiting;        ///< to be counted, next one first
        std::deque<std::string> networkWaiting; ///< those found to be on network volumes
    };
    struct Counted {
        enum class Outcome { Counted, Failed, Cancelled, OnNetwork };
        Outcome outcome = Outcome::Failed;
        FolderCount count;
        std::chrono::steady_clock::duration taken{};
    };
    /// Runs one count at a time. Separate lanes, so that neither an unresponsive server nor a full count blocks the
    /// others.
    struct Lane {
        std::shared_ptr<QThreadPool> pool;
        Job<Counted> job;
        std::string folder;    ///< being counted
        bool outdated = false; ///< the folder changed during the count
    };
    struct Observer {
        QPointer<QObject> receiver;
        std::function<void(const std::vector<Location> &)> heard;
    };

    bool isWished(const std::string &folder) const;
    bool isDue(const std::string &folder) const;
    bool isStale(const Known &known) const;
    bool countsNetworks() const;
    Wish &wishOf(QObject *owner);
    void endWish(const QObject *owner);
    void cancelUnwished(Lane &lane) const;
    void serve();
    std::optional<std::string> next(std::deque<std::string> Wish::*queue);
    void start(Lane &lane, const std::string &folder);
    static Counted count(const Location &folder, std::int64_t limit, const JobControl &control);
    void finished(Lane &lane, const Counted &counted);
    void store(const std::string &folder, const Counted &counted, bool outdated);
    void moveToNetwork(const std::string &folder);
    void markTouched(const std::string &folder);
    void countLater(const std::string &folder);
    void takeUpAgain();
    void announce(const std::string &folder);
    void tell();

    const UserDefaults &m_defaults;
    const Volumes &m_volumes;
    Clock &m_clock;
    const std::int64_t m_limit;
    std::map<std::string, Known> m_known; ///< by path
    std::set<std::string> m_onNetwork;    ///< folders found to be on network volumes
    std::set<std::string> m_failed;       ///< unreadable; retried once touched or forgotten
    std::vector<Wish> m_wishes;           ///< the latest first
    std::deque<std::string> m_calculate;  ///< queue for full counts
    std::set<std::string> m_later;        ///< changed folders, waiting for `m_again`
    Lane m_local;
    Lane m_network;
    Lane m_full;
    QTimer m_again;
    QTimer m_ageing;
    std::vector<Location> m_changed;
    QTimer m_telling;
    std::vector<Observer> m_observers;
};

} // namespace brellin
