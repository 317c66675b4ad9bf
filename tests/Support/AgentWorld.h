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

/// A small account for the agent: a home folder ("home"), a second disk ("disk"), a home Trash, stored settings and a state
/// folder, all in one temporary tree and with faults on request.
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

    /// Home and second disk as one text, without the disk's Trash.
    std::string snapshot() const;
    /// The content of every file in the whole tree but settings and journals.
    std::set<std::string> contents() const;
    /// Copies under a hidden temporary name anywhere in the tree.
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
