#include "Runs/StateFolder.h"

#include "Runs/AgentError.h"
#include "System/PrivateFolders.h"

namespace brellin {

Result<FileLock> StateFolder::lockAgent() const
{
    TRY(createPrivateFolders(m_folder));
    Result<FileLock> lock = FileLock::tryNow(m_folder / "agent.lock");
    if (!lock && lock.error().is(std::errc::resource_unavailable_try_again))
        return failure(AgentError::alreadyWorking());
    return lock;
}

Result<Location> StateFolder::journals() const
{
    Location folder = m_folder / "journal";
    TRY(createPrivateFolders(folder));
    return folder;
}

} // namespace brellin
