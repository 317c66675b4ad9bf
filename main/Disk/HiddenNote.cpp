#include "Disk/HiddenNote.h"

#include "Disk/FileAttributes.h"

#include <QByteArray>
#include <QUuid>

#include <algorithm>

#include <unistd.h>

namespace brellin {

HiddenNote::HiddenNote(const Location &place, const Location &notes)
{
    if (notes.empty() || !createPrivateFolders(notes))
        return;
    m_file = notes / (QUuid::createUuid().toString(QUuid::Id128).toStdString() + ".note");
    Result<FileLock> lock = FileLock::tryNow(m_file);
    if (!lock)
        return;
    m_lock = *std::move(lock);
    const QByteArray path = QByteArray::fromStdString(place.native());
    // A note that cannot be written names no place, and goes with the next look at them.
    [[maybe_unused]] const ssize_t written =
        ::write(m_lock.descriptor(), path.constData(), static_cast<std::size_t>(path.size()));
}

void HiddenNote::discard()
{
    if (m_lock.held())
        ::unlink(m_file.c_str());
    m_lock.release();
}

std::vector<Location> notedHiddenPlaces(const Location &notes)
{
    std::vector<Location> left;
    std::error_code none;
    for (std::filesystem::directory_iterator entry(notes, none), end; !none && entry != end; entry.increment(none)) {
        const Result<FileLock> lock =
            entry->path().extension() == ".note" ? FileLock::tryNow(entry->path()) : failure(Failure::system(ENOENT));
        const Result<QByteArray> path = lock ? readWhole(entry->path()) : failure(lock.error());
        if (!path)
            continue;
        const Location place = path->toStdString();
        if (entryExists(place))
            left.push_back(place);
        else if (place.empty() || entryExists(place.parent_path()))
            ::unlink(entry->path().c_str());
    }
    std::ranges::sort(left);
    return left;
}

} // namespace brellin
