#pragma once

#include "Look/Tokens.h"

#include <QString>

namespace brellin {

/// The style sheet of the standard controls: buttons, fields, combo boxes, menus, scroll bars. The dynamic property
/// "kind" selects a variant: "primary", "plain" (no frame) and "danger" for buttons, "symbol" for tool buttons,
/// "search" for fields.
QString styleSheet(Appearance appearance);

} // namespace brellin
