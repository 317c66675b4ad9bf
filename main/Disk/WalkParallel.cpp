#include "Disk/Walk.h"

#include "Disk/WalkBranch.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <vector>

namespace brellin {

namespace {

/// Maximum number of waiting branches: few enough to bound memory and descriptors, enough to keep all threads busy.
constexpr std::size_t waitingBranches = 32;
constexpr std::size_t openFoldersPerThread = 12;
constexpr int mostThreads = 16;

/// State shared by the threads of one walk. A thread passes on the folders it finds while there is room, and otherwise
/// walks them itself. The walk is complete when no branch is waiting and no thread is working.
class BranchQueue {
public:
    explicit BranchQueue(WalkRun &run) : m_run(run) {}

    bool hasRoom() const { return m_count.load(std::memory_order_relaxed) < waitingBranches; }

    void put(WalkBranch branch)
    {
        {
            const std::scoped_lock lock(m_mutex);
            m_waiting.push_back(std::move(branch));
            m_count.store(m_waiting.size(), std::memory_order_relaxed);
        }
        m_changed.notify_one();
    }

    /// Returns the next branch and counts the caller as working; none when the walk is over.
    std::optional<WalkBranch> take()
    {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return !m_waiting.empty() || m_working == 0 || m_run.isOver(); });
        if (m_waiting.empty() || m_run.isOver())
            return std::nullopt;
        // Take the oldest, which is nearest to the top and probably the largest.
        std::optional<WalkBranch> branch(std::move(m_waiting.front()));
        m_waiting.pop_front();
        m_count.store(m_waiting.size(), std::memory_order_relaxed);
        ++m_working;
        return branch;
    }

    void endWork()
    {
        const std::scoped_lock lock(m_mutex);
        --m_working;
        if (m_working == 0 || m_run.isOver())
            m_changed.notify_all();
    }

private:
    WalkRun &m_run;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<WalkBranch> m_waiting;
    std::atomic<std::size_t> m_count = 0;
    int m_working = 1; ///< the starting thread
};

class Worker : public WalkSink {
public:
    using Visit = std::function<WalkStep(const WalkEntry &, int)>;

    Worker(WalkRun &run, BranchQueue &queue, const Visit &visit, int number)
        : m_queue(queue)
        , m_visit(visit)
        , m_number(number)
        , m_walker(run, *this, openFoldersPerThread)
    {
    }

    WalkStep show(const WalkEntry &entry) override { return m_visit(entry, m_number); }
    bool wantsBranches() const override { return m_queue.hasRoom(); }
    void take(WalkBranch branch) override { m_queue.put(std::move(branch)); }

    /// Walks one branch; the caller must be counted as working.
    Result<void> walk(WalkBranch branch) noexcept
    {
        Result<void> walked = m_walker.walk(std::move(branch));
        m_queue.endWork();
        return walked;
    }

    void walkWaiting() noexcept
    {
        while (std::optional<WalkBranch> branch = m_queue.take())
            (void)walk(*std::move(branch)); // the walker notes what cannot be read
    }

    void addTo(WalkOutcome &outcome) const
    {
        outcome.entries += m_walker.outcome().entries;
        const std::vector<Location> &unreadable = m_walker.outcome().unreadable;
        outcome.unreadable.insert(outcome.unreadable.end(), unreadable.begin(), unreadable.end());
    }

private:
    BranchQueue &m_queue;
    const Visit &m_visit;
    const int m_number;
    BranchWalker m_walker;
};

} // namespace

int walkThreads()
{
    return std::clamp(static_cast<int>(std::thread::hardware_concurrency()), 1, mostThreads);
}

Result<WalkOutcome> walkParallel(const Location &folder, const WalkOptions &options, const Worker::Visit &visit,
                                 const JobControl *control, int threads)
{
    WalkBranch top = TRY(WalkBranch::top(folder));
    WalkRun run{options, control, top.folder.mount()};
    BranchQueue queue(run);
    std::vector<std::unique_ptr<Worker>> workers;
    for (int number = 0; number < std::max(threads > 0 ? threads : walkThreads(), 1); ++number)
        workers.push_back(std::make_unique<Worker>(run, queue, visit, number));
    Result<void> started;
    {
        std::vector<std::jthread> helpers;
        try {
            for (std::size_t number = 1; number < workers.size(); ++number)
                helpers.emplace_back(&Worker::walkWaiting, workers[number].get());
        } catch (const std::system_error &) {
            // No more threads available: continue with those running.
        }
        started = workers[0]->walk(std::move(top));
        workers[0]->walkWaiting();
    }
    if (!started)
        return failure(started.error());
    WalkOutcome outcome;
    for (const auto &worker : workers)
        worker->addTo(outcome);
    return run.result(outcome);
}

} // namespace brellin
