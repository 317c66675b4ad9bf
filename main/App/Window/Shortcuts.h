#pragma once

#include "App/Window/WindowCommands.h"
#include "Base/Published.h"
#include "Base/Result.h"
#include "System/UserDefaults.h"

#include <map>

namespace brellin {

/// The keys of the commands: those of the command table, or the user's own. Shared by all windows and stored in the
/// list "shortcuts". No key belongs to two commands. Lives on the main thread.
class Shortcuts : public Model<Shortcuts> {
public:
    using Keys = std::vector<QKeySequence>;

    /// `defaults` must outlive it.
    explicit Shortcuts(UserDefaults &defaults);

    /// The user's own keys; a command without any has an empty list.
    Published<std::map<CommandId, Keys>> own;

    /// The table's keys without those that the user gave to another command, unless there are own ones.
    Keys keysOf(CommandId id) const;
    /// The key that menus show, in German; empty if there is none.
    QString textOf(CommandId id) const;

    /// Replaces the command's keys by one. Fails with the German reason if it is needed for typing or moving, or belongs to
    /// another command, which is named then.
    Result<void> setKey(CommandId id, const QKeySequence &key);
    Result<void> removeKeys(CommandId id);
    /// Returns to the table's keys; fails if one of them belongs to another command meanwhile.
    Result<void> reset(CommandId id);
    Result<void> resetAll();
    /// Takes over what another program stored; ignores an unreadable list.
    void reload();

private:
    std::optional<CommandId> ownerOf(const QKeySequence &key, CommandId except) const;
    Result<void> checkFree(CommandId id, const Keys &keys) const;
    Result<void> store(CommandId id, const std::optional<Keys> &keys);

    UserDefaults &m_defaults;
};

} // namespace brellin
