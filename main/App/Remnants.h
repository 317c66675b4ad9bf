#pragma once

#include "App/Services.h"
#include "App/Terminal.h"
#include "Base/EntryFailure.h"
#include "System/LogReading.h"

#include <vector>

namespace brellin {

/// A leftover of an operation that was killed.
struct Remnant {
    enum class Kind {
        Transfer,  ///< an incomplete hidden copy
        Move,      ///< the source of a move whose copy is complete
        Archive,   ///< a hidden folder of an archive being packed or unpacked
        Rename,    ///< an entry under a temporary name
        Run,       ///< the journal of a run that is not in the history yet
        Undo,      ///< the journal of an undo that must be repeated
        Unresolved ///< a journal that was kept aside or cannot be read, for inspection
    };
    Kind kind;
    Location path;

    bool operator==(const Remnant &) const = default;
    /// The kind's name in JSON.
    QString word() const;
    /// „unfertige Kopie“
    QString title() const;
    /// Whether `settleRemnants` should be able to resolve it.
    bool canBeSettled() const { return kind != Kind::Undo && kind != Kind::Unresolved; }
};

/// The folders to search for remnants without a log: the named ones, otherwise the user's folders and the working
/// folder.
std::vector<Location> foldersToSearch(const Services &services, const std::vector<Location> &named);

/// Remnants recorded in logs and journals, except those of running processes, and unlogged ones in `folders`. Blocking.
std::vector<Remnant> findRemnants(Services &services, const std::vector<Location> &folders);

/// Logs and journals that cannot be read completely; what they record is missing from the remnants. Blocking.
std::vector<UnreadLog> unreadLogs(Services &services);

/// Resolves what can be resolved, as visiting a folder in the window does: removes incomplete copies, restores names,
/// adds runs to the history. Returns the failures. Blocking.
EntryFailures settleRemnants(Services &services, const std::vector<Location> &folders);

/// Prints a note if there are remnants. Waits two seconds at most, so that an unresponsive share does not delay the
/// command.
void mentionRemnants(Services &services, Terminal &terminal);

} // namespace brellin
