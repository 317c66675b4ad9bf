#pragma once

#include "Agent/Model/AgentAI.h"
#include "System/UserDefaults.h"

namespace brellin {

/// The ports for asking the language model. The references must outlive it.
struct ModelServices {
    UserDefaults &defaults; ///< holds the server's address and the answers
    LanguageModel &model;
    PdfText pdfText;
};

} // namespace brellin
