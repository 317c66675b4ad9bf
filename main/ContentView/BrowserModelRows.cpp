#include "ContentView/BrowserModel.h"

#include <algorithm>
#include <unordered_map>

namespace brellin {

namespace {

/// Sorted synchronously up to this many entries, which takes less than a frame.
constexpr std::size_t sortedAtOnce = 20'000;

} // namespace

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

/// Without sizes of folders.
DisplayOptions BrowserModel::displayOptions() const
{
    return {sortOrder.get(), m_itemFilter, {}, grouping.get(), QDate::currentDate()};
}

/// Sorts small lists synchronously, large ones on a worker.
void BrowserModel::display()
{
    m_displaySoon.stop();
    m_display.drop();
    const FileItems list = items.get();
    DisplayOptions options = displayOptions();
    options.folderSize = sizesOfFolders();
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

void BrowserModel::setSortOrder(SortOrder order)
{
    arrange({std::move(order), grouping.get()});
}

void BrowserModel::setGrouping(GroupKey key)
{
    arrange({sortOrder.get(), key});
}

void BrowserModel::arrange(const Arrangement &wanted)
{
    if (wanted == Arrangement{sortOrder.get(), grouping.get()})
        return;
    ++m_displayWish;
    m_arrangement = wanted;
    publish(sortOrder, wanted.order);
    publish(grouping, wanted.group);
    display();
    saveArrangement();
    readMissingDetails();
}

void BrowserModel::setDetailsShown(bool shown)
{
    m_detailsShown = shown;
    readMissingDetails();
}

void BrowserModel::readMissingDetails()
{
    if (needsDetails() && !m_detailsRead)
        load();
}

bool BrowserModel::sortsBySize() const
{
    return brellin::sortsBySize(sortOrder.get());
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
    // Requesting all folders of a large list is wasteful, unless they are sorted by size: views request again when
    // scrolled.
    constexpr std::size_t mostBeyond = 1000;
    const DisplayedItems &rows = displayedItems.get();
    const std::size_t first = std::min(m_firstVisible, rows.size());
    const std::size_t visibleEnd = std::min(rows.size(), first + m_visibleCount);
    std::vector<Location> folders;
    const auto add = [&](std::size_t from, std::size_t to) {
        for (std::size_t row = from; row < to && rows[row].isFolder; ++row) {
            if (rows[row].link == LinkState::None)
                folders.push_back(rows[row].location());
        }
    };
    add(first, visibleEnd);
    const std::size_t onScreen = folders.size();
    add(visibleEnd, sortsBySize() ? rows.size() : std::min(rows.size(), visibleEnd + mostBeyond));
    if (sortsBySize())
        add(0, first);
    m_services.sizes.request(this, folders, onScreen);
}

void BrowserModel::heardSizes()
{
    if (sortsBySize() && !m_displaySoon.isActive())
        m_displaySoon.start();
    if (!selection.get().empty())
        updateTexts();
}

/// A lower bound is no known size.
std::optional<std::int64_t> BrowserModel::knownSize(const FileItem &folder) const
{
    if (folder.link != LinkState::None)
        return std::nullopt;
    const std::optional<FolderSize> known = m_services.sizes.size(folder.location());
    const bool whole = known && known->state != FolderSize::State::Capped;
    return whole ? std::optional(known->bytes) : std::nullopt;
}

} // namespace brellin
