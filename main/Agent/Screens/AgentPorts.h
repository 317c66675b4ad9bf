#pragma once

#include "Agent/CleanupAgent.h"
#include "Agent/Model/ModelSettings.h"
#include "FolderChooser/Screens/FolderQuestion.h"
#include "System/Workspace.h"

#include <QPixmap>

#include <functional>

namespace brellin {

/// What the agent's screens show and call. Everything referenced must outlive them.
struct AgentPorts {
    CleanupAgent &agent;
    ModelSettings &languageModel;
    AgentServices services; ///< for trying rules in the editor
    Workspace &workspace;
    Pasteboard &pasteboard;
    /// A thumbnail of an entry, at most `side` device pixels in each direction; null while there is none. If unset,
    /// icons are drawn.
    std::function<QPixmap(const Location &entry, int side)> thumbnail = {};
    AskForFolder askForFolder = {};
};

} // namespace brellin
