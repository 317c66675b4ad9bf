#pragma once

#include "Agent/AgentAI.h"
#include "Agent/SystemLocations.h"
#include "Disk/FileActions.h"
#include "Disk/Trash.h"
#include "Disk/Volumes.h"
#include "Places/KnownFolders.h"
#include "System/Clock.h"
#include "System/UserDefaults.h"

namespace brellin {

/// What the agent needs from outside. Everything outlives the agent and its jobs.
struct AgentServices {
    UserDefaults &defaults;
    FileActions &files;
    Trash &trash;
    const Volumes &volumes;
    const Clock &clock;
    const KnownFolders &folders;
    const SystemLocations &locations;
    LanguageModel &model;
    AgentAI::PdfText pdfText;
    Location stateFolder; ///< for the lock and the journals
};

} // namespace brellin
