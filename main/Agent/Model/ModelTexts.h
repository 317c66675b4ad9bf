#pragma once

#include "System/LanguageModel.h"

#include <QString>

namespace brellin {

/// The systems for which the texts below differ.
enum class TextSystem { Mac, Linux };
/// The system this program was built for.
TextSystem ownTextSystem();

/// The model's status for the settings.
QString modelStatusText(ModelStatus status, TextSystem system = ownTextSystem());

/// What the user must do to get a model; empty if the system provides one.
QString modelSetupText(TextSystem system = ownTextSystem());

} // namespace brellin
