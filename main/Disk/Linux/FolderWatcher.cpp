#include "Disk/FolderWatcher.h"

#include "Base/Descriptor.h"
#include "Disk/FileAttributes.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <map>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brellin {

namespace {

constexpr int lookingInterval = 2000; // milliseconds
constexpr std::size_t mostNames = 1000;
constexpr std::uint32_t events = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_CLOSE_WRITE | IN_MODIFY |
                                 IN_ATTRIB | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;
constexpr std::uint32_t goneEvents = IN_DELETE_SELF | IN_MOVE_SELF | IN_UNMOUNT;

/// Compared when polling.
struct FolderTimes {
    FileIdentity identity;
    timespec modified{};

    bool operator==(const FolderTimes &other) const
    {
        return identity == other.identity && modified.tv_sec == other.modified.tv_sec &&
               modified.tv_nsec == other.modified.tv_nsec;
    }
};

std::optional<FolderTimes> timesOf(const std::string &folder)
{
    struct stat status{};
    if (::stat(folder.c_str(), &status) != 0 || !S_ISDIR(status.st_mode))
        return std::nullopt;
    return FolderTimes{{status.st_dev, status.st_ino}, status.st_mtim};
}

/// Whether watches or instances are exhausted, which is not the folder's fault.
bool isExhausted(int error)
{
    return error == ENOSPC || error == EMFILE || error == ENFILE || error == ENOMEM;
}

/// One inotify instance per folder: in a shared one, two watchers of a folder would get the same watch.
Result<Descriptor> eventsOf(const std::string &folder)
{
    Descriptor instance(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
    if (!instance.isOpen() || ::inotify_add_watch(instance.number(), folder.c_str(), events) < 0)
        return failure(Failure::lastSystem());
    return instance;
}

} // namespace

struct FolderWatcher::State {
    std::string folder;
    Heard heard;
    Descriptor source; ///< closed if the folder is polled
    std::mutex mutex;  ///< protects the members below
    FolderChanges changes;
    std::optional<FolderTimes> times;
    bool told = false;
    bool closed = false;

    void tell()
    {
        if (!std::exchange(told, true))
            heard();
    }

    void readEvents()
    {
        const std::scoped_lock lock(mutex);
        // Remaining events keep the descriptor ready, so take() need not wait for the end of a burst.
        if (!closed && readSome())
            tell();
    }

    /// Reads one buffer of events; false if none is waiting. The mutex must be locked.
    bool readSome()
    {
        alignas(inotify_event) std::array<char, 16 * 1024> buffer;
        const ssize_t length = ::read(source.number(), buffer.data(), buffer.size());
        if (length <= 0)
            return false;
        for (const char *at = buffer.data(); at < buffer.data() + length;) {
            const auto *event = reinterpret_cast<const inotify_event *>(at);
            take(*event);
            at += sizeof(inotify_event) + event->len;
        }
        return true;
    }

    void take(const inotify_event &event)
    {
        changes.gone = changes.gone || (event.mask & goneEvents) != 0;
        changes.many = changes.many || (event.mask & IN_Q_OVERFLOW) != 0;
        if (event.len == 0 || changes.names.contains(event.name))
            return;
        if (changes.names.size() < mostNames)
            changes.names.emplace(event.name);
        else
            changes.many = true;
    }

