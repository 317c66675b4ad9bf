#pragma once

#include "Base/Location.h"
#include "Base/Result.h"
#include "System/FileLock.h"

namespace brellin {

/// The folder in which the agent keeps what must survive a crash: its lock and the journals of runs and undos at work.
class StateFolder {
public:
    explicit StateFolder(Location folder) : m_folder(std::move(folder)) {}

    /// Holds out everybody else who wants to execute or undo; `AgentError::alreadyWorking` when somebody does.
    Result<FileLock> lockAgent() const;

    /// Where journals lie, created if missing.
    Result<Location> journals() const;

private:
    Location m_folder;
};

} // namespace brellin
