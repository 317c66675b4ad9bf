#pragma once

#include "System/LanguageModel.h"

#include <QString>

namespace brellin {

/// The systems whose users read the texts below.
enum class TextSystem { Mac, Linux };
/// The one this program is built for.
TextSystem ownTextSystem();

/// What the settings say about the language model.
QString modelStatusText(ModelStatus status, TextSystem system = ownTextSystem());

/// What the settings say one has to do for a model; empty where the system brings its own.
QString modelSetupText(TextSystem system = ownTextSystem());

} // namespace brellin
