#pragma once

#include "Look/Tokens.h"

#include <QString>

namespace brellin {

/// How the usual controls look: buttons, fields, choices, menus, scroll bars. A control says what it is by the dynamic
/// property "kind": "primary", "plain" (no frame), "danger" for buttons; "symbol" for tool buttons; "search" for fields.
QString styleSheet(Appearance appearance);

} // namespace brellin
