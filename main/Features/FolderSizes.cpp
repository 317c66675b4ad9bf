#include "Features/FolderSizes.h"

#include "Base/AbandonablePool.h"
#include "Features/NetworkSettings.h"

#include <algorithm>
#include <ranges>
#include <utility>

namespace brellin {

using std::chrono::steady_clock;
using namespace std::chrono_literals;

namespace {

constexpr auto goodFor = 5min;
constexpr auto ageingInterval = 30s;

} // namespace

FolderSizes::FolderSizes(const UserDefaults &defaults, const Volumes &volumes, Clock &clock, std::int64_t limit)
    : m_defaults(defaults)
    , m_volumes(volumes)
    , m_clock(clock)
    , m_limit(limit)
{
    for (Lane *lane : {&m_local, &m_network, &m_full})
        lane->pool = abandonablePool(2s);
    m_telling.setSingleShot(true);
    connect(&m_telling, &QTimer::timeout, this, [this] { tell(); });
    m_again.setSingleShot(true);
    connect(&m_again, &QTimer::timeout, this, [this] { takeUpAgain(); });
    connect(&m_ageing, &QTimer::timeout, this, [this] { age(); });
}

FolderSizes::~FolderSizes() = default;

std::optional<FolderSize> FolderSizes::size(const Location &folder) const
{
    const auto found = m_known.find(folder.native());
    if (found == m_known.end())
        return std::nullopt;
    const FolderCount &count = found->second.count;
    const auto state = !count.complete          ? FolderSize::State::Capped
                       : isStale(found->second) ? FolderSize::State::Stale
                                                : FolderSize::State::Current;
    return FolderSize{count.bytes, count.files, state};
}

bool FolderSizes::isStale(const Known &known) const
{
    return known.touched || m_clock.now() - known.when > goodFor;
}

bool FolderSizes::isWished(const std::string &folder) const
{
    return std::ranges::any_of(m_wishes, [&](const Wish &wish) { return wish.folders.contains(folder); });
}

/// Whether to count a folder automatically. Not if it is known to exceed the limit: the count would only reach it
/// again.
bool FolderSizes::isDue(const std::string &folder) const
{
    const auto known = m_known.find(folder);
    if (known == m_known.end())
        return !m_failed.contains(folder);
    return isStale(known->second) && known->second.count.complete && known->second.count.entries <= m_limit;
}

bool FolderSizes::countsNetworks() const
{
    return folderSizesNetwork.isOn(m_defaults);
}

void FolderSizes::request(QObject *owner, const std::vector<Location> &folders, std::size_t onScreen)
{
    Wish &wish = wishOf(owner);
    wish.folders.clear();
    wish.onScreen.clear();
    for (const Location &folder : folders | std::views::take(onScreen))
        wish.onScreen.push_back(folder.native());
    if (!wish.onScreen.empty() && !m_ageing.isActive())
        m_ageing.start(ageingInterval);
    wish.waiting.clear();
    wish.networkWaiting.clear();
    for (const Location &folder : folders) {
        const std::string &path = folder.native();
        if (wish.folders.insert(path).second && isDue(path))
            (m_onNetwork.contains(path) ? wish.networkWaiting : wish.waiting).push_back(path);
    }
    cancelUnwished(m_local);
    cancelUnwished(m_network);
    serve();
}

void FolderSizes::age()
{
    bool anyOnScreen = false;
    for (const Wish &wish : m_wishes) {
        anyOnScreen = anyOnScreen || !wish.onScreen.empty();
        for (const std::string &folder : wish.onScreen) {
            const auto known = m_known.find(folder);
            if (known == m_known.end() || !isStale(known->second))
                continue;
            announce(folder);
            countLater(folder);
        }
    }
    if (!anyOnScreen)
        m_ageing.stop();
}

/// The owner's request, moved to the front.
FolderSizes::Wish &FolderSizes::wishOf(QObject *owner)
{
    const auto found = std::ranges::find(m_wishes, owner, &Wish::owner);
    if (found == m_wishes.end()) {
        m_wishes.insert(m_wishes.begin(), Wish{owner, {}, {}, {}, {}});
        connect(owner, &QObject::destroyed, this, [this, owner] { endWish(owner); });
    } else {
        std::rotate(m_wishes.begin(), found, found + 1);
    }
    return m_wishes.front();
}

void FolderSizes::endWish(const QObject *owner)
{
    std::erase_if(m_wishes, [&](const Wish &wish) { return wish.owner == owner; });
    cancelUnwished(m_local);
    cancelUnwished(m_network);
}

void FolderSizes::cancelUnwished(Lane &lane) const
{
    if (lane.job.running() && !isWished(lane.folder))
        lane.job.cancel();
}

void FolderSizes::calculate(const Location &folder)
{
    const std::string &path = folder.native();
    m_failed.erase(path);
    if (std::ranges::find(m_calculate, path) == m_calculate.end())
        m_calculate.push_front(path);
    announce(path);
    serve();
}

void FolderSizes::cancel(const Location &folder)
{
    const std::string &path = folder.native();
    if (std::erase(m_calculate, path) == 0)
        return;
    if (m_full.job.running() && m_full.folder == path)
        m_full.job.cancel();
    announce(path);
}

bool FolderSizes::calculating(const Location &folder) const
{
    return std::ranges::find(m_calculate, folder.native()) != m_calculate.end();
}

bool FolderSizes::pending(const Location &folder) const
{
    const std::string &path = folder.native();
    const auto isAt = [&](const Lane &lane) { return lane.job.running() && lane.folder == path; };
    if (isAt(m_local) || isAt(m_network) || isAt(m_full) || std::ranges::find(m_calculate, path) != m_calculate.end())
        return true;
    return isWished(path) && isDue(path) && (countsNetworks() || !m_onNetwork.contains(path));
}

void FolderSizes::forget(const Location &parent)
{
    const std::string &above = parent.native();
    const auto isBelow = [&](const std::string &path) {
        return path != above && isAtOrBelow(std::string_view(path), std::string_view(above));
    };
    std::vector<std::string> dropped;
    for (auto known = m_known.lower_bound(above); known != m_known.end() && known->first.starts_with(above);) {
        const bool below = isBelow(known->first);
        if (below)
            dropped.push_back(known->first);
        known = below ? m_known.erase(known) : std::next(known);
    }
    std::erase_if(m_failed, isBelow);
    std::erase_if(m_onNetwork, isBelow);
    std::erase_if(m_calculate, isBelow);
    for (Lane *lane : {&m_local, &m_network, &m_full}) {
        if (lane->job.running() && isBelow(lane->folder)) {
            lane->outdated = true;
            lane->job.cancel();
        }
    }
    for (const std::string &folder : dropped) {
        announce(folder);
        countLater(folder);
    }
}

void FolderSizes::touched(const Location &entry)
{
    for (Location place = standardised(entry);; place = place.parent_path()) {
        markTouched(place.native());
        if (!place.has_relative_path())
            return;
    }
}

void FolderSizes::touchedIn(const Location &folder)
{
    touched(folder);
    std::set<std::string> inside = m_failed;
    for (const auto &[path, known] : m_known)
        inside.insert(path);
    for (const Lane *lane : {&m_local, &m_network, &m_full})
        inside.insert(lane->folder);
    for (const std::string &path : inside) {
        if (Location(path).parent_path() == folder)
            markTouched(path);
    }
}

void FolderSizes::markTouched(const std::string &folder)
{
    for (Lane *lane : {&m_local, &m_network, &m_full})
        lane->outdated = lane->outdated || (lane->job.running() && lane->folder == folder);
    if (m_failed.erase(folder) > 0)
        countLater(folder);
    const auto known = m_known.find(folder);
    if (known == m_known.end() || known->second.touched)
        return;
    known->second.touched = true;
    announce(folder);
    countLater(folder);
}

/// Coalesces bursts: recounts 1 s after the first change.
void FolderSizes::countLater(const std::string &folder)
{
    if (!isWished(folder))
        return;
    m_later.insert(folder);
    if (!m_again.isActive())
        m_again.start(1s);
}

void FolderSizes::takeUpAgain()
{
    const Moment now = steady_clock::now();
    std::set<std::string> waiting;
    for (const std::string &folder : std::exchange(m_later, {})) {
        const auto known = m_known.find(folder);
        if (known != m_known.end() && known->second.notBefore > now) {
            waiting.insert(folder);
            continue;
        }
        for (Wish &wish : m_wishes) {
            if (wish.folders.contains(folder))
                (m_onNetwork.contains(folder) ? wish.networkWaiting : wish.waiting).push_back(folder);
        }
    }
    m_later.merge(waiting);
    if (!m_later.empty())
        m_again.start(1s);
    serve();
}

void FolderSizes::serve()
{
    if (!m_full.job.running() && !m_calculate.empty())
        start(m_full, m_calculate.front());
    if (!m_local.job.running()) {
        if (const auto folder = next(&Wish::waiting))
            start(m_local, *folder);
    }
    if (!m_network.job.running() && countsNetworks()) {
        if (const auto folder = next(&Wish::networkWaiting))
            start(m_network, *folder);
    }
}

/// Pops the next folder that still needs counting.
std::optional<std::string> FolderSizes::next(std::deque<std::string> Wish::*queue)
{
    for (Wish &wish : m_wishes) {
        std::deque<std::string> &waiting = wish.*queue;
        while (!waiting.empty()) {
            std::string folder = std::move(waiting.front());
            waiting.pop_front();
            if (isDue(folder))
                return folder;
        }
    }
    return std::nullopt;
}

void FolderSizes::start(Lane &lane, const std::string &folder)
{
    lane.folder = folder;
    lane.outdated = false;
    const bool full = &lane == &m_full;
    const bool mayBeNetwork = &lane == &m_network || (full && countsNetworks());
    const std::int64_t limit = full ? FolderCount::noLimit : m_limit;
    lane.job.start(
        *lane.pool,
        [location = Location(folder), volumes = &m_volumes, mayBeNetwork, limit](JobControl &control) {
            // isLocal() reads the mount table each time, which is too slow for the main thread.
            if (!mayBeNetwork && !volumes->isLocal(location))
                return Counted{Counted::Outcome::OnNetwork, {}, {}};
            return count(location, limit, control);
        },
        [this, &lane](const Counted &counted) { finished(lane, counted); });
}

FolderSizes::Counted FolderSizes::count(const Location &folder, std::int64_t limit, const JobControl &control)
{
    const Moment begun = steady_clock::now();
    const Result<FolderCount> done = countFolder(folder, &control, limit);
    if (!done)
        return {done.error().isCancelled() ? Counted::Outcome::Cancelled : Counted::Outcome::Failed, {}, {}};
    return {Counted::Outcome::Counted, *done, steady_clock::now() - begun};
}

void FolderSizes::finished(Lane &lane, const Counted &counted)
{
    const std::string folder = lane.folder;
    // After a cancel it may have been requested again.
    if (&lane == &m_full && counted.outcome != Counted::Outcome::Cancelled)
        std::erase(m_calculate, folder);
    switch (counted.outcome) {
    case Counted::Outcome::Counted:
        store(folder, counted, lane.outdated);
        break;
    case Counted::Outcome::OnNetwork:
        moveToNetwork(folder);
        break;
    case Counted::Outcome::Failed:
        m_failed.insert(folder);
        break;
    case Counted::Outcome::Cancelled:
        // It may have been requested again meanwhile.
        countLater(folder);
        break;
    }
    announce(folder);
    serve();
}

void FolderSizes::store(const std::string &folder, const Counted &counted, bool outdated)
{
    const auto known = m_known.find(folder);
    // A count up to the limit must not replace a complete one.
    if (!counted.count.complete && known != m_known.end() && known->second.count.complete)
        return;
    const auto pause = std::max<steady_clock::duration>(1s, 3 * counted.taken);
    m_known[folder] = Known{counted.count, m_clock.now(), outdated, steady_clock::now() + pause};
    if (outdated)
        countLater(folder);
}

void FolderSizes::moveToNetwork(const std::string &folder)
{
    m_onNetwork.insert(folder);
    for (Wish &wish : m_wishes) {
        if (wish.folders.contains(folder))
            wish.networkWaiting.push_back(folder);
    }
}

void FolderSizes::announce(const std::string &folder)
{
    m_changed.emplace_back(folder);
    if (!m_telling.isActive())
        m_telling.start(100ms);
}

void FolderSizes::tell()
{
    const std::vector<Location> changed = std::exchange(m_changed, {});
    std::erase_if(m_observers, [](const Observer &one) { return one.receiver.isNull(); });
    const std::vector<Observer> observers = m_observers; // copied: an observer may add another
    for (const Observer &observer : observers) {
        if (observer.receiver)
            observer.heard(changed);
    }
}

void FolderSizes::observe(QObject *receiver, std::function<void(const std::vector<Location> &changed)> heard)
{
    m_observers.push_back({receiver, std::move(heard)});
}

} // namespace brellin
