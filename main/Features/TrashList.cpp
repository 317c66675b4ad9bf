#include "Features/TrashList.h"

#include "Base/AbandonablePool.h"
#include "Base/German.h"
#include "Disk/FileAttributes.h"
#include "Features/FolderCount.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <utility>

namespace brellin {

namespace {

/// Without the size of folders, which is counted later.
TrashItem itemFor(TrashedEntry entry)
{
    TrashItem item;
    item.name = shownName(entry.original.empty() ? entry.place : entry.original);
    if (const Result<FileAttributes> attributes = readAttributes(entry.place)) {
        item.folder = attributes->isFolder();
        if (!item.folder)
            item.size = attributes->size;
    }
    item.entry = std::move(entry);
    return item;
}

std::vector<TrashItem> itemsFor(std::vector<TrashedEntry> entries)
{
    std::vector<TrashItem> items;
    items.reserve(entries.size());
    std::ranges::transform(std::move(entries), std::back_inserter(items),
                           [](TrashedEntry &entry) { return itemFor(std::move(entry)); });
    return items;
}

} // namespace

TrashAmount amountOf(const std::vector<TrashItem> &items)
{
    TrashAmount amount{items.size(), 0, true};
    for (const TrashItem &item : items) {
        amount.bytes += item.size.value_or(0);
        amount.wholeSize = amount.wholeSize && item.size;
    }
    return amount;
}

QString amountText(const TrashAmount &amount, const QString &separator)
{
    return counted(static_cast<qint64>(amount.count), QStringLiteral("Element"), QStringLiteral("Elemente")) +
           separator + (amount.wholeSize ? QString() : QStringLiteral("mindestens ")) + sizeText(amount.bytes);
}

TrashList::TrashList(Location homeTrash, const Volumes &volumes, Trash &trash, FileActions &files)
    : m_homeTrash(std::move(homeTrash))
    , m_volumes(volumes)
    , m_trash(trash)
    , m_files(files)
    , m_returnPool(abandonablePool(std::chrono::seconds(5)))
{
}

TrashList::~TrashList() = default;

void TrashList::refresh()
{
    std::set<std::string> tops{std::string()};
    for (const Volume &volume : m_volumes.mounted())
        tops.insert(volume.root.native());
    std::erase_if(m_sources, [&](const auto &source) { return !tops.contains(source.first); });
    for (const std::string &top : tops)
        read(top);
    merge();
}

void TrashList::read(const std::string &top)
{
    std::unique_ptr<Source> &slot = m_sources[top];
    if (!slot) {
        slot = std::make_unique<Source>();
        slot->pool = abandonablePool();
    }
    Source *const source = slot.get();
    source->again = source->reading.running();
    if (source->again)
        return;
    source->counting.cancel();
    source->reading.start(
        *source->pool,
        [top, home = m_homeTrash](JobControl &) {
            return itemsFor(top.empty() ? homeTrashContents(home) : volumeTrashContents(top));
        },
        [this, source, top](Items found) {
            source->items = std::move(found);
            if (source->again)
                read(top);
            else
                count(*source);
            merge();
        });
}

void TrashList::count(Source &source)
{
    const bool anyFolder = std::ranges::any_of(source.items, &TrashItem::folder);
    if (!anyFolder || source.counting.running())
        return;
    source.counting.start(
        *source.pool,
        [counted = source.items](JobControl &control) mutable {
            for (TrashItem &item : counted) {
                if (!item.folder || control.cancelled())
                    continue;
                if (const Result<FolderCount> count = countFolder(item.entry.place, &control))
                    item.size = count->bytes;
            }
            return control.cancelled() ? Items() : std::move(counted);
        },
        [this, &source](Items counted) {
            // A newer list is being read and will be counted in turn.
            if (source.reading.running())
                return;
            if (std::ranges::equal(counted, source.items, {}, &TrashItem::entry, &TrashItem::entry))
                source.items = std::move(counted);
            else
                count(source);
            merge();
        });
}

void TrashList::merge()
{
    Items all;
    bool reading = false;
    for (const auto &[top, source] : m_sources) {
        std::ranges::copy(source->items, std::back_inserter(all));
        reading = reading || source->reading.running();
    }
    std::ranges::sort(all, [](const TrashItem &a, const TrashItem &b) {
        return a.entry.deleted != b.entry.deleted ? a.entry.deleted > b.entry.deleted : a.entry.place < b.entry.place;
    });
    publish(items, std::move(all));
    publish(loading, reading);
}

void TrashList::putBack(const std::vector<Location> &places, QObject *receiver,
                        std::function<void(const TrashReturn &)> finished)
{
    if (m_returning.running()) {
        finished({{}, {{{}, {QStringLiteral("Es wird gerade schon etwas zurückgelegt."), {}}}}, false});
        return;
    }
    std::vector<TrashedEntry> entries;
    for (const TrashItem &item : items.get()) {
        if (std::ranges::find(places, item.entry.place) != places.end())
            entries.push_back(item.entry);
    }
    publish(returning, true);
    m_returning.start(
        *m_returnPool,
        [entries, trash = &m_trash, files = &m_files](JobControl &control) {
            return brellin::putBack(entries, *trash, *files, control);
        },
        [this, receiver = QPointer(receiver), finished = std::move(finished)](const TrashReturn &outcome) {
            publish(returning, false);
            refresh();
            if (receiver)
                finished(outcome);
        });
}

} // namespace brellin
