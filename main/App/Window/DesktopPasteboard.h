#pragma once

#include "FileOperations/ClipboardFiles.h"
#include "System/Workspace.h"

namespace brellin {

/// The clipboard of the desktop.
class DesktopPasteboard : public Pasteboard {
public:
    void setText(const QString &text) override;
};

/// Files on the desktop's clipboard, in every form that other file managers read.
void putOnClipboard(const ClipboardFiles &files);
/// The files that lie there; nothing where something else does.
std::optional<ClipboardFiles> filesOnClipboard();
/// What was cut has been moved: it is not moved again.
void clearCutFiles();

} // namespace brellin
