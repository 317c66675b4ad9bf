#pragma once

#include "Base/JobControl.h"
#include "Base/Result.h"
#include "Disk/FileActions.h"
#include "Disk/Volumes.h"

#include <QStringList>

#include <cstdint>

namespace brellin {

/// Content of an archive as its headers claim.
struct ArchiveSummary {
    std::int64_t entries = 0;
    std::int64_t bytes = 0; ///< unpacked; entries without a size count as 0
};

/// Whether the name has an archive extension that can be unpacked: ZIP, or tar with a common compression.
bool isUnpackable(std::string_view name);

/// Ports; all must outlive the unpacking.
struct UnpackingServices {
    FileActions &files;
    const Volumes &volumes;
    Location reader;    ///< path of "…/brellin-bild"
    Location logs = {}; ///< folder for notes about hidden folders, read after a crash
};

/// Reads an archive's names and sizes without unpacking. Blocking.
Result<ArchiveSummary> summarise(const Location &archive, const Location &reader, const JobControl &control);

struct Unpacked {
    Location place;      ///< the unpacked entry, or the folder that contains several
    QStringList refused; ///< entries left out, with reasons: „../x: führt aus dem Ordner hinaus“
    QStringList notes;   ///< sentences about differences from the archive
};

/// Unpacks an archive into `folder`: a single entry under its own name, several in a new folder, always under a free
/// name. Leaves out entries and links that lead outside, and devices. Works in a hidden folder; a failure or a cancel
/// leaves nothing. Fails when less than 64 MB are free on the volume. Blocking.
Result<Unpacked> unpack(const Location &archive, const Location &folder, const UnpackingServices &services,
                        JobControl &control);

} // namespace brellin
