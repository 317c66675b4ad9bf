#include "Disk/Walk.h"
#include "Transfers/TransferEngine.h"

#include <atomic>

namespace brellin {

TransferSize TransferEngine::measure(const Location &entry, const JobControl *control, std::optional<Deadline> deadline)
{
    const Result<FileAttributes> attributes = readAttributes(entry);
    if (!attributes)
        return {};
    if (!attributes->isFolder())
        return {attributes->isFile() ? attributes->size : 0, 1};
    std::atomic<std::int64_t> bytes = 0;
    std::atomic<std::int64_t> files = 0;
    WalkOptions options;
    options.attributes = Attribute::Size;
    const auto count = [&](const WalkEntry &found, int) {
        if (found.attributes.isFolder())
            return deadline && std::chrono::steady_clock::now() > *deadline ? WalkStep::Stop : WalkStep::Continue;
        if (found.attributes.isFile())
            bytes.fetch_add(found.attributes.size, std::memory_order_relaxed);
        files.fetch_add(1, std::memory_order_relaxed);
        return WalkStep::Continue;
    };
    // Unreadable entries are reported when they are copied.
    (void)walkParallel(entry, options, count, control);
    return {bytes, files};
}

} // namespace brellin
