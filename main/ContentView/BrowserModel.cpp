#include "ContentView/BrowserModel.h"

#include "Base/German.h"
#include "ContentView/BrowserTexts.h"
#include "ContentView/FolderViews.h"
#include "ContentView/NameQuery.h"

#include <algorithm>
#include <unordered_map>

namespace brellin {

namespace {

constexpr std::chrono::milliseconds searchDelay{200};
/// Minimum time between sorts by size while folders are being counted.
constexpr std::chrono::milliseconds displayDelay{1000};
/// Sorted synchronously up to this many entries, which takes less than a frame.
constexpr std::size_t sortedAtOnce = 20'000;

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
                [this](const std::vector<std::string> &names) { readChanges(names); }})
    , m_search(
          services.workers, [this](const FileItems &matches) { setItems(matches); },
          [this](const FolderSearchResult &result) { found(result); })
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

void BrowserModel::showChanges(const std::vector<ChangedEntry> &changes)
{
    if (showsListing()) {
        load();
        return;
    }
    const auto belongs = [now = place.get(), hidden = showHidden.get()](const FileItem &item) {
        if (now.kind == Place::Kind::Tag)
            return item.tags.contains(now.name);
        return (hidden || !item.isHidden) && isAtOrBelow(item.location(), now.location) &&
               NameQuery(now.name).matches(item.nameBytes);
    };
    m_update.start(
        m_services.workers, {current.get()},
        [changes, belongs, before = items.get()](const JobControl &) {
            return updatedResults(before, changes, belongs);
        },
        [this, of = place.get()](const FileItems &now) {
            if (place.get() != of)
                return;
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
        request.order = DisplayOptions{sortOrder.get(), m_itemFilter, {}};
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

void BrowserModel::readChanges(const std::vector<std::string> &names)
{
    for (const std::string &name : names)
        m_services.sizes.touched(current.get() / name);
    read(FolderReader::For::Watcher);
}

/// `rows` are the sorted rows of `shown`, if known already.
void BrowserModel::setItems(const FileItems &shown, std::optional<DisplayedItems> rows)
{
    if (shown == items.get()) {
        updateTexts();
        return;
    }
    publish(items, shown);
    if (rows)
        show(*std::move(rows));
    else
        display();
    keepWhatIsThere();
}

/// Sorts small lists synchronously, large ones on a worker.
void BrowserModel::display()
{
    m_displaySoon.stop();
    m_display.drop();
    const FileItems list = items.get();
    const DisplayOptions options{sortOrder.get(), m_itemFilter, sizesOfFolders()};
    if (list.size() <= sortedAtOnce) {
        show(displayed(list, options));
        return;
    }
    using Call = FileCall<DisplayedItems>;
    m_display.start(
        m_services.workers, {current.get(), Call::Patience::None, MountWorkers::Turn::AtOnce},
        [list, options](const JobControl &) { return displayed(list, options); },
        [this](DisplayedItems rows) {
            show(std::move(rows));
            if (!m_reader.reading()) {
                takeArrival();
                renameCreated();
            }
        },
        [] {});
}

void BrowserModel::show(DisplayedItems rows)
{
    m_display.drop();
    publish(displayedItems, std::move(rows));
    updateTexts();
    requestSizes();
}

/// A copy of the known sizes, since FolderSizes may only be used on the main thread.
KnownFolderSize BrowserModel::sizesOfFolders() const
{
    if (!sortsBySize())
        return {};
    const auto sizes = std::make_shared<std::unordered_map<const FileItem *, std::int64_t>>();
    for (const FileItem &item : items.get()) {
        if (const auto known = item.isFolder ? knownSize(item) : std::nullopt)
            sizes->emplace(&item, *known);
    }
    return [sizes](const FileItem &folder) {
        const auto known = sizes->find(&folder);
        return known == sizes->end() ? std::nullopt : std::optional(known->second);
    };
}

/// Deselects entries that are gone, and cancels renaming one that is gone.
void BrowserModel::keepWhatIsThere()
{
    const Selection before = selection.get();
    const std::optional<FileItem> renamed = renameTarget.get();
    if (before.empty() && !renamed)
        return;
    if (selectionSummary().count() < before.size()) {
        Selection left;
        for (const FileItem &item : items.get()) {
            if (before.contains(item))
                left.insert(item);
        }
        setSelection(left);
    }
    const auto isRenamed = [&renamed](const FileItem &item) { return item.sameEntry(*renamed); };
    if (renamed && std::ranges::none_of(items.get(), isRenamed))
        cancelRename();
}

void BrowserModel::setSelection(Selection selected)
{
    publish(selection, std::move(selected));
    updateTexts();
}

void BrowserModel::selectAll()
{
    setSelection(Selection::ofAll(displayedItems.get()));
}

void BrowserModel::setPosition(const ViewPosition &seen)
{
    publish(position, seen);
}

void BrowserModel::select(const std::vector<Location> &entries)
{
    if (!entries.empty())
        arriveWith({Selection(entries), {entries.front(), {}}, {}});
}

void BrowserModel::selectFirstOf(std::vector<Location> entries)
{
    arriveWith({{}, {}, std::move(entries)});
}

void BrowserModel::arriveWith(Arrival wanted)
{
    m_arrival = std::move(wanted);
    if (!m_reader.reading() && !m_display.running() && !searchRunning.get())
        takeArrival();
}

/// Selects what was asked for as far as it is listed, and scrolls there.
void BrowserModel::takeArrival()
{
    if (!m_arrival || (m_reader.reading() && showsListing()))
        return;
    Arrival wanted = *std::exchange(m_arrival, std::nullopt);
    Selection there;
    if (!wanted.selected.empty()) {
        for (const FileItem &item : items.get())
            if (wanted.selected.contains(item))
                there.insert(item);
    }
    for (const Location &one : wanted.firstOf) {
        if (!std::ranges::any_of(items.get(), [&](const FileItem &item) { return item.isAt(one.native()); }))
            continue;
        there.insert(one);
        wanted.position = {one, {}};
        break;
    }
    if (!there.empty())
        setSelection(std::move(there));
    publish(position, wanted.position);
}

std::vector<Location> BrowserModel::neighboursOfSelection() const
{
    const DisplayedItems &rows = displayedItems.get();
    std::optional<std::size_t> before;
    std::optional<std::size_t> after;
    bool passed = false;
    for (std::size_t row = 0; row < rows.size(); ++row) {
        if (selection.get().contains(rows[row])) {
            passed = true;
            after.reset();
        } else if (passed && !after) {
            after = row;
        } else if (!passed) {
            before = row;
        }
    }
    std::vector<Location> beside;
    for (const std::optional<std::size_t> &row : {after, before})
        if (row)
            beside.push_back(rows[*row].location());
    return beside;
}

std::vector<FileItem> BrowserModel::selectedItems() const
{
    std::vector<FileItem> selected;
    const Selection &wanted = selection.get();
    for (const FileItem &item : items.get()) {
        if (selected.size() == wanted.size())
            break;
        if (wanted.contains(item))
            selected.push_back(item);
    }
    return selected;
}

const SelectionSummary &BrowserModel::selectionSummary() const
{
    if (!m_summary)
        m_summary = summaryOf(items.get(), selection.get());
    return *m_summary;
}

const FileItem *BrowserModel::onlySelected() const
{
    if (selection.get().size() != 1)
        return nullptr;
    const std::optional<std::uint32_t> index = selectionSummary().first;
    return index ? &items.get()[*index] : nullptr;
}

void BrowserModel::setSortOrder(SortOrder order)
{
    if (order == sortOrder.get())
        return;
    ++m_displayWish;
    publish(sortOrder, std::move(order));
    display();
}

bool BrowserModel::sortsBySize() const
{
    return brellin::sortsBySize(sortOrder.get());
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

void BrowserModel::setItemFilter(ItemFilter filter)
{
    ++m_displayWish;
    m_itemFilter = std::move(filter);
    display();
}

void BrowserModel::setVisibleRows(std::size_t first, std::size_t count)
{
    if (first == m_firstVisible && count == m_visibleCount)
        return;
    m_firstVisible = first;
    m_visibleCount = count;
    requestSizes();
}

void BrowserModel::requestSizes()
{
    // Requesting all folders of a large list is wasteful: views request again when scrolled.
    constexpr std::size_t mostBeyond = 1000;
    const DisplayedItems &rows = displayedItems.get();
    const std::size_t first = std::min(m_firstVisible, rows.size());
    const std::size_t end = std::min(rows.size(), first + m_visibleCount + mostBeyond);
    std::vector<Location> folders;
    for (std::size_t row = first; row < end && rows[row].isFolder; ++row) {
        if (rows[row].link == LinkState::None)
            folders.push_back(rows[row].location());
    }
    m_services.sizes.request(this, std::move(folders));
}

void BrowserModel::heardSizes()
{
    if (sortsBySize() && !m_displaySoon.isActive())
        m_displaySoon.start();
    if (!selection.get().empty())
        updateTexts();
}

std::optional<std::int64_t> BrowserModel::knownSize(const FileItem &folder) const
{
    if (folder.link != LinkState::None)
        return std::nullopt;
    const std::optional<FolderSize> known = m_services.sizes.size(folder.location());
    return known ? std::optional(known->bytes) : std::nullopt;
}

void BrowserModel::updateTexts()
{
    publish(statusText, statusLine(items.get().size(), selectionText(), freeSpace.get()));
    publish(emptyText, emptyTextNow());
}

QString BrowserModel::selectionText() const
{
    if (selection.get().empty())
        return {};
    const SelectionSummary &summary = selectionSummary();
    std::int64_t bytes = summary.fileBytes;
    for (const std::uint32_t index : summary.folders)
        bytes += knownSize(items.get()[index]).value_or(0);
    QString text = german().toString(static_cast<qint64>(selection.get().size())) + QStringLiteral(" ausgewählt");
    if (bytes >= 1)
        text += QStringLiteral("  ") + sizeText(bytes);
    return text;
}

QString BrowserModel::emptyTextNow() const
{
    if (!displayedItems.get().empty() || m_readFailed)
        return {};
    if (searchRunning.get())
        return QStringLiteral("Suche …");
    if (!showsListing())
        return QStringLiteral("Nichts gefunden.");
    if (loading.get() || m_display.running())
        return m_services.workers.isLocal(current.get()) ? QStringLiteral("Lade …")
                                                         : QStringLiteral("Lade vom Netzlaufwerk …");
    return items.get().empty() ? QStringLiteral("Dieser Ordner ist leer.")
                               : QStringLiteral("Hier ist nichts Passendes.");
}

void BrowserModel::showFailure(PaneFailure failure)
{
    m_readFailed = false;
    m_failure = std::move(failure);
    // Publish a change even if the same error occurred again.
    publish(errorMessage, std::optional<QString>());
    publish(errorMessage, std::optional(m_failure.message));
}

void BrowserModel::clearError()
{
    m_readFailed = false;
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
    if (const Result<void> saved = rememberView(m_services.defaults, current.get(), view); !saved)
        showError(QStringLiteral("Die Ansicht konnte nicht gespeichert werden: ") + saved.error().message);
}

void BrowserModel::restoreFolderView()
{
    m_restoring = true;
    const FolderView view = rememberedView(m_services.defaults, current.get(), iconSize.get());
    publish(viewMode, view.mode);
    publish(iconSize, view.iconSize);
    m_restoring = false;
}

} // namespace brellin
