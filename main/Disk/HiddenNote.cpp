#include "Disk/HiddenNote.h"

#include "Disk/FileAttributes.h"
#include "System/PrivateFolders.h"
#include "System/ReadWhole.h"

#include <QByteArray>
#include <QUuid>

#include <algorithm>
#include <functional>

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
    // If writing fails, the note is empty and removed at the next search.
    [[maybe_unused]] const ssize_t written =
        ::write(m_lock.descriptor(), path.constData(), static_cast<std::size_t>(path.size()));
}

void HiddenNote::discard()
{
    if (m_lock.held())
        ::unlink(m_file.c_str());
    m_lock.release();
}

namespace {

/// Longer than any path.
constexpr qint64 longestNote = qint64(64) << 10U;

Result<QByteArray> readNote(const Location &note)
{
    Result<QByteArray> path = readWhole(note, longestNote);
    if (!path && path.error().is(std::errc::file_too_large))
        return failure(tooLarge(longestNote));
    return path;
}

/// Calls `read` for each note that is not locked by a living owner.
void forEachNote(const Location &notes, const std::function<void(const Location &, const Result<QByteArray> &)> &read)
{
    std::error_code none;
    for (std::filesystem::directory_iterator entry(notes, none), end; !none && entry != end; entry.increment(none)) {
        if (entry->path().extension() != ".note")
            continue;
        const Result<FileLock> lock = FileLock::tryNow(entry->path());
        if (lock || !lock.error().is(std::errc::resource_unavailable_try_again))
            read(entry->path(), lock ? readNote(entry->path()) : failure(lock.error()));
    }
}

} // namespace

std::vector<Location> notedHiddenPlaces(const Location &notes)
{
    std::vector<Location> left;
    forEachNote(notes, [&](const Location &note, const Result<QByteArray> &path) {
        if (!path)
            return;
        const Location place = path->toStdString();
        if (entryExists(place))
            left.push_back(place);
        else if (place.empty() || entryExists(place.parent_path()))
            ::unlink(note.c_str());
    });
    std::ranges::sort(left);
    return left;
}

std::vector<UnreadLog> unreadHiddenNotes(const Location &notes)
{
    std::vector<UnreadLog> unread;
    if (std::optional<UnreadLog> folder = unreadFolder(notes))
        unread.push_back(*std::move(folder));
    forEachNote(notes, [&](const Location &note, const Result<QByteArray> &path) {
        if (!path)
            unread.push_back({note, path.error().message});
    });
    return unread;
}

} // namespace brellin
