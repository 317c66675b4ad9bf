#pragma once

#include "Base/JobControl.h"
#include "Disk/FileAttributes.h"
#include "Disk/TreeMark.h"

#include <QStringList>

#include <cstdint>
#include <optional>
#include <vector>

namespace brellin {

/// What is about to be packed, as it is before. The packing program neither tells what it leaves out nor what changes under
/// its hands.
class ArchiveSources {
public:
    /// Blocking, as long as walks take.
    ArchiveSources(const std::vector<Location> &entries, const JobControl &control);

    std::int64_t bytes() const { return m_bytes; }
    /// To be asked when the archive is complete: a line for each entry that is not in it, or perhaps not as it is now.
    /// Blocking.
    QStringList missingOrChanged(const JobControl &control) const;

private:
    struct Source {
        Location place;
        std::optional<FileAttributes> attributes; ///< nothing where it could not be looked at
        std::optional<TreeMark> content;          ///< of a folder
    };
    void add(const Location &entry, const JobControl &control);
    void count(const Location &entry, const FileAttributes &attributes);

    std::vector<Source> m_sources;
    std::vector<Location> m_special; ///< pipes and their like
    std::int64_t m_bytes = 0;
};

} // namespace brellin
