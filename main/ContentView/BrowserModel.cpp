#include "ContentView/BrowserModel.h"

#include "Base/German.h"
#include "ContentView/BrowserModelParts.h"
#include "ContentView/BrowserTexts.h"
#include "ContentView/FolderViews.h"

#include <algorithm>

namespace brellin {

namespace {

constexpr std::chrono::milliseconds searchDelay{200};
/// Rows sorted by a size that is still being counted settle at most so often.
constexpr std::chrono::milliseconds displayDelay{1000};

} // namespace

BrowserModel::BrowserModel(BrowserServices services, const Location &start)
    : current(standardised(start))
    , sortOrder(SortOrder{SortComparator{}})
    , m_services(services)
    , m_relay(std::make_shared<Relay>())
{
    m_relay->pane = this;
    const auto arm = [this](QTimer &timer, std::chrono::milliseconds delay, void (BrowserModel::*act)()) {
        timer.setSingleShot(true);
        timer.setInterval(delay);
        connect(&timer, &QTimer::timeout, this, act);
    };
    arm(m_searchSoon, searchDelay, &BrowserModel::runSearch);
    arm(m_displaySoon, displayDelay, &BrowserModel::display);
    arm(m_reloadSoon, {}, &BrowserModel::takeChanges);
    m_services.sizes.observe(this, [this](const std::vector<Location> &) { heardSizes(); });
    restoreFolderView();
    load();
}

BrowserModel::~BrowserModel()
{
    const std::scoped_lock lock(m_relay->mutex);
    m_relay->pane = nullptr;
}

void BrowserModel::setItems(const FileItems &shown)
{
    if (shown == items.get()) {
        updateTexts();
        return;
    }
    publish(items, shown);
    display();
    keepWhatIsThere();
    requestSizes();
}

void BrowserModel::display()
{
    m_displaySoon.stop();
    KnownFolderSize size;
    if (sortsBySize())
        size = [this](const FileItem &folder) { return knownSize(folder); };
    publish(displayedItems, displayed(items.get(), {sortOrder.get(), m_itemFilter, size}));
    updateTexts();
}

/// What is selected or being renamed may have gone.
void BrowserModel::keepWhatIsThere()
{
    const Selection before = selection.get();
    const std::optional<FileItem> renamed = renameTarget.get();
    if (before.empty() && !renamed)
        return;
    Selection left;
    bool renamedIsThere = false;
    for (const FileItem &item : items.get()) {
        if (before.contains(item))
            left.insert(item);
        renamedIsThere = renamedIsThere || (renamed && item.sameEntry(*renamed));
    }
    setSelection(left);
    if (!renamedIsThere)
        cancelRename();
}

void BrowserModel::setSelection(Selection selected)
{
    publish(selection, std::move(selected));
    updateTexts();
}

void BrowserModel::selectAll()
{
    Selection all;
    const DisplayedItems &rows = displayedItems.get();
    for (std::size_t row = 0; row < rows.size(); ++row)
        all.insert(rows[row]);
    setSelection(std::move(all));
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

void BrowserModel::setSortOrder(SortOrder order)
{
    if (order == sortOrder.get())
        return;
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
}

void BrowserModel::setItemFilter(ItemFilter filter)
{
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
    // A view asks again for what comes into sight: nobody waits for the others.
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
    std::int64_t bytes = 0;
    for (const FileItem &item : selectedItems())
        bytes += item.isFolder ? knownSize(item).value_or(0) : item.size;
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
    if (loading.get())
        return m_services.workers.isLocal(current.get()) ? QStringLiteral("Lade …")
                                                         : QStringLiteral("Lade vom Netzlaufwerk …");
    return items.get().empty() ? QStringLiteral("Dieser Ordner ist leer.")
                               : QStringLiteral("Hier ist nichts Passendes.");
}

void BrowserModel::setOperationError(const QString &message)
{
    m_readFailed = false;
    // The same failure again is news, too.
    publish(errorMessage, std::optional<QString>());
    publish(errorMessage, std::optional(message));
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
        setOperationError(QStringLiteral("Die Ansicht konnte nicht gespeichert werden: ") + saved.error().message);
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
