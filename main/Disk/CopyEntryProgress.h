#pragma once

#include "Disk/CopyEntry.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace brellin {

/// Progress of a copy, shared by all its parts and threads: counts, reports and checks for a cancel. Reports only on the
/// thread that created it.
class CopyPulse {
public:
    /// `current` returns the path being copied; called only for reports.
    CopyPulse(const CopyOptions &options, std::function<Location()> current);

    /// Negative before copying a file again.
    void addBytes(std::int64_t bytes) { m_bytes.fetch_add(bytes, std::memory_order_relaxed); }
    void addFile() { m_files.fetch_add(1, std::memory_order_relaxed); }
    /// Makes beat() fail on all threads.
    void stop() { m_stopped.store(true, std::memory_order_relaxed); }
    /// Call at least every 50 ms. Fails if the copy was cancelled or stopped. Blocks while another thread reports.
    Result<void> beat();
    /// The final report of a complete copy.
    CopyProgress finished();

private:
    using Clock = std::chrono::steady_clock;

    bool isCancelled() const;
    CopyProgress soFar() const;
    void report();
    void setReporting(bool reporting);
    void awaitReport();

    const CopyOptions &m_options;
    std::function<Location()> m_current;
    std::atomic<std::int64_t> m_bytes = 0;
    std::atomic<std::int64_t> m_files = 0;
    std::atomic<bool> m_stopped = false;
    const std::thread::id m_reporter = std::this_thread::get_id();
    Clock::time_point m_reported = Clock::now();
    std::mutex m_mutex; ///< guards the members below
    std::condition_variable m_reportEnded;
    bool m_reporting = false;
};

} // namespace brellin
