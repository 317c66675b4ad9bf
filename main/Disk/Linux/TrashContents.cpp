#include "Disk/TrashContents.h"

#include "Disk/Linux/SystemTrashFolder.h"
#include "Disk/TrashInfo.h"

#include <chrono>
#include <string>

namespace brellin {

namespace {

/// A record on a volume may be forged: its origin must not lead out of the volume.
Location originalOf(const TrashPlace &place, const std::string &record)
{
    const std::optional<std::string> origin = originInTrashInfo(record);
    if (!origin)
        return {};
    const Location original = place.absolute(*origin);
    if (!original.is_absolute())
        return {};
    const Location normal = standardised(original);
    const bool inside = place.kind == TrashPlace::Kind::Home || isAtOrBelow(normal, place.top);
    return inside ? normal : Location();
}

void append(const TrashPlace &place, std::vector<TrashedEntry> &entries)
{
    const auto folder = TrashFolder::open(place, Missing::Fail);
    if (!folder)
        return;
    for (const std::string &name : folder->names()) {
        TrashedEntry entry{place.folder / "files" / name, {}, {}};
        if (const std::optional<std::string> record = folder->recordOf(name)) {
            entry.original = originalOf(place, *record);
            if (const std::optional<QDateTime> date = deletionInTrashInfo(*record))
                entry.deleted = Instant(std::chrono::milliseconds(date->toMSecsSinceEpoch()));
        }
        entries.push_back(std::move(entry));
    }
}

} // namespace

std::vector<TrashedEntry> homeTrashContents(const Location &homeTrash)
{
    std::vector<TrashedEntry> entries;
    append(TrashPlace::home(homeTrash), entries);
    return entries;
}

std::vector<TrashedEntry> volumeTrashContents(const Location &top)
{
    std::vector<TrashedEntry> entries;
    append(TrashPlace::shared(top), entries);
    append(TrashPlace::own(top), entries);
    return entries;
}

} // namespace brellin
