#include "Base/OpenWork.h"

#include <condition_variable>
#include <mutex>
#include <unordered_map>

/// Asked for by the thread sanitizer, by nobody else. Qt is not instrumented, so what it does under its locks looks like races:
/// left out. Here, for whatever has workers has this file too, and the programs that tests start do not see their environment.
extern "C" const char *__tsan_default_options() // NOLINT(bugprone-reserved-identifier): the name is the sanitizer's own
{
    return "ignore_noninstrumented_modules=1";
}

namespace brellin {

namespace {

using std::chrono::steady_clock;

/// What begins while the rest is awaited is cancelled at least this often.
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

/// Never destroyed: a thread may come back after everything else.
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
        // What goes with the control may itself hold tokens: not under the lock, and not after the work counts as over.
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
