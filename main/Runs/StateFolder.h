#pragma once

#include "Base/Location.h"
#include "Base/Result.h"
#include "System/FileLock.h"

namespace brellin {

/// The folder for everything of the agent that must survive a crash: its lock and the journals of runs and undos.
class StateFolder {
public:
    explicit StateFolder(Location folder) : m_folder(std::move(folder)) {}

    /// Takes the lock for executing or undoing, without waiting. `AgentError::alreadyWorking` if it is held.
    Result<FileLock> lockAgent() const;

    /// The folder of the journals; created if missing.
    Result<Location> journals() const;

private:
    Location m_folder;
};

} // namespace brellin
