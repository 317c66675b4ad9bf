#pragma once

#include "Base/JobControl.h"
#include "Base/Result.h"

#include <QString>

#include <chrono>

namespace brellin {

/// Whether the language model on this machine can be used.
enum class ModelStatus {
    Available,
    SystemTooOld, ///< the system provides no model
    NotEligible,  ///< the machine cannot run it
    NotEnabled,   ///< switched off by the user
    Loading,      ///< not ready yet
    Unavailable   ///< any other reason; for example no server was found
};

/// Port to a language model running on this machine. Blocking: call on workers only.
class LanguageModel {
public:
    virtual ~LanguageModel() = default;

    virtual ModelStatus status() = 0;
    /// A single answer in a new conversation, within `limit`. Only these two texts are sent.
    virtual Result<QString> respond(const QString &instructions, const QString &prompt, std::chrono::milliseconds limit,
                                    const JobControl *control) = 0;
};

} // namespace brellin
