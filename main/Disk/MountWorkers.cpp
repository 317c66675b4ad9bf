#include "Disk/MountWorkers.h"

#include "Base/OpenWork.h"
#include "Disk/MountTable.h"

#include <condition_variable>
#include <deque>
#include <system_error>
#include <thread>
#include <utility>

namespace brellin {

namespace {

/// Time to wait for running calls at exit.
constexpr std::chrono::seconds lastWait{2};

} // namespace

/// The running threads. Shared with them, since an abandoned one may outlive the workers.
struct MountWorkers::Active {
    using Work = std::function<void()>;
    std::mutex mutex;
    std::condition_variable changed;
    int threads = 0;
    std::deque<Work> waiting; ///< only if the system provides no more threads: waits for one to become free

    /// If no thread can be created, queues the work or runs it synchronously, but never drops it.
    static void launch(const std::shared_ptr<Active> &active, Work work)
    {
        std::unique_lock lock(active->mutex);
        try {
            std::thread([active, work]() mutable { active->serve(std::move(work)); }).detach();
            ++active->threads;
        } catch (const std::system_error &) {
            if (active->threads > 0) {
                active->waiting.push_back(std::move(work));
                return;
            }
            lock.unlock();
            work();
        }
    }

    void serve(Work work)
    {
        while (work) {
            work();
            work = nullptr; // destroy captures before the thread counts as ended
            const std::scoped_lock lock(mutex);
            if (waiting.empty()) {
                --threads;
                changed.notify_all();
                return;
            }
            work = std::move(waiting.front());
            waiting.pop_front();
        }
    }
};

struct MountWorkers::Lane {
    std::mutex mutex;
    std::deque<std::function<void()>> waiting;
    bool running = false;
    bool givenUp = false; ///< a caller has given up waiting for the running call

    /// The next call; if there is none, returns an empty one and marks the lane as idle.
    std::function<void()> next()
    {
        const std::scoped_lock lock(mutex);
        running = !waiting.empty();
        givenUp = false;
        if (!running)
            return {};
        std::function<void()> work = std::move(waiting.front());
        waiting.pop_front();
        return work;
    }

    static void serve(const std::shared_ptr<Lane> &lane)
    {
        while (const std::function<void()> work = lane->next())
            work();
    }
};

MountWorkers::MountWorkers(const Volumes &volumes, std::chrono::milliseconds timeOut,
                           std::chrono::milliseconds patience)
    : m_volumes(volumes)
    , m_timeOut(timeOut)
    , m_patience(patience)
    , m_active(std::make_shared<Active>())
{
}

MountWorkers::~MountWorkers()
{
    std::unique_lock lock(m_active->mutex);
    m_active->changed.wait_for(lock, lastWait, [this] { return m_active->threads == 0; });
}

std::shared_ptr<MountWorkers::Lane> MountWorkers::laneOf(const Location &location) const
{
    const std::vector<Mount> table = currentMountTable();
    const Mount *mount = mountHolding(table, location.native());
    const std::scoped_lock lock(m_mutex);
    std::shared_ptr<Lane> &lane = m_lanes[mount != nullptr ? mount->point : std::string()];
    if (!lane)
        lane = std::make_shared<Lane>();
    return lane;
}

void MountWorkers::run(const Location &location, Turn turn, std::function<void()> work)
{
    work = [open = OpenWork::begin(), wanted = std::move(work)] { wanted(); };
    if (turn == Turn::AtOnce || isLocal(location)) {
        Active::launch(m_active, std::move(work));
        return;
    }
    const std::shared_ptr<Lane> lane = laneOf(location);
    {
        const std::scoped_lock lock(lane->mutex);
        lane->waiting.push_back(std::move(work));
        if (std::exchange(lane->running, true))
            return;
    }
    Active::launch(m_active, [lane] { Lane::serve(lane); });
}

void MountWorkers::giveUp(const Location &location)
{
    const std::shared_ptr<Lane> lane = laneOf(location);
    const std::scoped_lock lock(lane->mutex);
    lane->givenUp = lane->running;
}

bool MountWorkers::answers(const Location &location) const
{
    if (isLocal(location))
        return true;
    const std::shared_ptr<Lane> lane = laneOf(location);
    const std::scoped_lock lock(lane->mutex);
    return !lane->givenUp;
}

} // namespace brellin
