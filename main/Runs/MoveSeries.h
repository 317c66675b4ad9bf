#pragma once

#include "Disk/EntryMark.h"
#include "Disk/HeldFolder.h"
#include "Guard/FreshGuard.h"
#include "Runs/AgentProposal.h"
#include "Runs/RunServices.h"

#include <optional>
#include <string>

namespace brellin {

/// Fast path for consecutive moves of files between the same two folders. Keeps both folders open, so that the check for
/// one volume and for system locations above them hold for every entry. Before each move makes sure that both are still
/// where they were checked, whichever of the folders above them was moved.
class MoveSeries {
public:
    /// Both must outlive the series.
    MoveSeries(const RunServices &services, FreshGuard &guard) : m_services(services), m_guard(guard) {}

    /// The result of one move.
    struct Moved {
        Location location; ///< where the entry is now
        EntryMark mark;
        /// The target folder was swapped for another during the move and moving back failed: the entry is in the folder
        /// that was swapped away.
        bool astray = false;
    };

    /// Moves the entry to exactly the wanted place and returns what lies there now. nullopt, with nothing changed, if
    /// the fast path does not apply: the first of a series, a taken name, a changed entry, an entry that is a folder, or
    /// a folder that is missing, refused or swapped. The caller then takes the slow path with all checks.
    std::optional<Moved> move(const AgentProposal &proposal);

private:
    struct Folder {
        HeldFolder held;
        SystemLocations::Examined place;

        /// Whether it still lies where it was examined.
        bool isInPlace() const;
    };

    bool begin(const Location &source, const Location &wanted);
    bool isAllowed(const AgentProposal &proposal) const;
    std::optional<Moved> moved(const AgentProposal &proposal, const std::string &name, const std::string &newName);
    std::optional<Moved> takenBack(const AgentProposal &proposal, const std::string &name, const std::string &newName);
    std::optional<Folder> hold(const Location &folder) const;

    const RunServices &m_services;
    FreshGuard &m_guard;
    std::string m_source, m_target; ///< folders of the previous proposal
    std::optional<Folder> m_from, m_to;
};

} // namespace brellin
