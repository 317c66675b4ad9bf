#pragma once

#include "System/Workspace.h"

namespace brellin {

/// The clipboard of the desktop.
class DesktopPasteboard : public Pasteboard {
public:
    void setText(const QString &text) override;
};

} // namespace brellin
