#include "Features/TrashReturn.h"

#include "Disk/FileAttributes.h"

#include <algorithm>
#include <iterator>
#include <ranges>

namespace brellin {

namespace {

/// The folders created for one entry; removed again if it could not be restored.
class MissingFolders {
public:
    explicit MissingFolders(FileActions &files) : m_files(files) {}

    Result<void> create(const Location &folder)
    {
        if (entryExists(folder) || !folder.has_relative_path())
            return {};
        TRY(create(folder.parent_path()));
        const Result<void> created = m_files.createFolder(folder);
        if (created)
            m_created.push_back(folder);
        // Another process may have created it at the same time.
        return !created && !created.error().is(std::errc::file_exists) ? created : Result<void>();
    }
    void takeBack()
    {
        for (const Location &folder : std::views::reverse(m_created)) [[maybe_unused]]
            const Result<void> removed = m_files.removeEmptyFolder(folder);
    }

private:
    FileActions &m_files;
    std::vector<Location> m_created;
};

Failure readable(const Failure &cause)
{
    if (cause.is(std::errc::file_exists))
        return {QStringLiteral("Am alten Ort gibt es schon etwas mit diesem Namen."), cause.code};
    if (cause.is(std::errc::cross_device_link))
        return {
            QStringLiteral("Der alte Ort liegt auf einem anderen Datenträger. Ziehe es aus dem Papierkorb dorthin."),
            cause.code};
    return cause;
}

Result<void> putOneBack(const TrashedEntry &entry, Trash &trash, FileActions &files)
{
    if (entry.original.empty())
        return failure(QStringLiteral("Der Papierkorb weiß nicht, wo es herkommt."));
    if (entryExists(entry.original))
        return failure(readable(Failure::system(EEXIST)));
    MissingFolders folders(files);
    Result<void> done = folders.create(entry.original.parent_path());
    if (done)
        done = trash.restore(entry.place, entry.original, entry.original);
    if (done)
        return done;
    folders.takeBack();
    return failure(readable(done.error()));
}

const Location &knownAs(const TrashedEntry &entry)
{
    return entry.original.empty() ? entry.place : entry.original;
}

} // namespace

TrashReturn putBack(std::vector<TrashedEntry> entries, Trash &trash, FileActions &files, JobControl &control)
{
    // Restore a folder before entries from inside it, which would otherwise create a new folder in its place.
    std::ranges::stable_sort(entries, {}, [](const TrashedEntry &entry) {
        return std::distance(entry.original.begin(), entry.original.end());
    });
    TrashReturn outcome;
    control.setTotal(std::ssize(entries));
    for (const TrashedEntry &entry : entries) {
        if (control.cancelled()) {
            outcome.cancelled = true;
            break;
        }
        control.setDetail(shownName(knownAs(entry)));
        if (const Result<void> done = putOneBack(entry, trash, files))
            outcome.returned.push_back({entry.place, entry.original});
        else
            outcome.failures << EntryFailure{knownAs(entry), done.error()};
        control.advance();
    }
    return outcome;
}

} // namespace brellin
