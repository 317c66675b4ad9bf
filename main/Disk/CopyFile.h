#pragma once

#include "Disk/CopyEntry.h"
#include "Disk/CopyEntryData.h"
#include "Disk/CopyEntryMetadata.h"
#include "Disk/CopyEntryProgress.h"
#include "Disk/CopyTreeRemoval.h"
#include "Disk/SourceStatus.h"

#include <condition_variable>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <utility>

namespace brellin {

/// Where in a copy an entry is created.
struct CopyPlace {
    std::uint64_t path;                  ///< from `OwnEntries::pathMark`; 0 for the copied entry itself
    bool atTop;                          ///< whether this is the copied entry itself, not one in it
    std::function<std::string()> folder; ///< path below the copied folder; empty directly in it
};

/// What a copy has created and read so far. Thread-safe, except `sort` and reading.
class CopyRecord {
public:
    /// `copied` may be null.
    CopyRecord(OwnEntries::KnownBy knownBy, CopiedEntries *copied) : m_made(knownBy), m_copied(copied) {}

    void made(std::uint64_t path, ino_t inode);
    void copied(std::uint64_t path, const SourceStatus &source, std::uint64_t mark);
    /// After the last entry.
    void sort();
    const OwnEntries &made() const { return m_made; }

private:
    std::mutex m_mutex;
    OwnEntries m_made;
    CopiedEntries *m_copied;
};

/// Serialises copies of large files, which would make a disk seek, and of files with several hard links, which link to
/// the first copy.
class CopyTurn {
public:
    /// Waits until it is free. Fails if the copy is cancelled meanwhile.
    Result<void> take(CopyPulse &pulse);
    void give();

private:
    std::mutex m_mutex;
    std::condition_variable m_given;
    bool m_taken = false;
};

/// The first copy of a file with several hard links.
struct FirstCopy {
    std::string folder; ///< as `CopyPlace::folder`
    std::string name;
    ino_t inode;
    SourceStatus source; ///< status of the source when copied
    std::uint64_t mark;  ///< its metadata
};

/// State shared by all threads of a copy.
struct CopyCommon {
    CopyPulse &pulse;
    CopyRecord record;
    CopyTurn turn = {};
    Descriptor top = {};                                           ///< the copied folder, for linking to a first copy
    std::map<std::pair<dev_t, ino_t>, FirstCopy> firstCopies = {}; ///< guarded by `turn`
};

/// Copies regular files with their metadata, one after the other. One per thread of a copy.
class CopyFile {
public:
    explicit CopyFile(CopyCommon &common) : m_common(common), m_data(common.pulse) {}

    /// `errc::not_supported` where `source` is no regular file.
    Result<void> run(NameIn source, NameIn destination, const CopyPlace &place);
    /// Sets a folder's permissions and times; call after its content is complete, which would change them.
    Result<void> closeFolder(int source, int destination, const SourceStatus &seen, std::uint64_t path);
    /// Also for entries of other kinds: records what the target could not store.
    CopyMetadata &metadata() { return m_metadata; }

private:
    Result<void> copyOpened(int original, SourceStatus seen, NameIn destination, const CopyPlace &place);
    Result<Descriptor> create(NameIn destination, const CopyPlace &place, struct stat &made);
    /// Copies until the source was unchanged meanwhile, within the limit of attempts. Returns the source's status for
    /// the final copy.
    Result<SourceStatus> copyContent(int source, SourceStatus seen, int destination);
    /// Whether the copy has the content that the source had at `seen`, even if `now` differs.
    Result<bool> isWholeCopy(int source, const SourceStatus &seen, const struct stat &now, int copy);
    Result<bool> linkToFirstCopy(const SourceStatus &source, NameIn destination, const CopyPlace &place);

    CopyCommon &m_common;
    CopyData m_data;
    CopyMetadata m_metadata;
};

/// The failure for a pipe, socket or device.
Failure notOrdinary();

} // namespace brellin
