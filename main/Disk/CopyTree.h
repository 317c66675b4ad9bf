#pragma once

#include "Disk/CopyCrew.h"
#include "Disk/CopyEntry.h"
#include "Disk/CopyFile.h"
#include "Disk/CopyTreeFolders.h"

#include <memory>
#include <string>
#include <vector>

namespace brellin {

/// Copies an entry with its content. Holds the source's folders open, so that it cannot be redirected; creates each
/// entry exclusively and private until its permissions are set at the end.
class CopyTree {
public:
    /// `source` is only used for progress. `folder` is the open folder to copy into.
    CopyTree(Location source, int folder, const CopyOptions &options);

    /// Removes what it created if it fails.
    Result<CopyReport> run(NameIn source, NameIn destination);

private:
    struct Level {
        std::string name;
        std::uint64_t path; ///< from `OwnEntries::pathMark`
        SourceStatus source;
        std::vector<ListedName> entries;
        std::size_t next = 0;
        PendingFiles handedOver = {}; ///< of the files that are no longer in `entries`, if any
    };

    Result<void> copyContents();
    /// Removes what was created. Returns `why`, extended if something could not be removed.
    Failure takeBack(NameIn destination, Failure why);
    Result<void> copyEntry(NameIn source, unsigned char type, NameIn destination);
    Result<void> copyLink(NameIn source, const SourceStatus &original, NameIn destination);
    Result<void> enterFolder(NameIn source, NameIn destination);
    /// Hands the files of the folder just entered to the crew if the copy is large enough.
    void handOverFiles();
    Result<void> leaveFolder();

    Result<Descriptor> createFolder(NameIn destination, struct stat &made);
    CopyPlace place() const;

    bool atTop() const { return m_levels.empty(); }
    std::string relativeFolder() const;
    Location current() const;

    Location m_source;
    const CopyOptions &m_options;
    CopyPulse m_pulse;
    CopyCommon m_common;
    CopyFile m_file;
    CopyTreeFolders m_sources;
    CopyTreeFolders m_destinations;
    std::vector<Level> m_levels;
    CopyCrew m_crew; ///< last, so that its thread ends before what it uses
};

} // namespace brellin
