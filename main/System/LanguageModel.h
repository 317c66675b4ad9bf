#pragma once

#include "Base/JobControl.h"
#include "Base/Result.h"

#include <QString>

#include <chrono>

namespace brellin {

/// Whether the language model on this machine can be asked.
enum class ModelStatus {
    Available,
    SystemTooOld, ///< this system has no such model
    NotEligible,  ///< the machine cannot run it
    NotEnabled,   ///< the user has it switched off
    Loading,      ///< later
    Unavailable   ///< for any other reason; nothing to ask was found
};

/// The port to a language model that runs on this machine. Blocking: called on workers only.
class LanguageModel {
public:
    virtual ~LanguageModel() = default;

    virtual ModelStatus status() = 0;
    /// One answer in a new conversation, within `limit`. Nothing but these two texts reaches the model.
    virtual Result<QString> respond(const QString &instructions, const QString &prompt, std::chrono::milliseconds limit,
                                    const JobControl *control) = 0;
};

} // namespace brellin
