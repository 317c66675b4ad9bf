#pragma once

#include "Base/JobControl.h"
#include "Base/Location.h"
#include "Disk/FileActions.h"

#include <QString>
#include <QStringList>

#include <cstdint>
#include <set>
#include <vector>

namespace brellin {

/// A move to another volume that was killed while it removed its source: the copy is complete, and of the source there is
/// something left.
struct UnfinishedMove {
    Location log;
    Location source;
    Location copy;
    Instant since; ///< when its copy began
    /// Files and links of the source that stand the same in the copy, by name, size and time …
    std::int64_t entries = 0;
    std::int64_t bytes = 0;
    /// … and those that do not: they stay in any case.
    std::int64_t differing = 0;

    bool operator==(const UnfinishedMove &) const = default;
    /// „„Fotos“ steht vollständig in „Stick“. …“
    QString question() const;
};

/// Those that the logs of dead transfers name and whose sources are there. Nothing is compared yet, and so nothing counted: it
/// may turn out that nothing can be finished. Blocking, but quick.
std::vector<UnfinishedMove> notedMoves(const Location &logs);

/// Compares what is left of every source that the logs of dead transfers name with its copy. Those of which nothing can be
/// finished now, as while a volume is away, are left for later; those with a source in `without` are not even compared.
/// Blocking.
std::vector<UnfinishedMove> unfinishedMoves(const Location &logs, const JobControl *control = nullptr,
                                            const std::set<Location> &without = {});

/// Whether `copy` is, holds or lies in the complete copy of what `source` is, holds or lies in, and which was being removed
/// when a program died, or is right now: nobody can tell while another looks at its log. Nobody can tell either while there
/// is a log that cannot be read.
bool mayBeCopyOfUnfinishedMove(const Location &source, const Location &copy, const Location &logs);

/// Whether `copy` is known to be such a one, and holds something that is no longer at the source, or nobody can tell. Blocking,
/// as long as a walk takes.
bool isOnlyCompleteCopy(const Location &source, const Location &copy, const Location &logs, const JobControl &control);

/// Removes what is left of the source, for good and on the user's yes, as far as the copy holds it with the same content.
/// Gives a line for each entry that stays. A cancel leaves the rest for the next start, and says nothing. Blocking.
QStringList finishMove(const UnfinishedMove &move, FileActions &files, const JobControl *control = nullptr);

} // namespace brellin
