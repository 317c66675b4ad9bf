#pragma once

#include "Disk/CopyEntry.h"
#include "Disk/CopyEntryData.h"
#include "Disk/CopyEntryMetadata.h"
#include "Disk/CopyEntryProgress.h"
#include "Disk/CopyTreeFolders.h"
#include "Disk/CopyTreeRemoval.h"
#include "Disk/SourceStatus.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace brellin {

/// One copy of a whole entry: walks down the source with its folders held open, so that nobody can lead it elsewhere,
/// and makes each entry exclusively, closed to others until its rights are set at the end.
class CopyTree {
public:
    /// `source` is what progress shows.
    CopyTree(Location source, const CopyOptions &options);

    /// On failure takes back what it made.
    Result<CopyReport> run(NameIn source, NameIn destination);

private:
    struct Level {
        std::string name;
        std::uint64_t path; ///< as `OwnEntries::pathMark` counts
        SourceStatus source;
        std::vector<ListedName> entries;
        std::size_t next = 0;
    };
    /// Where the first copy of a file with several names lies.
    struct FirstCopy {
        std::string folder; ///< relative to the copied folder
        std::string name;
        ino_t inode;
        SourceStatus source; ///< what was copied …
        std::uint64_t mark;  ///< … and its metadata
    };

    Result<void> copyContents();
    Result<void> copyEntry(NameIn source, unsigned char type, NameIn destination);
    Result<void> copyFile(NameIn source, NameIn destination);
    /// Copies until nobody has written into the source meanwhile, a few times at most. Gives what the source was then.
    Result<SourceStatus> copyContent(int source, SourceStatus seen, int destination);
    /// Whether a copy holds what the source was when it was `seen`, though it may be something else `now`.
    Result<bool> isWholeCopy(int source, const SourceStatus &seen, const struct stat &now, int copy);
    Result<void> copyLink(NameIn source, const SourceStatus &original, NameIn destination);
    Result<void> enterFolder(NameIn source, NameIn destination);
    Result<void> leaveFolder();

    Result<Descriptor> createFile(NameIn destination, struct stat &made);
    Result<Descriptor> createFolder(NameIn destination, struct stat &made);
    void madeEntry(NameIn entry, const struct stat &made);
    void takeDown(NameIn entry, const SourceStatus &source, std::uint64_t mark);
    void takeDownAt(std::uint64_t path, const SourceStatus &source, std::uint64_t mark);
    Result<bool> linkToFirstCopy(const SourceStatus &source, NameIn destination);

    bool atTop() const { return m_levels.empty(); }
    std::string relativeFolder() const;
    Location current() const;
    Failure named(Failure why, std::string_view name) const;

    Location m_source;
    const CopyOptions &m_options;
    CopyPulse m_pulse;
    CopyData m_data;
    CopyMetadata m_metadata;
    CopyTreeFolders m_sources;
    CopyTreeFolders m_destinations;
    std::vector<Level> m_levels;
    OwnEntries m_made;
    Descriptor m_top; ///< of the copied folder, for links to a first copy
    std::map<std::pair<dev_t, ino_t>, FirstCopy> m_firstCopies;
};

} // namespace brellin
