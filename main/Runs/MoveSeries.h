#pragma once

#include "Disk/EntryMark.h"
#include "Disk/HeldFolder.h"
#include "Guard/FreshGuard.h"
#include "Runs/AgentProposal.h"
#include "Runs/RunServices.h"

#include <optional>
#include <string>

namespace brellin {

/// Moves one entry after the other between the same two folders. Both are held open, so that what was found out about them
/// (where they really lie, that they are on one volume) holds for every entry.
class MoveSeries {
public:
    /// Both outlive the series.
    MoveSeries(const RunServices &services, FreshGuard &guard) : m_services(services), m_guard(guard) {}

    /// What became of an entry.
    struct Moved {
        Location location; ///< where it lies now
        EntryMark mark;
        /// Its target folder was swapped for another as it went, and the way back was barred: it lies where that folder has
        /// gone.
        bool astray = false;
    };

    /// Moves the entry to the very place that is wanted and tells what lies there now. Nothing, and nothing changed, where
    /// that is not a plain matter: the first of a series, a name that is taken, an entry that has changed, a folder that is
    /// not there, not allowed, or another one by now. Then everything has to be looked at anew.
    std::optional<Moved> move(const AgentProposal &proposal);

private:
    struct Folder {
        HeldFolder held;
        std::string real; ///< its path without links
    };

    bool begin(const Location &source, const Location &wanted);
    bool isAllowed(const AgentProposal &proposal) const;
    std::optional<Moved> moved(const AgentProposal &proposal, const std::string &name, const std::string &newName);
    std::optional<Moved> takenBack(const AgentProposal &proposal, const std::string &name, const std::string &newName);
    static std::optional<Folder> hold(const Location &folder);

    const RunServices &m_services;
    FreshGuard &m_guard;
    std::string m_source, m_target; ///< the folders of the proposal before
    std::optional<Folder> m_from, m_to;
};

} // namespace brellin
