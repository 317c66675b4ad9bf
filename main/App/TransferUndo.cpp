#include "App/TransferUndo.h"

namespace brellin {

UserAction actionOf(const TransferRecord &record)
{
    UserAction action;
    action.kind = record.kind == TransferKind::Move ? UserAction::Kind::Move : UserAction::Kind::Copy;
    for (const TransferredEntry &entry : record.entries) {
        if (entry.moved == (record.kind == TransferKind::Move))
            action.entries.push_back(
                {entry.src, entry.dst, entry.state, entry.replaced, entry.replacedMark, entry.created, entry.content});
    }
    for (const MergedFolder &folder : record.emptied) {
        action.entries.push_back({folder.src, folder.dst, {}});
        action.entries.back().merged = folder.facts;
    }
    action.step = record.id;
    return action;
}

} // namespace brellin
