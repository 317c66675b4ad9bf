#include "Base/German.h"
#include "ContentView/BrowserModel.h"

#include <algorithm>
#include <utility>

namespace brellin {

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
        setSelection(there);
    if (wanted.position.scroll || !there.empty())
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

} // namespace brellin
