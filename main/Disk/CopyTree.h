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

/// Copies an entry with its content. Holds the source's folders open, so that it cannot be redirected; creates each
/// entry exclusively and private until its permissions are set at the end.
class CopyTree {
public:
    /// `source` is only used for progress.
    CopyTree(Location source, const CopyOptions &options);

    /// Removes what it created if it fails.
    Result<CopyReport> run(NameIn source, NameIn destination);

private:
    struct Level {
        std::string name;
        std::uint64_t path; ///< from `OwnEntries::pathMark`
        SourceStatus source;
        std::vector<ListedName> entries;
        std::size_t next = 0;
    };
    /// The first copy of a file with several hard links.
    struct FirstCopy {
        std::string folder; ///< relative to the copied folder
        std::string name;
        ino_t inode;
        SourceStatus source; ///< status of the source when copied
        std::uint64_t mark;  ///< its metadata
    };

    Result<void> copyContents();
    Result<void> copyEntry(NameIn source, unsigned char type, NameIn destination);
    Result<void> copyFile(NameIn source, NameIn destination);
    /// Copies until the source was unchanged meanwhile, within the limit of attempts. Returns the source's status for
    /// the final copy.
    Result<SourceStatus> copyContent(int source, SourceStatus seen, int destination);
    /// Whether the copy has the content that the source had at `seen`, even if `now` differs.
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
    Descriptor m_top; ///< the copied folder, for linking to a first copy
    std::map<std::pair<dev_t, ino_t>, FirstCopy> m_firstCopies;
};

} // namespace brellin
