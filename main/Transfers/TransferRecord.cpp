#include "Transfers/TransferRecord.h"

#include <iterator>

namespace brellin {

void TransferOutcome::add(TransferOutcome more)
{
    done.insert(done.end(), std::make_move_iterator(more.done.begin()), std::make_move_iterator(more.done.end()));
    emptied.insert(emptied.end(), more.emptied.begin(), more.emptied.end());
    errors += more.errors;
    for (const QString &note : more.notes) {
        if (!notes.contains(note))
            notes << note;
    }
    transferred += more.transferred;
    cancelled = cancelled || more.cancelled;
    toAskAgain = std::move(more.toAskAgain);
}

} // namespace brellin
