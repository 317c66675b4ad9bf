#include "ContentView/BrowserModel.h"

#include "ContentView/BrowserTexts.h"
#include "ContentView/NameQuery.h"
#include "ContentView/SearchFiltering.h"
#include "Disk/FolderWatcher.h"

namespace brellin {

namespace {

constexpr std::chrono::milliseconds searchDelay{200};
/// Minimum time between sorts by size while folders are being counted.
constexpr std::chrono::milliseconds displayDelay{1000};

/// A missing Trash folder counts as empty: it is created on first use.
bool isMissing(const Failure &error)
{
    return error.is(std::errc::no_such_file_or_directory);
}

} // namespace

BrowserModel::BrowserModel(const BrowserServices &services, const Location &start)
    : place(placeOf(start, services.folders))
    , current(standardised(start))
    , sortOrder(SortOrder{SortComparator{}})
    , m_services(services)
    , m_reader(services.workers, services.volumes,
               {[this](FolderReader::Reading reading) { apply(std::move(reading)); }, [this] { showNotAnswering(); },
                [this](const Location &folder, const FolderChanges &changes) { touch(folder, changes); },
                [this] { read(FolderReader::For::Watcher); }})
    , m_search(
          services.workers, [this](const FolderSearchResult &soFar) { found(soFar); },
          [this](const FolderSearchResult &result) { ended(result); })
{
    const auto arm = [this](QTimer &timer, std::chrono::milliseconds delay, void (BrowserModel::*act)()) {
        timer.setSingleShot(true);
        timer.setInterval(delay);
        connect(&timer, &QTimer::timeout, this, act);
    };
    arm(m_searchSoon, searchDelay, &BrowserModel::runSearch);
    arm(m_displaySoon, displayDelay, &BrowserModel::display);
    // Observe first, so that other observers get a fresh summary.
    items.observe(this, [this](const FileItems &) { m_summary.reset(); });
    selection.observe(this, [this](const Selection &) { m_summary.reset(); });
    m_services.sizes.observe(this, [this](const std::vector<Location> &) { heardSizes(); });
    restoreFolderView();
    load();
}

BrowserModel::~BrowserModel() = default;

void BrowserModel::load()
{
    mirrorHistory();
    read(FolderReader::For::User);
}

void BrowserModel::reload()
{
    m_services.sizes.forget(current.get());
    requestSizes();
    refresh();
}

void BrowserModel::refresh()
{
    if (tagFilter.get())
        findTag();
    else if (searching.get())
        runSearch();
    else
        load();
}

bool BrowserModel::mayShow(const std::vector<ChangedEntry> &changes) const
{
    const Place &now = place.get();
    const auto isListed = [&](const Location &entry) {
        if (entry.empty() || now.kind == Place::Kind::Tag)
            return !entry.empty();
        if (isAtOrBelow(current.get(), entry))
            return true;
        return now.kind == Place::Kind::Search ? isAtOrBelow(entry, now.location)
                                               : entry.parent_path() == current.get();
    };
    return std::ranges::any_of(
        changes, [&](const ChangedEntry &change) { return isListed(change.from) || isListed(change.to); });
}

void BrowserModel::showChanges(const std::vector<ChangedEntry> &changes)
{
    if (showsListing()) {
        load();
        return;
    }
    // Contents are not read again: what was found in one stays.
    const bool contents = place.get().terms.contents;
    const auto belongs = [now = place.get(), hidden = showHidden.get(), time = std::chrono::system_clock::now(),
                          found = contents ? pathsAfter(items.get(), changes)
                                           : std::set<std::string>()](const FileItem &item) {
        if (now.kind == Place::Kind::Tag)
            return item.tags.contains(now.name);
        const bool matches = NameQuery(now.name).matches(item.nameBytes) || found.contains(item.path());
        return matches && (hidden || !item.isHidden) && isAtOrBelow(item.location(), now.location) &&
               passes(item, now.terms.filters, time);
    };
    m_update.start(
        m_services.workers, {current.get()},
        [changes, belongs, before = items.get()](const JobControl &) {
            return updatedResults(before, changes, belongs);
        },
        [this, of = place.get()](const FileItems &now) {
            if (place.get() != of)
                return;
            m_matches = now;
            setItems(now);
            takeArrival();
            refresh();
        },
        [] {});
}

void BrowserModel::read(FolderReader::For whom)
{
    FolderReader::Request request{current.get(), showHidden.get() ? HiddenEntries::Shown : HiddenEntries::LeftOut, {}};
    // Sorting by size needs folder sizes, which are requested only after listing.
    if (showsListing() && !sortsBySize())
        request.order = displayOptions();
    m_detailsRead = needsDetails();
    request.details = m_detailsRead ? ItemDetails::Read : ItemDetails::LeftOut;
    m_readWish = m_displayWish;
    const bool another = m_reader.folder() != request.folder;
    m_reader.read(request, whom);
    if (!m_reader.reading())
        return;
    publish(loading, true);
    if (another && showsListing())
        setItems({});
    updateTexts();
}

void BrowserModel::apply(FolderReader::Reading reading)
{
    publish(loading, false);
    publish(freeSpace, reading.listing.freeSpace ? std::optional<qint64>(*reading.listing.freeSpace) : std::nullopt);
    applyOutcome(reading.listing);
    if (!showsListing())
        updateTexts();
    else if (reading.rows && m_readWish == m_displayWish)
        setItems(reading.listing.items, std::move(reading.rows));
    else
        showListing();
    if (!m_display.running()) {
        takeArrival();
        renameCreated();
    }
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
    publish(folderGone, isMissing(*listing.error));
    publish(errorMessage, std::optional(isTrash ? unreadableTrashText(error) : unreadableFolderText(error)));
    m_reader.unwatch(); // a missing folder cannot be watched; a refresh watches again
}

void BrowserModel::showNotAnswering()
{
    publish(loading, false);
    m_readFailed = true;
    publish(errorMessage, std::optional(notAnsweringText(current.get())));
    if (showsListing())
        showListing();
}

void BrowserModel::showListing()
{
    setItems(m_reader.listing());
}

void BrowserModel::touch(const Location &folder, const FolderChanges &changes)
{
    if (changes.many) {
        m_services.sizes.touchedIn(folder);
        return;
    }
    if (changes.names.empty())
        m_services.sizes.touched(folder);
    for (const std::string &name : changes.names)
        m_services.sizes.touched(folder / name);
}

void BrowserModel::setShowHidden(bool isShown)
{
    if (isShown == showHidden.get())
        return;
    publish(showHidden, isShown);
    reload();
    // The listing below results is shown after them.
    if (!showsListing())
        load();
}

void BrowserModel::updateTexts()
{
    publish(statusText, statusLine(items.get().size(), selectionText(), freeSpace.get()));
    publish(emptyText, emptyTextNow());
}

QString BrowserModel::emptyTextNow() const
{
    if (!displayedItems.get().empty() || m_readFailed)
        return {};
    if (searchRunning.get())
        return QStringLiteral("Suche …");
    if (!showsListing())
        return place.get().terms.filters.narrow() ? u"Nichts gefunden.\n\nEs gelten Filter. Esc löscht sie."_qs
                                                  : QStringLiteral("Nichts gefunden.");
    if (loading.get() || m_display.running())
        return m_services.workers.isLocal(current.get()) ? QStringLiteral("Lade …")
                                                         : QStringLiteral("Lade vom Netzlaufwerk …");
    return items.get().empty() ? QStringLiteral("Dieser Ordner ist leer.")
                               : QStringLiteral("Hier ist nichts Passendes.");
}

void BrowserModel::showFailure(PaneFailure failure)
{
    m_readFailed = false;
    publish(refusedPath, std::optional<RefusedPath>());
    m_failure = std::move(failure);
    // Publish a change even if the same error occurred again.
    publish(errorMessage, std::optional<QString>());
    publish(errorMessage, std::optional(m_failure.message));
}

void BrowserModel::clearError()
{
    m_readFailed = false;
    publish(refusedPath, std::optional<RefusedPath>());
    publish(folderGone, false);
    publish(errorMessage, std::optional<QString>());
}

void BrowserModel::dismissError()
{
    if (!m_readFailed)
        clearError();
}

void BrowserModel::setViewMode(ViewMode mode)
{
    publish(viewMode, mode);
    saveFolderView();
}

void BrowserModel::setIconSize(double size)
{
    publish(iconSize, validIconSize(size));
    saveFolderView();
}

void BrowserModel::zoomIcons(double delta)
{
    if (viewMode.get() != ViewMode::Icons)
        setViewMode(ViewMode::Icons);
    setIconSize(iconSize.get() + delta);
}

void BrowserModel::saveFolderView()
{
    if (m_restoring)
        return;
    const FolderView view{viewMode.get(), iconSize.get()};
    tellUnsaved(rememberView(m_services.defaults, current.get(), view));
}

void BrowserModel::saveArrangement()
{
    tellUnsaved(rememberArrangement(m_services.defaults, current.get(), m_arrangement));
}

void BrowserModel::tellUnsaved(const Result<void> &saved)
{
    if (!saved)
        showError(QStringLiteral("Die Ansicht konnte nicht gespeichert werden: ") + saved.error().message);
}

void BrowserModel::restoreFolderView()
{
    m_restoring = true;
    const FolderView view = rememberedView(m_services.defaults, current.get(), iconSize.get());
    publish(viewMode, view.mode);
    publish(iconSize, view.iconSize);
    const Arrangement arranged = rememberedArrangement(m_services.defaults, current.get()).value_or(m_arrangement);
    ++m_displayWish;
    publish(sortOrder, arranged.order);
    publish(grouping, arranged.group);
    m_restoring = false;
}

} // namespace brellin