    void look()
    {
        const std::optional<FolderTimes> now = timesOf(folder);
        const std::scoped_lock lock(mutex);
        if (closed || now == times)
            return;
        changes.gone = !now;
        times = now;
        tell();
    }
};

/// State shared by the thread and the watchers. Outlives them if a volume blocks the thread.
class FolderWatcher::Waiting {
public:
    Waiting() : m_poll(::epoll_create1(EPOLL_CLOEXEC)), m_wake(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

    bool prepare() const { return m_poll.isOpen() && m_wake.isOpen() && listen(m_wake.number(), wakeId); }

    void stop()
    {
        m_stopped = true;
        wake();
    }

    void add(const std::shared_ptr<State> &state)
    {
        {
            const std::scoped_lock lock(m_mutex);
            const std::uint64_t id = ++m_lastId;
            m_states.emplace(id, state);
            if (state->source.isOpen() && !listen(state->source.number(), id))
                state->source.reset(); // switch to polling
        }
        wake(); // it may have to poll from now on
    }

    void remove(const std::shared_ptr<State> &state)
    {
        const std::scoped_lock lock(m_mutex);
        std::erase_if(m_states, [&](const auto &entry) { return entry.second == state; });
        if (state->source.isOpen())
            ::epoll_ctl(m_poll.number(), EPOLL_CTL_DEL, state->source.number(), nullptr);
    }

    void run()
    {
        while (!m_stopped) {
            const std::vector<std::shared_ptr<State>> looked = lookedAt();
            std::array<epoll_event, 32> ready;
            const int count = ::epoll_wait(m_poll.number(), ready.data(), static_cast<int>(ready.size()),
                                           looked.empty() ? -1 : lookingInterval);
            for (int i = 0; i < count; ++i)
                serve(ready[static_cast<std::size_t>(i)].data.u64);
            for (const std::shared_ptr<State> &state : looked)
                state->look();
        }
    }

private:
    static constexpr std::uint64_t wakeId = 0;

    bool listen(int descriptor, std::uint64_t id) const
    {
        epoll_event event{};
        event.events = EPOLLIN;
        event.data.u64 = id;
        return ::epoll_ctl(m_poll.number(), EPOLL_CTL_ADD, descriptor, &event) == 0;
    }

    void wake() const
    {
        const std::uint64_t one = 1;
        [[maybe_unused]] const ssize_t written = ::write(m_wake.number(), &one, sizeof one);
    }

    void serve(std::uint64_t id)
    {
        if (id == wakeId) {
            std::uint64_t wakes = 0;
            [[maybe_unused]] const ssize_t length = ::read(m_wake.number(), &wakes, sizeof wakes);
            return;
        }
        if (const std::shared_ptr<State> state = stateOf(id))
            state->readEvents();
    }

    std::shared_ptr<State> stateOf(std::uint64_t id)
    {
        const std::scoped_lock lock(m_mutex);
        const auto found = m_states.find(id);
        return found == m_states.end() ? nullptr : found->second;
    }

    std::vector<std::shared_ptr<State>> lookedAt()
    {
        const std::scoped_lock lock(m_mutex);
        std::vector<std::shared_ptr<State>> states;
        for (const auto &[id, state] : m_states) {
            if (!state->source.isOpen())
                states.push_back(state);
        }
        return states;
    }

    const Descriptor m_poll;
    const Descriptor m_wake;
    std::mutex m_mutex;
    std::uint64_t m_lastId = wakeId;
    std::map<std::uint64_t, std::shared_ptr<State>> m_states;
    std::atomic<bool> m_stopped = false;
};

/// The thread that waits for the events of all watchers. Ends with the last one, but is not joined: it may be blocked
/// by an unresponsive server.
class FolderWatcher::Hub {
public:
    Hub() = default;
    ~Hub() { m_waiting->stop(); }
    Hub(const Hub &) = delete;
    Hub &operator=(const Hub &) = delete;

    /// Fails if no descriptor or thread is available.
    static Result<std::shared_ptr<Hub>> shared()
    {
        static std::mutex mutex;
        static std::weak_ptr<Hub> only;
        const std::scoped_lock lock(mutex);
        if (std::shared_ptr<Hub> hub = only.lock())
            return hub;
        auto hub = std::make_shared<Hub>();
        TRY(hub->start());
        only = hub;
        return hub;
    }

    void add(const std::shared_ptr<State> &state) const { m_waiting->add(state); }
    void remove(const std::shared_ptr<State> &state) const { m_waiting->remove(state); }

private:
    Result<void> start() const
    {
        if (!m_waiting->prepare())
            return failure(Failure::lastSystem());
        try {
            std::thread([waiting = m_waiting] { waiting->run(); }).detach();
        } catch (const std::system_error &error) {
            return failure(Failure::system(error.code().value()));
        }
        return {};
    }

    const std::shared_ptr<Waiting> m_waiting = std::make_shared<Waiting>();
};

Result<std::shared_ptr<FolderWatcher>> FolderWatcher::watch(const Location &folder, Heard heard, Means means)
{
    auto state = std::make_shared<State>();
    state->folder = folder.native();
    state->heard = std::move(heard);
    if (means == Means::Events) {
        Result<Descriptor> source = eventsOf(state->folder);
        if (source)
            state->source = *std::move(source);
        else if (!isExhausted(source.error().code.value()))
            return failure(source.error());
    }
    if (!state->source.isOpen()) {
        state->times = timesOf(state->folder);
        if (!state->times)
            return failure(Failure::lastSystem());
    }
    std::shared_ptr<Hub> hub = TRY(Hub::shared());
    hub->add(state);
    return std::shared_ptr<FolderWatcher>(new FolderWatcher(std::move(hub), std::move(state)));
}

FolderWatcher::FolderWatcher(std::shared_ptr<Hub> hub, std::shared_ptr<State> state)
    : m_hub(std::move(hub))
    , m_state(std::move(state))
{
}

FolderWatcher::~FolderWatcher()
{
    m_hub->remove(m_state);
    const std::scoped_lock lock(m_state->mutex);
    m_state->closed = true;
}

FolderChanges FolderWatcher::take()
{
    const std::scoped_lock lock(m_state->mutex);
    // What the thread has not read yet, so that nothing is lost if this watcher ends now.
    if (m_state->source.isOpen())
        (void)m_state->readSome();
    m_state->told = false;
    return std::exchange(m_state->changes, {});
}

} // namespace brellin
