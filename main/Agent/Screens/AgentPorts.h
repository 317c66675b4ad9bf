#pragma once

#include "Agent/CleanupAgent.h"
#include "Agent/Model/ModelSettings.h"
#include "System/Workspace.h"

#include <QPixmap>

#include <functional>

namespace brellin {

/// What the agent's screens show and call. Everything outlives them.
struct AgentPorts {
    CleanupAgent &agent;
    ModelSettings &languageModel;
    AgentServices services; ///< for what is tried while a rule is being edited
    Workspace &workspace;
    Pasteboard &pasteboard;
    /// A small picture of an entry, at most `side` device pixels wide and high; null while, or if, there is none. Nothing:
    /// entries are drawn.
    std::function<QPixmap(const Location &entry, int side)> thumbnail = {};
};

} // namespace brellin
