#include "ContentView/FolderReader.h"

#include "Disk/FolderWatcher.h"

#include <algorithm>
#include <mutex>
#include <utility>

namespace brellin {

namespace {

/// Watcher events within this time cause a single reading.
constexpr std::chrono::milliseconds changesDelay{250};

} // namespace

/// Result of the worker. `watcher` is null if the current one stays.
struct FolderReader::Answer {
    Reading reading;
    std::shared_ptr<FolderWatcher> watcher;
};

/// Posts watcher events to the reader from the watcher's thread; disconnected when the reader is destroyed.
struct FolderReader::Relay {
    std::mutex mutex;
    FolderReader *reader = nullptr;

    void heard()
    {
        const std::scoped_lock lock(mutex);
        if (reader)
            reader->m_mailbox.post([to = reader] { to->heard(); });
    }
};

FolderReader::FolderReader(MountWorkers &workers, const Volumes &volumes, Handlers handlers)
    : m_workers(workers)
    , m_volumes(volumes)
    , m_handlers(std::move(handlers))
    , m_relay(std::make_shared<Relay>())
{
    m_relay->reader = this;
    m_soon.setSingleShot(true);
    QObject::connect(&m_soon, &QTimer::timeout, &m_soon, [this] { tellChanges(); });
}

FolderReader::~FolderReader()
{
    const std::scoped_lock lock(m_relay->mutex);
    m_relay->reader = nullptr;
}

bool FolderReader::reading() const
{
    return m_call.running();
}

void FolderReader::drop()
{
    m_call.drop();
}

void FolderReader::unwatch()
{
    m_watcher.reset();
}

/// Runs on a worker; must not capture the reader.
std::function<FolderReader::Answer(const JobControl &)> FolderReader::work(const Request &request, For whom) const
{
    const FileItems before = m_folder == request.folder ? m_listing : FileItems();
    const bool rearm = whom == For::User || !m_watcher;
    return [request, before, rearm, &volumes = m_volumes, relay = m_relay](const JobControl &control) {
        Answer answer;
        // Watch before reading, so that no change is missed. A folder that cannot be watched is shown without updates.
        if (rearm) {
            if (auto watcher = FolderWatcher::watch(request.folder, [relay] { relay->heard(); }))
                answer.watcher = *std::move(watcher);
        }
        Reading &reading = answer.reading;
        reading.listing = readListing(request.folder, request.hidden, volumes, &control, request.details);
        // Keep the old list if nothing changed, so that views have nothing to compare.
        if (reading.listing.items.sameContent(before) && !before.empty())
            reading.listing.items = before;
        else if (request.order)
            reading.rows = displayed(reading.listing.items, *request.order);
        return answer;
    };
}

void FolderReader::read(const Request &request, For whom)
{
    m_soon.stop();
    tellEntries();
    if (m_folder != request.folder)
        m_watcher.reset();
    using Call = FileCall<Answer>;
    const auto patience = whom == For::User ? Call::Patience::Moment : Call::Patience::None;
    m_call.start(
        m_workers, {request.folder, patience}, work(request, whom),
        [this, folder = request.folder](Answer answer) { take(std::move(answer), folder); },
        [this, folder = request.folder] { gaveUp(folder); });
    if (m_call.running() && m_folder != request.folder) {
        m_listing = {};
        m_folder = request.folder;
    }
}

void FolderReader::take(Answer answer, const Location &folder)
{
    m_lastEnded = std::chrono::steady_clock::now();
    m_lastTook = answer.reading.listing.taken;
    if (answer.watcher) {
        tellEntries();
        m_watcher = std::move(answer.watcher);
    }
    m_listing = answer.reading.listing.items;
    m_folder = folder;
    m_handlers.read(std::move(answer.reading));
}

void FolderReader::gaveUp(const Location &folder)
{
    m_listing = {};
    m_folder = folder;
    m_watcher.reset();
    m_handlers.notAnswering();
}

/// Coalesces bursts of events. After a slow read waits three times as long as the read took.
void FolderReader::heard()
{
    if (m_soon.isActive())
        return;
    const auto rest = m_lastEnded + 3 * m_lastTook - std::chrono::steady_clock::now();
    m_soon.start(std::max(changesDelay, std::chrono::ceil<std::chrono::milliseconds>(rest)));
}

void FolderReader::tellChanges()
{
    if (m_call.running()) {
        heard();
        return;
    }
    if (!m_watcher)
        return;
    if (!tellEntries())
        m_handlers.entriesChanged(m_folder, {});
    m_handlers.changed();
}

/// Passes on what the watcher has noticed so far; returns whether it named entries.
bool FolderReader::tellEntries()
{
    if (!m_watcher)
        return false;
    const FolderChanges changes = m_watcher->take();
    if (changes.gone)
        m_watcher.reset();
    const bool named = changes.many || !changes.names.empty();
    if (named)
        m_handlers.entriesChanged(m_folder, changes);
    return named;
}

} // namespace brellin
