#include "ContentView/BrowserModelParts.h"
#include "ContentView/BrowserTexts.h"

#include <algorithm>

namespace brellin {

namespace {

/// Watcher events within this time cause a single reload.
constexpr std::chrono::milliseconds reloadDelay{250};

/// A missing Trash folder counts as empty: it is created on first use.
bool isMissing(const Failure &error)
{
    return error.is(std::errc::no_such_file_or_directory);
}

} // namespace

void BrowserModel::load()
{
    mirrorHistory();
    startReading(Refresh::ByUser);
}

void BrowserModel::reload()
{
    m_services.sizes.forget(current.get());
    requestSizes();
    if (tagFilter.get())
        findTag();
    else if (searching.get())
        runSearch();
    else
        load();
}

/// Runs on a worker; must not capture the pane.
std::function<BrowserModel::Reading(const JobControl &)> BrowserModel::reading(Refresh why)
{
    const Location folder = current.get();
    const HiddenEntries hidden = showHidden.get() ? HiddenEntries::Shown : HiddenEntries::LeftOut;
    const FileItems before = m_listed == folder ? m_listing : FileItems();
    const bool rearm = why == Refresh::ByUser || !m_watcher;
    // Sorting by size needs folder sizes, which are requested only after listing.
    const bool sorts = showsListing() && !sortsBySize();
    const DisplayOptions options{sortOrder.get(), m_itemFilter, {}};
    return [=, &volumes = m_services.volumes, relay = m_relay, wish = m_displayWish](const JobControl &control) {
        Reading result;
        // Watch before reading, so that no change is missed. A folder that cannot be watched is shown without updates.
        if (rearm) {
            if (auto watcher = FolderWatcher::watch(folder, [relay] { relay->heard(); }))
                result.watcher = *std::move(watcher);
        }
        result.listing = readListing(folder, hidden, volumes, &control);
        // Keep the old list if nothing changed, so that views have nothing to compare.
        if (result.listing.items.sameContent(before) && !before.empty())
            result.listing.items = before;
        else if (sorts)
            result.rows = displayed(result.listing.items, options);
        result.wish = wish;
        return result;
    };
}

void BrowserModel::startReading(Refresh why)
{
    const Location folder = current.get();
    m_reloadSoon.stop();
    if (m_listed != folder)
        m_watcher.reset();
    using Call = FileCall<Reading>;
    const auto patience = why == Refresh::ByUser ? Call::Patience::Moment : Call::Patience::None;
    m_load.start(
        m_services.workers, {folder, patience}, reading(why),
        [this, folder](Reading result) { apply(std::move(result), folder); }, [this] { showNotAnswering(); });
    if (!m_load.running())
        return;
    publish(loading, true);
    if (m_listed != folder) {
        m_listing = {};
        m_listed = folder;
        if (showsListing())
            setItems({});
    }
    updateTexts();
}

void BrowserModel::apply(Reading reading, const Location &folder)
{
    publish(loading, false);
    if (folder != current.get())
        return;
    m_lastReadEnded = std::chrono::steady_clock::now();
    m_lastReadTook = reading.listing.taken;
    if (reading.watcher)
        m_watcher = std::move(reading.watcher);
    m_listing = reading.listing.items;
    m_listed = folder;
    publish(freeSpace, reading.listing.freeSpace ? std::optional<qint64>(*reading.listing.freeSpace) : std::nullopt);
    applyOutcome(reading.listing);
    if (!showsListing())
        updateTexts();
    else if (reading.rows && reading.wish == m_displayWish)
        setItems(m_listing, std::move(reading.rows));
    else
        showListing();
    if (!m_display.running())
        renameCreated();
}

void BrowserModel::applyOutcome(const Listing &listing)
{
    const bool isTrash = current.get() == m_services.folders.trash;
    if (!listing.error || (isTrash && isMissing(*listing.error))) {
        if (m_readFailed)
            clearError();
        return;
    }
    const QString &error = listing.error->message;
    m_readFailed = true;
    publish(errorMessage, std::optional(isTrash ? unreadableTrashText(error) : unreadableFolderText(error)));
    m_watcher.reset(); // A watcher of a missing folder reports nothing; the next load creates a new one.
}

void BrowserModel::showNotAnswering()
{
    publish(loading, false);
    m_listing = {};
    m_listed = current.get();
    m_watcher.reset();
    m_readFailed = true;
    publish(errorMessage, std::optional(notAnsweringText(current.get())));
    if (showsListing())
        showListing();
}

void BrowserModel::showListing()
{
    setItems(m_listing);
}

/// Coalesces bursts of events. After a slow read waits three times as long as the read took.
void BrowserModel::debouncedReload()
{
    if (m_reloadSoon.isActive())
        return;
    const auto rest = m_lastReadEnded + 3 * m_lastReadTook - std::chrono::steady_clock::now();
    const auto delay = std::max(reloadDelay, std::chrono::ceil<std::chrono::milliseconds>(rest));
    m_reloadSoon.start(delay);
}

void BrowserModel::takeChanges()
{
    if (m_load.running()) {
        debouncedReload();
        return;
    }
    if (!m_watcher)
        return;
    const FolderChanges changes = m_watcher->take();
    if (changes.gone)
        m_watcher.reset();
    for (const std::string &name : changes.names)
        m_services.sizes.touched(current.get() / name);
    startReading(Refresh::ByWatcher);
}

} // namespace brellin
