#pragma once

#include "Agent/Analysis/AnalysisServices.h"
#include "Agent/Model/ModelServices.h"
#include "Agent/Rules/RuleServices.h"
#include "Places/KnownFolders.h"
#include "Runs/RunServices.h"

namespace brellin {

/// The ports of the agent. Everything referenced must outlive the agent and its jobs.
struct AgentServices : RunServices {
    const KnownFolders &folders;
    LanguageModel &model;
    PdfText pdfText;

    RuleServices forRules() const { return {locations, clock}; }
    ModelServices forModel() const { return {defaults, model, pdfText}; }
    AnalysisServices forAnalysis() const { return {folders, locations, clock}; }
};

} // namespace brellin
