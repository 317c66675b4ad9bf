#pragma once

#include "Agent/AgentAI.h"
#include "Agent/RunServices.h"
#include "Places/KnownFolders.h"

namespace brellin {

/// What the agent needs from outside. Everything outlives the agent and its jobs.
struct AgentServices : RunServices {
    const KnownFolders &folders;
    LanguageModel &model;
    AgentAI::PdfText pdfText;
};

} // namespace brellin
