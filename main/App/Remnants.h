#pragma once

#include "App/Services.h"
#include "App/Terminal.h"
#include "System/LogReading.h"

#include <QStringList>

#include <vector>

namespace brellin {

/// Something that work of this program left because it was killed.
struct Remnant {
    enum class Kind {
        Transfer,  ///< a hidden copy that was never finished
        Move,      ///< the rest of a source whose copy is complete
        Archive,   ///< a hidden folder in which an archive was packed or unpacked
        Rename,    ///< an entry that waits under a temporary name
        Run,       ///< the journal of a run that is not in the history yet
        Undo,      ///< the journal of an undo that is to be repeated
        Unresolved ///< a journal put aside, or one that cannot be read, for a person to look into
    };
    Kind kind;
    Location path;

    bool operator==(const Remnant &) const = default;
    /// Its name in JSON.
    QString word() const;
    /// „unfertige Kopie“
    QString title() const;
    /// Whether `settleRemnants` ought to be able to end it.
    bool canBeSettled() const { return kind != Kind::Undo && kind != Kind::Unresolved; }
};

/// Where remnants are looked for that no log names: in these, or the user's own folders and the working folder.
std::vector<Location> foldersToSearch(const Services &services, const std::vector<Location> &named);

/// What logs and journals tell of, without what living programs are at work on, and what lies in `folders` without a log.
/// Blocking.
std::vector<Remnant> findRemnants(Services &services, const std::vector<Location> &folders);

/// The logs and journals of every kind that cannot be read whole: what they tell of is not among the remnants. Blocking.
std::vector<UnreadLog> unreadLogs(Services &services);

/// Ends what can be ended, as a visit of the window does: unfinished copies go, entries get their old names back, runs come
/// into the history. Gives a line for each failure. Blocking.
QStringList settleRemnants(Services &services, const std::vector<Location> &folders);

/// Says so where there are remnants. Waits a moment only: a share that does not answer must hold up no command.
void mentionRemnants(Services &services, Terminal &terminal);

} // namespace brellin
