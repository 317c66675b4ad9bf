#pragma once

#include "Agent/AgentServices.h"
#include "Disk/SystemTrash.h"
#include "Support/FakeClock.h"
#include "Support/FakeModel.h"
#include "Support/Faults.h"
#include "Support/TempTree.h"
#include "System/FileUserDefaults.h"

#include <set>
#include <string>

namespace brellin::test {

/// An account for agent tests: home folder ("home"), second volume ("disk"), home Trash, settings and state folder, all
/// in one temporary tree, with fault injection.
class AgentWorld {
public:
    AgentWorld();

    const TempTree &tree() const { return m_tree; }
    AgentServices services();
    FaultPlan faults;
    FakeClock clock;
    FakeModel model;
    KnownFolders folders;

    Location home(std::string_view relative) const { return m_tree.path("home") / relative; }
    Location disk(std::string_view relative) const { return m_tree.path("disk") / relative; }

    /// Snapshot of home and second volume, without the latter's Trash.
    std::string snapshot() const;
    /// The contents of all files in the tree, except settings and journals.
    std::set<std::string> contents() const;
    /// Number of hidden temporary copies anywhere in the tree.
    int leftovers() const;
    bool hasJournals() const;

    UserDefaults &defaults() { return m_defaults; }
    FaultyFileActions &files() { return m_files; }

private:
    TempTree m_tree;
    FileUserDefaults m_storedDefaults;
    FaultyUserDefaults m_defaults;
    SplitVolumes m_volumes;
    FaultyFileActions m_files;
    SystemTrash m_realTrash;
    FaultyTrash m_trash;
    SystemLocations m_locations;
};

} // namespace brellin::test
