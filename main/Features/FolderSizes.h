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

/// The size of a folder as far as it is known.
struct FolderSize {
    std::int64_t bytes = 0;
    std::int64_t files = 0;
    enum class State {
        Current,
        Stale, ///< older than five minutes, or something in it has changed since
        Capped ///< counting stopped at the limit: a part, which `calculate` completes
    };
    State state = State::Current;

    bool operator==(const FolderSize &) const = default;
};

/// Counts folders in the background and keeps their sizes for the session. Lives on the main thread; the settings, volumes
/// and clock outlive it.
class FolderSizes : public Model<FolderSizes> {
public:
    /// So many entries of one folder are counted unasked.
    static constexpr std::int64_t automaticLimit = 200'000;

    FolderSizes(const UserDefaults &defaults, const Volumes &volumes, Clock &clock,
                std::int64_t limit = automaticLimit);
    ~FolderSizes() override;

    /// What is known now; nothing of a folder that was not counted yet.
    std::optional<FolderSize> size(const Location &folder) const;
    /// The folders that somebody shows, the visible ones first: those not known or stale are counted in this order. Replaces
    /// the owner's earlier wish; his death ends it.
    void request(QObject *owner, const std::vector<Location> &folders);
    /// Counts a folder to the end, before all others ("Berechnen").
    void calculate(const Location &folder);
    /// Gives up what `calculate` has begun; what was known before stays.
    void cancel(const Location &folder);
    /// Whether a folder is counted to the end, or waits for that.
    bool calculating(const Location &folder) const;
    /// Whether a folder waits for its count or is being counted.
    bool pending(const Location &folder) const;
    /// Drops what is known of the folders below `parent`.
    void forget(const Location &parent);
    /// Something happened to this entry: the folders that hold it are stale, and counted again where somebody shows them.
    void touched(const Location &entry);
    /// Calls `heard` with the folders whose size has changed, several at a time, for as long as `receiver` lives.
    void observe(QObject *receiver, std::function<void(const std::vector<Location> &changed)> heard);

private:
    using Moment = std::chrono::steady_clock::time_point;
    struct Known {
        FolderCount count;
        Instant when;
        bool touched = false;
        Moment notBefore; ///< a folder that changes all the time is not counted all the time
    };
    struct Wish {
        QObject *owner = nullptr;
        std::set<std::string> folders;
        std::deque<std::string> waiting;        ///< to be counted, the first next
        std::deque<std::string> networkWaiting; ///< those of them that turned out to lie on network volumes
    };
    struct Counted {
        enum class Outcome { Counted, Failed, Cancelled, OnNetwork };
        Outcome outcome = Outcome::Failed;
        FolderCount count;
        std::chrono::steady_clock::duration taken{};
    };
    /// One count at a time each, so that a server that does not answer and a count to the end hold up nothing else.
    struct Lane {
        std::shared_ptr<QThreadPool> pool;
        Job<Counted> job;
        std::string folder;    ///< at work on
        bool outdated = false; ///< something happened to it since the count began
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
    std::set<std::string> m_onNetwork;    ///< folders met on network volumes
    std::set<std::string> m_failed;       ///< could not be read; tried again once they are touched or forgotten
    std::vector<Wish> m_wishes;           ///< the latest first
    std::deque<std::string> m_calculate;  ///< to be counted to the end
    std::set<std::string> m_later;        ///< touched, waiting for `m_again`
    Lane m_local;
    Lane m_network;
    Lane m_full;
    QTimer m_again;
    std::vector<Location> m_changed;
    QTimer m_telling;
    std::vector<Observer> m_observers;
};

} // namespace brellin
