#pragma once

#include "Disk/CopyEntry.h"

#include <chrono>
#include <functional>

namespace brellin {

/// Progress of a copy, shared by all its parts: counts, reports and checks for a cancel.
class CopyPulse {
public:
    /// `current` returns the path being copied; called only for reports.
    CopyPulse(const CopyOptions &options, std::function<Location()> current);

    void addBytes(std::int64_t bytes) { m_progress.bytes += bytes; }
    std::int64_t bytes() const { return m_progress.bytes; }
    /// Resets the count before copying a file again.
    void takeBackTo(std::int64_t bytes) { m_progress.bytes = bytes; }
    void addFile() { ++m_progress.files; }
    /// Call at least every 50 ms. Fails if the copy was cancelled.
    Result<void> beat();
    /// The final report of a complete copy.
    CopyProgress finished();

private:
    using Clock = std::chrono::steady_clock;

    const CopyOptions &m_options;
    std::function<Location()> m_current;
    CopyProgress m_progress;
    Clock::time_point m_reported = Clock::now();
};

} // namespace brellin
