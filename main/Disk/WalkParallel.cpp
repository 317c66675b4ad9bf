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

/// Branches that wait for a thread. So few that memory and open handles stay bounded, so many that nobody waits.
constexpr std::size_t waitingBranches = 32;
constexpr std::size_t openFoldersPerThread = 12;
constexpr int mostThreads = 16;

/// What the threads of one walk share. A thread that finds a folder passes it on while there is room, and else walks it
/// itself; the walk is complete when nothing waits and nobody works.
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

    /// The next branch, with which the caller counts as working; none when the walk is over.
    std::optional<WalkBranch> take()
    {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return !m_waiting.empty() || m_working == 0 || m_run.isOver(); });
        if (m_waiting.empty() || m_run.isOver())
            return std::nullopt;
        // The oldest: it lies nearest to the top and is likely the biggest.
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
    int m_working = 1; ///< whoever starts
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

    /// Walks one branch; the caller has been counted as working.
    Result<void> walk(WalkBranch branch) noexcept
    {
        Result<void> walked = m_walker.walk(std::move(branch));
        m_queue.endWork();
        return walked;
    }

    void walkWaiting() noexcept
    {
        while (std::optional<WalkBranch> branch = m_queue.take()) {
            if (!walk(*std::move(branch)))
                ++m_unreadable;
        }
    }

    void addTo(WalkOutcome &outcome) const
    {
        outcome.entries += m_walker.outcome().entries;
        outcome.unreadableFolders += m_walker.outcome().unreadableFolders + m_unreadable;
    }

private:
    BranchQueue &m_queue;
    const Visit &m_visit;
    const int m_number;
    BranchWalker m_walker;
    std::int64_t m_unreadable = 0;
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
            // The system has no more threads: those that are there do the work.
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
