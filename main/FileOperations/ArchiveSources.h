#pragma once

#include "Base/JobControl.h"
#include "Disk/FileAttributes.h"
#include "Disk/TreeMark.h"

#include <QStringList>

#include <cstdint>
#include <optional>
#include <vector>

namespace brellin {

/// The entries to be packed, as they were before packing. The packing program reports neither what it leaves out nor
/// what changes while it runs.
class ArchiveSources {
public:
    /// Walks all entries; blocking.
    ArchiveSources(const std::vector<Location> &entries, const JobControl &control);

    std::int64_t bytes() const { return m_bytes; }
    /// Call when the archive is complete: returns a line for each entry that is missing in it, or was changed
    /// meanwhile, at most ten of each kind. Blocking.
    QStringList missingOrChanged(const JobControl &control) const;

private:
    struct Source {
        Location place;
        std::optional<FileAttributes> attributes; ///< none if they could not be read
        std::optional<TreeMark> content;          ///< for folders
    };
    void add(const Location &entry, const JobControl &control);
    void count(const Location &entry, const FileAttributes &attributes);

    std::vector<Source> m_sources;
    std::vector<Location> m_special; ///< pipes, sockets and devices
    std::int64_t m_bytes = 0;
};

} // namespace brellin
