#pragma once

#include "Base/JobControl.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <functional>
#include <system_error>
#include <thread>
#include <vector>

namespace brellin {

/// Calls `work` for each index below `count` on all cores. Stops early when cancelled. `work` must not throw.
inline void parallelFor(std::size_t count, const std::function<void(std::size_t)> &work,
                        const JobControl *control = nullptr)
{
    std::atomic<std::size_t> next = 0;
    const auto run = [&] {
        for (std::size_t i = next++; i < count && !(control && control->cancelled()); i = next++)
            work(i);
    };
    const std::size_t threads = std::min<std::size_t>(count, std::max(1u, std::thread::hardware_concurrency()));
    std::vector<std::jthread> others;
    try {
        for (std::size_t i = 1; i < threads; ++i)
            others.emplace_back(run);
    } catch (const std::system_error &) {
        // Out of threads: continue with those that exist.
    }
    run();
}

} // namespace brellin
