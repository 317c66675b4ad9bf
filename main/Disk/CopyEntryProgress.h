#pragma once

#include "Disk/CopyEntry.h"

#include <chrono>
#include <functional>

namespace brellin {

/// What every part of a copy calls while it works: counts, reports now and then, and says when to stop.
class CopyPulse {
public:
    /// `current` makes the location of what is being copied; it is asked only when a report is due.
    CopyPulse(const CopyOptions &options, std::function<Location()> current);

    void addBytes(std::int64_t bytes) { m_progress.bytes += bytes; }
    std::int64_t bytes() const { return m_progress.bytes; }
    /// What was copied beyond `bytes` does not count: it is copied again.
    void takeBackTo(std::int64_t bytes) { m_progress.bytes = bytes; }
    void addFile() { ++m_progress.files; }
    /// To be called at least every 50 ms. Fails when the copy was cancelled.
    Result<void> beat();
    /// The last report, of a complete copy.
    CopyProgress finished();

private:
    using Clock = std::chrono::steady_clock;

    const CopyOptions &m_options;
    std::function<Location()> m_current;
    CopyProgress m_progress;
    Clock::time_point m_reported = Clock::now();
};

} // namespace brellin
