#include "Disk/WrittenVolume.h"

#include "Disk/CopyEntry.h"
#include "Disk/CopyEntryFlush.h"

namespace brellin {

Result<WrittenVolume> WrittenVolume::open(const Location &folder)
{
    const Descriptor place = TRY(openFolderPlace(folder));
    WrittenVolume volume;
    auto opened = openFolder({place.number(), "."});
    if (opened && isFlushedAsAWhole(opened->number()))
        volume.m_folder = *std::move(opened);
    // The folder may be write-only.
    else if (!opened && !opened.error().is(std::errc::permission_denied))
        return failure(opened.error());
    return volume;
}

void WrittenVolume::wrote(const Location &entry)
{
    if (!m_folder.isOpen())
        m_entries.push_back(entry);
}

Result<void> WrittenVolume::flush() const
{
    for (const Location &entry : m_entries) {
        // Removed meanwhile: no flush needed.
        if (const Result<void> flushed = flushEntry(entry);
            !flushed && !flushed.error().is(std::errc::no_such_file_or_directory))
            return flushed;
    }
    if (m_folder.isOpen() && flushVolume(m_folder.number()) != 0)
        return failure(Failure::lastSystem());
    return {};
}

} // namespace brellin
