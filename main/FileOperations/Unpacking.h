#pragma once

#include "Base/JobControl.h"
#include "Base/Result.h"
#include "Disk/FileActions.h"
#include "Disk/Volumes.h"

#include <QStringList>

#include <cstdint>

namespace brellin {

/// What an archive holds, by its own word.
struct ArchiveSummary {
    std::int64_t entries = 0;
    std::int64_t bytes = 0; ///< unpacked, as far as it says
};

/// Whether a name is one of an archive that can be unpacked: ZIP, or tar with the usual compressions.
bool isUnpackable(std::string_view name);

/// What unpacking works with; all of it outlives it.
struct UnpackingServices {
    FileActions &files;
    const Volumes &volumes;
    Location reader;    ///< the program that reads archives, "…/brellin-bild"
    Location logs = {}; ///< where is noted what a crash has left
};

/// Reads through an archive without unpacking it. Blocking.
Result<ArchiveSummary> summarise(const Location &archive, const Location &reader, const JobControl &control);

struct Unpacked {
    Location place;      ///< the entry that came out, or the folder with all of them
    QStringList refused; ///< entries that were left out, with the reason: „../x: führt aus dem Ordner hinaus“
    QStringList notes;   ///< sentences about what is not as in the archive
};

/// Unpacks an archive into `folder`: a single entry under its own name, several in a folder of their own, always under a free
/// name. Entries that would lie outside, links that lead outside and devices are left out. It grows hidden; a failure or a
/// cancel leaves nothing. Ends before the volume is full. Blocking.
Result<Unpacked> unpack(const Location &archive, const Location &folder, const UnpackingServices &services,
                        JobControl &control);

} // namespace brellin
