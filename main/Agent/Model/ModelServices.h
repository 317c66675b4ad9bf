#pragma once

#include "Agent/Model/AgentAI.h"
#include "System/UserDefaults.h"

namespace brellin {

/// What asking the language model needs from outside. The references outlive it.
struct ModelServices {
    UserDefaults &defaults; ///< for the server's address and the answers
    LanguageModel &model;
    PdfText pdfText;
};

} // namespace brellin
