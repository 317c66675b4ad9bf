#include "App/Window/WindowServices.h"

#include "Features/TrashList.h"
#include "History/HistoryList.h"
#include "Places/VolumeList.h"

namespace brellin {

bool WindowServices::busy() const
{
    return transfers.busy() || agent.agent.running.get() || !operations.operations.get().empty() ||
           undo.running.get() || history.takingBack.get() || trash.returning.get() || volumeList.ejecting.get();
}

} // namespace brellin
