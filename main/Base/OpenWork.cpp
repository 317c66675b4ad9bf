#include "Base/OpenWork.h"

#include <condition_variable>
#include <mutex>
#include <unordered_map>

/// Called by the thread sanitizer only. Qt is not instrumented, so its lock-protected accesses would be reported as
/// races. Defined here, since every program with workers links this file, and an environment variable would not reach
/// the programs that tests start.
// NOLINTNEXTLINE(bugprone-reserved-identifier, readability-identifier-naming): the name is the sanitizer's own
extern "C" const char *__tsan_default_options()
{
    return "ignore_noninstrumented_modules=1";
}

namespace brellin {

namespace {

using std::chrono::steady_clock;

/// Interval for cancelling work that was started during the wait.
constexpr std::chrono::milliseconds rhythm{20};

struct Registry {
    std::mutex mutex;
    std::condition_variable changed;
    std::unordered_map<const void *, std::shared_ptr<JobControl>> open;

    bool waitUntil(steady_clock::time_point end)
    {
        std::unique_lock lock(mutex);
        return changed.wait_until(lock, end, [this] { return open.empty(); });
    }

    void cancelAll()
    {
        const std::scoped_lock lock(mutex);
        for (const auto &[key, control] : open)
            if (control)
                control->cancel();
    }
};

/// Never destroyed: a thread may still use it during exit.
Registry &registry()
{
    static auto *const only = new Registry;
    return *only;
}

struct Entry {
    explicit Entry(std::shared_ptr<JobControl> control)
    {
        const std::scoped_lock lock(registry().mutex);
        registry().open.emplace(this, std::move(control));
    }
    ~Entry()
    {
        // Destroying the control may release other tokens: do it without the lock, and before this work counts as
        // finished.
        release();
        const std::scoped_lock lock(registry().mutex);
        registry().open.erase(this);
        registry().changed.notify_all();
    }
    Entry(const Entry &) = delete;
    Entry &operator=(const Entry &) = delete;

private:
    void release() const
    {
        std::shared_ptr<JobControl> going;
        const std::scoped_lock lock(registry().mutex);
        going.swap(registry().open.at(this));
    }
};

} // namespace

OpenWork::Token OpenWork::begin(std::shared_ptr<JobControl> control)
{
    return std::make_shared<const Entry>(std::move(control));
}

bool OpenWork::wait(std::chrono::milliseconds patience)
{
    return registry().waitUntil(steady_clock::now() + patience);
}

bool OpenWork::cancelAndWait(std::chrono::milliseconds patience)
{
    const auto end = steady_clock::now() + patience;
    do {
        registry().cancelAll();
        if (registry().waitUntil(std::min(end, steady_clock::now() + rhythm)))
            return true;
    } while (steady_clock::now() < end);
    return false;
}

} // namespace brellin
